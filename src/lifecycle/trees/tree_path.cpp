#include "lifecycle/trees/tree_path.hpp"

#include <algorithm>

#include "base/errors.hpp"
#include "base/text.hpp"
#include "platform/adsi.hpp"
#include "session/session.hpp"

namespace twk::lifecycle {
namespace {

using session::Session;

constexpr std::string_view kNeverInNames = "/:*?\"<>|";

[[noreturn]] void refuse(std::string_view path, const std::string& why) {
  base::raise(base::error::kBadFileName, "\"" + std::string(path) + "\" " + why);
}

void check_part(std::string_view path, const std::string& part) {
  if (part.find_first_not_of(" .") == base::npos)
    refuse(path, "holds the part \"" + part + "\", which leads elsewhere");
  if (part.ends_with('.') || part.ends_with(' '))
    refuse(path, "holds the part \"" + part + "\", whose end a server drops");
  if (part.find_first_of(kNeverInNames) != base::npos)
    refuse(path, "holds a character that no folder name may have: \"" + part + "\"");
  if (const auto control = base::find_control_character(part))
    refuse(path, "holds the control character " + *control);
}

/// With one backslash at the end, in upper case.
std::string folded(std::string_view folder) {
  std::string text = base::upper(base::trim(folder));
  while (text.ends_with('\\'))
    text.pop_back();
  return text + '\\';
}

}  // namespace

std::string TreePath::text() const {
  std::string text = "\\\\" + server + "\\" + share;
  for (const std::string& part : parts)
    text += "\\" + part;
  return text;
}

TreePath parse_tree_path(std::string_view path) {
  const std::string_view trimmed = base::trim(path);
  if (trimmed.find_first_not_of('\\') == base::npos)
    refuse(path, trimmed.empty() ? "is not a path" : "consists only of backslashes");
  if (!trimmed.starts_with("\\\\") || trimmed.starts_with("\\\\\\"))
    refuse(path, "is not a network path");
  std::vector<std::string> parts = base::split(trimmed.substr(2), '\\');
  if (parts.size() < 2 || base::trim(parts[1]).empty())
    refuse(path, "names no share");
  TreePath tree;
  for (std::size_t i = 0; i < parts.size(); ++i) {
    // Only after the share may a backslash be doubled.
    if (i >= 2 && parts[i].empty())
      continue;
    check_part(path, parts[i]);
    if (i >= 2)
      tree.parts.push_back(std::move(parts[i]));
  }
  tree.server = std::move(parts[0]);
  tree.share = std::move(parts[1]);
  return tree;
}

std::optional<std::string> share_folder(Session& session, const std::string& server,
                                        const std::string& share) {
  std::optional<std::string> folder;
  base::Trap unknown;
  unknown([&] {
    folder = session.platform.directory.GetObject(platform::share_path(server, share))->Get("Path").text();
  });
  return folder;
}

std::optional<std::string> folder_on_server(Session& session, const TreePath& path) {
  std::optional<std::string> folder = share_folder(session, path.server, path.share);
  if (!folder)
    return std::nullopt;
  while (folder->ends_with('\\'))
    folder->pop_back();
  for (const std::string& part : path.parts)
    *folder += "\\" + part;
  return folder;
}

bool is_drive_root(std::string_view folder) {
  const std::string text = folded(folder);
  return text.size() <= 3;
}

bool holds_folder(std::string_view outer, std::string_view inner) {
  return folded(inner).starts_with(folded(outer));
}

bool names_mandatory_profile(std::string_view path) {
  constexpr std::string_view kMandatory = ".MAN";
  std::string text = base::upper(path);
  std::replace(text.begin(), text.end(), '/', '\\');
  for (std::string part : base::split(text, '\\')) {
    part.erase(part.find_last_not_of(" .") + 1);
    if (part.ends_with(kMandatory))
      return true;
  }
  return false;
}

bool holds_word(std::string_view text, std::string_view name) {
  const auto joins = [](char sign) {
    const auto byte = static_cast<unsigned char>(sign);
    return byte >= 0x80 || (byte >= '0' && byte <= '9') || (byte >= 'A' && byte <= 'Z') ||
           (byte >= 'a' && byte <= 'z');
  };
  if (name.empty())
    return false;
  for (std::size_t at = base::find_fold(text, name); at != base::npos;
       at = base::find_fold(text, name, at + 1)) {
    const std::size_t end = at + name.size();
    if ((at == 0 || !joins(text[at - 1])) && (end == text.size() || !joins(text[end])))
      return true;
  }
  return false;
}

std::string cut_at_folder_of(std::string_view path, std::string_view name) {
  const std::size_t server = path.find('\\', std::min<std::size_t>(2, path.size()));
  const std::size_t share = server == base::npos ? base::npos : path.find('\\', server + 1);
  for (std::size_t start = share; start != base::npos;) {
    const std::size_t end = path.find('\\', start + 1);
    if (holds_word(path.substr(start + 1, end == base::npos ? end : end - start - 1), name))
      return std::string(path.substr(0, end));
    start = end;
  }
  return std::string(path);
}

}  // namespace twk::lifecycle
