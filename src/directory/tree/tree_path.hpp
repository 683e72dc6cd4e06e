#pragma once

#include <string_view>

namespace twk::controls {
struct TreeNode;
}
namespace twk::session {
struct Session;
}

/// The way down the tree, whose nodes are read only when they are opened.
namespace twk::directory {

/// The node of a distinguished name; all nodes above it are opened, from the first node down. None for a name
/// that the tree does not show.
controls::TreeNode* reach_node(session::Session& session, std::string_view distinguished_name);

/// The node of a user by its path "LDAP://<domain>/<dn>"; in a WinNT domain by its name.
controls::TreeNode* reach_user(session::Session& session, std::string_view key);

}  // namespace twk::directory
