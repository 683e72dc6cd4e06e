#include "local/registry_file.hpp"

#include <fcntl.h>

#include <cerrno>
#include <filesystem>

#include "base/errors.hpp"
#include "base/text.hpp"
#include "local/file_errors.hpp"
#include "local/replace_file.hpp"

namespace twk::local {
namespace {

namespace fs = std::filesystem;

std::string_view trim_backslashes(std::string_view key) {
  const std::size_t first = key.find_first_not_of('\\');
  if (first == base::npos)
    return {};
  return key.substr(first, key.find_last_not_of('\\') - first + 1);
}

std::string full_path(std::string_view hive_name, std::string_view key) {
  key = trim_backslashes(key);
  std::string path;
  path.reserve(hive_name.size() + 1 + key.size());
  path.append(hive_name);
  if (!key.empty())
    path.append("\\").append(key);
  return path;
}

bool is_one_line(std::string_view text) {
  return base::is_valid_utf8(text) && !base::find_control_character(text);
}

bool same_file(const struct stat& a, const struct stat& b) {
  return a.st_dev == b.st_dev && a.st_ino == b.st_ino && a.st_size == b.st_size &&
         a.st_mtim.tv_sec == b.st_mtim.tv_sec && a.st_mtim.tv_nsec == b.st_mtim.tv_nsec;
}

/// Makes the folder and missing ones above it, for the owner only.
void make_private_folders(const fs::path& folder) {
  if (folder.empty() || mkdir(folder.c_str(), 0700) == 0)
    return;
  if (errno == ENOENT && folder.has_parent_path() && folder.parent_path() != folder) {
    make_private_folders(folder.parent_path());
    if (mkdir(folder.c_str(), 0700) == 0)
      return;
  }
  if (errno != EEXIST)
    raise_file_error(errno, "create", folder.string());
}

const RegistryValue* find_value(const RegistryTree& tree, std::string_view path, std::string_view name) {
  const auto key = tree.find(path);
  if (key == tree.end())
    return nullptr;
  const auto value = key->second.values.find(name);
  return value == key->second.values.end() ? nullptr : &value->second;
}

/// Runs `step`; false, with the reason in `problem`, when it fails.
template <typename Step>
bool attempt(std::string& problem, Step step) {
  try {
    step();
    problem.clear();
    return true;
  } catch (const std::exception& failure) {
    problem = failure.what();
    return false;
  }
}

}  // namespace

RegistryFile::RegistryFile(std::string folder, TurnPtr turn)
    : folder_(std::move(folder)), turn_(std::move(turn)) {
  for (const auto& [number, name] : {std::pair{platform::kHiveLocalMachine, "HKEY_LOCAL_MACHINE"},
                                     std::pair{platform::kHiveCurrentUser, "HKEY_CURRENT_USER"}}) {
    Hive& hive = hives_[number];
    hive.name = name;
    hive.path = (fs::path(folder_) / (hive.name + ".reg")).string();
  }
}

RegistryFile::Hive* RegistryFile::find_hive(std::uint32_t number) {
  const auto found = hives_.find(number);
  return found == hives_.end() ? nullptr : &found->second;
}

std::string RegistryFile::problem(std::uint32_t hive) const {
  const auto found = hives_.find(hive);
  return found == hives_.end() ? "there is no such hive" : found->second.problem;
}

void RegistryFile::refresh(Hive& hive) {
  struct stat now {};
  if (stat(hive.path.c_str(), &now) != 0) {
    const int error = errno;
    hive.loaded.reset();
    if (error != ENOENT)
      raise_file_error(error, "read", hive.path);
    hive.tree.clear();
    return;
  }
  if (hive.loaded && same_file(*hive.loaded, now))
    return;

  hive.loaded.reset();
  hive.file = open_descriptor(hive.path, O_RDONLY);
  const struct stat status = status_of(hive.file, hive.path);
  if (!S_ISREG(status.st_mode))
    raise_file_error(ENOTSUP, "read", hive.path);
  try {
    hive.tree = parse_regedit(read_all(hive.file, hive.path));
  } catch (const base::RuntimeError& failure) {
    if (failure.number() != kInvalidFileFormat)
      throw;
    throw base::RuntimeError(failure.number(), hive.path + ", " + failure.description());
  }
  hive.loaded = status;
}

void RegistryFile::look_at(Hive& hive) const {
  if (turn_->is_due(hive.looked_at) || !hive.problem.empty())
    refresh(hive);
}

void RegistryFile::change(Hive& hive, const std::function<bool(RegistryTree&)>& edit) {
  make_private_folders(folder_);
  const std::string lock_path = (fs::path(folder_) / "registry.lock").string();
  const Descriptor lock = open_descriptor(lock_path, O_RDWR | O_CREAT, 0600);
  lock_range(lock, Lock::kExclusive, 0, 1, lock_path);
  refresh(hive);
  if (!edit(hive.tree))
    return;
  // What is in memory counts only once it is on disk: until then the next call reads the file again.
  hive.loaded.reset();
  replace_file(hive.path, format_regedit(hive.tree), Access::kPrivate);
  hive.file = open_descriptor(hive.path, O_RDONLY);
  hive.loaded = status_of(hive.file, hive.path);
}

bool RegistryFile::Reg_Read(std::uint32_t hive, std::string_view key, std::string_view name,
                            std::string& value) {
  Hive* const found = find_hive(hive);
  if (found == nullptr || !attempt(found->problem, [&] { look_at(*found); }))
    return false;
  const RegistryValue* const entry = find_value(found->tree, full_path(found->name, key), name);
  if (entry == nullptr || !entry->other.empty())
    return false;
  value = entry->text;
  return true;
}

bool RegistryFile::Reg_Write(std::uint32_t hive, std::string_view key, std::string_view name,
                             std::string_view value) {
  Hive* const found = find_hive(hive);
  if (found == nullptr)
    return false;
  if (trim_backslashes(key).empty() || !is_one_line(key) || !is_one_line(name)) {
    found->problem = "the key or the name cannot be stored";
    return false;
  }
  const std::string path = full_path(found->name, key);
  return attempt(found->problem, [&] {
    change(*found, [&](RegistryTree& tree) {
      const RegistryValue* const old = find_value(tree, path, name);
      if (old != nullptr && old->other.empty() && old->text == value)
        return false;
      set_registry_value(registry_key(tree, path), {std::string(name), std::string(value), {}});
      return true;
    });
  });
}

void RegistryFile::require_readable() {
  for (auto& [number, hive] : hives_)
    refresh(hive);
}

bool RegistryFile::remove(std::uint32_t hive, std::string_view key, std::string_view name) {
  Hive* const found = find_hive(hive);
  if (found == nullptr)
    return false;
  refresh(*found);
  const std::string path = full_path(found->name, key);
  if (find_value(found->tree, path, name) == nullptr)
    return false;
  bool removed = false;
  change(*found, [&](RegistryTree& tree) {
    const auto place = tree.find(path);
    removed = place != tree.end() && place->second.values.erase(base::upper(name)) == 1;
    if (removed && place->second.values.empty())
      tree.erase(place);
    return removed;
  });
  return removed;
}

std::vector<platform::RegistryEntry> RegistryFile::entries(std::uint32_t hive, std::string_view key) {
  std::vector<platform::RegistryEntry> listed;
  Hive* const found = find_hive(hive);
  if (found == nullptr || !attempt(found->problem, [&] { refresh(*found); }))
    return listed;
  const std::string top = base::upper(full_path(found->name, key));
  for (auto at = found->tree.lower_bound(top); at != found->tree.end() && at->first.starts_with(top); ++at) {
    if (at->first.size() > top.size() && at->first[top.size()] != '\\')
      continue;
    const std::string_view path =
        trim_backslashes(std::string_view(at->second.path).substr(found->name.size()));
    for (const auto& [folded, value] : at->second.values) {
      if (value.other.empty())
        listed.push_back({std::string(path), value.name, value.text});
    }
  }
  return listed;
}

}  // namespace twk::local
