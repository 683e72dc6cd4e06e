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

std::size_t hash_of_name(std::string_view name) {
  return std::hash<std::string>{}(base::upper(name));
}

}  // namespace

bool FolderNames::is_surely_absent(std::string_view path) {
  const std::string_view name = path.substr(path.rfind('\\') + 1);
  if (name.size() == path.size() || name.empty() || name.back() == '.' || name.front() == '.' ||
      !std::ranges::all_of(name, is_plain))
    return false;
  const std::string above(path.substr(0, path.size() - name.size() - 1));
  Folder& folder = folders_[above];
  if (++folder.questions <= kFewQuestions)
    return false;
  if (folder.questions == kFewQuestions + 1)
    list(above, folder);
  return folder.is_listed && !folder.names.contains(hash_of_name(name));
}

/// The folders of a server itself, its shares, are no list of files.
void FolderNames::list(const std::string& path, Folder& folder) {
  if (platform::take_apart(path).share.empty())
    return;
  base::Trap trap;
  folder.is_listed = trap([&] {
    for (const platform::FileEntry& entry : files_.list(path))
      folder.names.insert(hash_of_name(entry.name));
  });
}

}  // namespace twk::lifecycle
