#include "lifecycle/rehearsal/folder_names.hpp"

#include <algorithm>
#include <functional>

#include "base/errors.hpp"
#include "base/text.hpp"
#include "platform/network_path.hpp"

namespace twk::lifecycle {
namespace {

constexpr std::int32_t kFewQuestions = 20;

bool is_plain(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '.' || c == '-' ||
         c == '_';
}

}  // namespace

bool FolderNames::is_surely_absent(std::string_view path) {
  const std::string_view name = path.substr(path.rfind('\\') + 1);
  if (name.size() == path.size() || name.empty() || name.back() == '.' || name.front() == '.' ||
      !std::ranges::all_of(name, is_plain))
    return false;
  const std::string_view above = path.substr(0, path.size() - name.size() - 1);
  const auto known = folders_.find(above);
  Folder& folder = known == folders_.end() ? folders_[std::string(above)] : known->second;
  if (++folder.questions <= kFewQuestions)
    return false;
  if (folder.questions == kFewQuestions + 1)
    list(std::string(above), folder);
  return folder.is_listed && !folder.names.contains(base::hash_fold(name));
}

/// The folders of a server itself, its shares, are no list of files.
void FolderNames::list(const std::string& path, Folder& folder) {
  if (platform::take_apart(path).share.empty())
    return;
  base::Trap trap;
  folder.is_listed = trap([&] {
    for (const platform::FileEntry& entry : files_.list(path))
      folder.names.insert(base::hash_fold(entry.name));
  });
}

}  // namespace twk::lifecycle
