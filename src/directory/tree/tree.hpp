#pragma once

#include <string_view>

namespace twk::controls {
struct TreeNode;
class TreeView;
}  // namespace twk::controls
namespace twk::session {
struct Session;
}

/// What happens in the tree after a load.
namespace twk::directory {

/// The tree opens a node: an OU that has not been read yet is read, unless all users were loaded at the
/// start.
void TreeView1_Expand(session::Session& session, controls::TreeNode& node);

/// Reads the OUs and users below an OU node into the tree, at most as many users as the load options allow.
/// True when that was done; False also for a node that was read before. A failure shows `Error_Status_Text`
/// in a box.
bool Expand_OU(session::Session& session, controls::TreeNode& node);

/// False for an OU whose users and OUs come with its first expansion.
bool is_read(controls::TreeView& tree, const controls::TreeNode& node);

/// True when the name is taken by a node of the tree: in a WinNT domain by its text, in Active Directory by
/// the beginning of its common name. Adds a "RED" row to the log tab then.
bool User_Exist(session::Session& session, std::string_view name);
/// The same question in Active Directory without a row: `key` is what the key of a user of that name begins
/// with, `folded` the name in upper case.
bool is_name_taken(const session::Session& session, std::string_view key, std::string_view folded);
/// What the keys of users begin with in Active Directory: "LDAP://twk.test/CN=".
std::string user_key_start(const session::Session& session);

}  // namespace twk::directory
