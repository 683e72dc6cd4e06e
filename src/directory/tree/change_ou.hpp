#pragma once

#include <optional>
#include <string>

namespace twk::controls {
struct TreeNode;
}
namespace twk::session {
struct Session;
}

namespace twk::directory {

/// Moves a user into another OU, in the directory and in tree and lists, selects its new node and logs it.
/// Returns the user's new path, and then the node is gone. None when it was not moved: the status line says
/// that the user is there already, a box what the directory refused.
std::optional<std::string> change_ou(session::Session& session, controls::TreeNode& node,
                                     controls::TreeNode& target);

/// A user was moved into another unit: the node, when there is one, stands there and is selected, and the
/// lists have the new path, which is returned.
std::string follow_moved_user(session::Session& session, const std::string& old_key, const std::string& unit);

}  // namespace twk::directory
