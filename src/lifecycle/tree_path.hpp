#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace twk::session {
struct Session;
}

/// Network paths of the folders that hang on an account. What an account says is never taken on trust: a path
/// is taken apart and looked at before anything below it is copied, moved or deleted.
namespace twk::lifecycle {

/// "\\FS1\Users\jo" in its parts.
struct TreePath {
  std::string server;              ///< "FS1"
  std::string share;               ///< "Users"
  std::vector<std::string> parts;  ///< "jo"; none for the share itself

  /// The path in its one spelling, without a backslash at its end.
  [[nodiscard]] std::string text() const;
};

/// Takes a network path apart; blanks around it and doubled backslashes behind the share do not count. Raises
/// 52, with a text that names the path and what is wrong, for one without server or share, with a part that
/// leads elsewhere ("." and "..", also with blanks or dots behind them) and with a character that no name
/// has.
TreePath parse_tree_path(std::string_view path);

/// The folder on the server that a share stands for; none when the server does not tell.
std::optional<std::string> share_folder(session::Session& session, const std::string& server,
                                        const std::string& share);
/// "D:\Users\jo": where on its server a path leads; none when the server does not tell.
std::optional<std::string> folder_on_server(session::Session& session, const TreePath& path);
/// True for "D:" and "D:\": a whole drive.
bool is_drive_root(std::string_view folder);
/// True when the two are one folder, or the second lies below the first; both as the server spells them.
bool holds_folder(std::string_view outer, std::string_view inner);

/// The name of a share whose folder is this one or lies below it, but for `except`; empty when there is none
/// or the server does not tell. Shares of whole drives do not count.
std::string share_within(session::Session& session, const std::string& server, std::string_view folder,
                         std::string_view except);

/// Whose tree or share is about to be touched.
struct Owner {
  std::string_view account;         ///< the account name; empty for nobody's
  std::string_view own_share = {};  ///< a share that may stand for the folder or lie in it
};

/// The path of a folder of the owner's alone, whose contents may be taken away, moved or renamed. Raises 52
/// as `parse_tree_path` does, and 75 for a drive as a whole and an administrative share ("D$", "ADMIN$"), for
/// a link on the way, and when the server or the domain does not say who uses it.
///
/// A folder that is, holds or lies in the home or profile of another account, or that another share stands
/// for or lies below, raises 75 with a text that names them, unless `runs.even_if_shared` lets it pass; where
/// that asks, a box names what else is hit and defaults to No.
TreePath require_own_tree(session::Session& session, std::string_view path, const Owner& owner);

/// The same for a share that is about to be removed or renamed: it raises for that of a drive and an
/// administrative one, and for one through which the paths of other accounts lead or whose folder holds
/// theirs. A share that the server does not have passes.
void require_own_share(session::Session& session, const std::string& server, const std::string& share,
                       const Owner& owner);

/// Raises 75 when a part of the path, down to what does not exist, is a link, which leads elsewhere.
void require_no_link_on_the_way(session::Session& session, const TreePath& path);

/// True when the text holds the name as a word of its own: "jo" in "jo$" and "x-jo.v2", not in "john".
bool holds_word(std::string_view text, std::string_view name);
/// The path up to the folder behind the share that is named after somebody, "\\FS1\Profiles\jo" of
/// "\\FS1\Profiles\jo\nt"; the whole path when no folder is. "jo" names "jo" and "jo.v2", not "john".
std::string cut_at_folder_of(std::string_view path, std::string_view name);

}  // namespace twk::lifecycle
