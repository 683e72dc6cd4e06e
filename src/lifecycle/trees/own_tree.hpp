#pragma once

#include <string>
#include <string_view>

#include "lifecycle/trees/tree_path.hpp"

namespace twk::session {
struct Session;
}

/// The gates that a path of an account passes before anything at it is taken away, moved or renamed.
namespace twk::lifecycle {

/// Whose tree or share is about to be touched.
struct Owner {
  std::string_view account;         ///< the account name; empty for nobody's
  std::string_view own_share = {};  ///< a share that may stand for the folder or lie in it, as do those that
                                    ///< the account's own paths alone go through
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

/// Raises 75 when a part of the path, down to what does not exist, is a link, which leads elsewhere; also on
/// the way to the share's own folder, where the administrative share of its drive shows that. Raises what the
/// server raises when it does not list its shares.
void require_no_link_on_the_way(session::Session& session, const TreePath& path);

}  // namespace twk::lifecycle
