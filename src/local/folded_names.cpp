#include "local/folded_names.hpp"

#include <algorithm>
#include <ctime>
#include <filesystem>
#include <system_error>

#include "base/text.hpp"

namespace twk::local {
namespace {

namespace fs = std::filesystem;

/// A folder that changed this recently may change again without its time showing it.
constexpr std::int64_t kUnsettledNanoseconds = 20'000'000;

std::int64_t nanoseconds(const std::timespec& time) {
  return time.tv_sec * 1'000'000'000 + time.tv_nsec;
}

bool is_settled(const struct stat& status) {
  std::timespec now{};
  clock_gettime(CLOCK_REALTIME, &now);
  return nanoseconds(now) - nanoseconds(status.st_mtim) > kUnsettledNanoseconds;
}

bool is_same(const struct stat& a, const struct stat& b) {
  return a.st_dev == b.st_dev && a.st_ino == b.st_ino && nanoseconds(a.st_mtim) == nanoseconds(b.st_mtim);
}

std::string joined(const std::string& folder, std::string_view name) {
  return folder + (folder.ends_with('/') ? "" : "/") + std::string(name);
}

}  // namespace

FoldedNames::Folder* FoldedNames::remembered(const std::string& path) {
  const auto found =
      std::find_if(folders_.begin(), folders_.end(), [&path](const Folder& one) { return one.path == path; });
  if (found == folders_.end())
    return nullptr;
  folders_.splice(folders_.begin(), folders_, found);
  return &folders_.front();
}

FoldedNames::Folder* FoldedNames::read(const std::string& path, const struct stat& status) {
  if (remembered(path) != nullptr)
    folders_.pop_front();
  Folder folder{path, status, 0, false, {}};
  std::error_code error;
  for (fs::directory_iterator entry(path, error); !error && entry != fs::directory_iterator();
       entry.increment(error)) {
    std::string name = entry->path().filename().string();
    const auto [place, is_new] = folder.names.try_emplace(base::upper(name), name);
    if (!is_new && name < place->second)
      place->second = std::move(name);
  }
  folders_.push_front(std::move(folder));
  if (folders_.size() > kRemembered)
    folders_.pop_back();
  return &folders_.front();
}

std::optional<std::string> FoldedNames::find(const std::string& folder, std::string_view name) {
  struct stat status {};
  if (lstat(joined(folder, name).c_str(), &status) == 0)
    return std::string(name);
  return find_other_case(folder, name).name;
}

FoldedNames::Folded FoldedNames::find_other_case(const std::string& folder, std::string_view name) {
  const auto answer = [&name](const Folder& known) {
    const auto found = known.names.find(base::upper(name));
    return Folded{true, found == known.names.end() ? std::nullopt : std::optional(found->second)};
  };
  Folder* known = remembered(folder);
  if (known != nullptr && !turn_->is_due(known->looked_at))
    return answer(*known);
  struct stat status {};
  if (stat(folder.c_str(), &status) != 0 || !S_ISDIR(status.st_mode))
    return {};
  const bool as_remembered = known != nullptr && is_same(known->seen, status);
  if (!as_remembered)
    known = read(folder, status);
  static_cast<void>(turn_->is_due(known->looked_at));
  known->to_be_changed = true;
  Folded result = answer(*known);
  // A folder without names was made a moment ago, and is about to be filled.
  if (!as_remembered && !is_settled(status) && !known->names.empty())
    folders_.pop_front();
  return result;
}

void FoldedNames::before_adding(const std::string& folder) {
  Folder* const known = remembered(folder);
  struct stat status {};
  if (known != nullptr)
    known->to_be_changed = stat(folder.c_str(), &status) == 0 && is_same(known->seen, status);
}

void FoldedNames::added(const std::string& folder, std::string_view name) {
  Folder* const known = remembered(folder);
  if (known == nullptr)
    return;
  if (!known->to_be_changed || stat(folder.c_str(), &known->seen) != 0) {
    folders_.pop_front();
    return;
  }
  known->to_be_changed = false;
  known->names.try_emplace(base::upper(name), name);
}

}  // namespace twk::local
