#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace twk::session {
struct Session;
}

/// Network paths of an account's folders. What an account says is never trusted: a path is parsed and checked
/// before anything below it is copied, moved or deleted.
namespace twk::lifecycle {

/// "\\FS1\Users\jo" in its parts.
struct TreePath {
  std::string server;              ///< "FS1"
  std::string share;               ///< "Users"
  std::vector<std::string> parts;  ///< "jo"; none for the share itself

  /// The path in canonical spelling, without a backslash at its end.
  [[nodiscard]] std::string text() const;
};

/// Takes a network path apart; blanks around it and doubled backslashes after the share do not count. Raises
/// 52, with a text that names the path and what is wrong, for one without server or share, with a part that
/// leads elsewhere ("." and ".."), with blanks or dots at the end of a part, which a server drops, and with a
/// character that no name may have.
TreePath parse_tree_path(std::string_view path);

/// The folder on the server that a share leads to; none when the server does not say.
std::optional<std::string> share_folder(session::Session& session, const std::string& server,
                                        const std::string& share);
/// "D:\Users\jo": where on its server a path leads; none when the server does not say.
std::optional<std::string> folder_on_server(session::Session& session, const TreePath& path);
/// True for "D:" and "D:\": a whole drive.
bool is_drive_root(std::string_view folder);
/// True when the two are one folder, or the second is below the first; both as the server spells them.
bool holds_folder(std::string_view outer, std::string_view inner);

/// True when a folder of the path is a mandatory profile: its name ends in ".man", in any case, with any
/// blanks, dots and backslashes after it.
bool names_mandatory_profile(std::string_view path);

/// True when the text contains the name as a separate word: "jo" in "jo$" and "x-jo.v2", not in "john".
bool holds_word(std::string_view text, std::string_view name);
/// The path up to the folder after the share that is named after a person, "\\FS1\Profiles\jo" of
/// "\\FS1\Profiles\jo\nt"; the whole path when no folder is. "jo" names "jo" and "jo.v2", not "john".
std::string cut_at_folder_of(std::string_view path, std::string_view name);

}  // namespace twk::lifecycle
