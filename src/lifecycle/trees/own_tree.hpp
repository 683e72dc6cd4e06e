#pragma once

#include <string>
#include <string_view>

#include "lifecycle/trees/tree_path.hpp"

namespace twk::session {
struct Session;
}

/// The checks of an account's path before anything there is removed, moved or renamed.
namespace twk::lifecycle {

/// The owner of the tree or share that is about to be changed.
struct Owner {
  std::string_view account;         ///< the account name; empty for nobody's
  std::string_view own_share = {};  ///< a share that may be of the folder or in it, like those used only by
                                    ///< the account's own paths
};

/// The path of a folder that is the owner's alone, whose contents may be removed, moved or renamed. Raises 52
/// as `parse_tree_path` does, and 75 for a drive as a whole and an administrative share ("D$", "ADMIN$"), for
/// a link on the way, and when the server or the domain does not say who uses it.
///
/// A folder that is, contains or is inside the home or profile of another account, or that is or contains
/// the folder of another share, raises 75 with a text that names them, unless `RunTerms::even_if_shared`
/// permits it; if that asks, a box names what else is affected and defaults to No.
TreePath require_own_tree(session::Session& session, std::string_view path, const Owner& owner);

/// The same for a share that is about to be removed or renamed: it raises for a drive's share and an
/// administrative one, and for one used by the paths of other accounts or whose folder contains theirs. A
/// share that the server does not have is permitted.
void require_own_share(session::Session& session, const std::string& server, const std::string& share,
                       const Owner& owner);

/// Raises 75 when a part of the path, down to what does not exist, is a link, which leads elsewhere;
/// including the way to the share's own folder, if the administrative share of its drive shows that. Raises
/// what the server raises when it does not list its shares.
void require_no_link_on_the_way(session::Session& session, const TreePath& path);

}  // namespace twk::lifecycle
