#pragma once

#include <string_view>

namespace twk::controls {
struct TreeNode;
}
namespace twk::session {
struct Session;
}

namespace twk::directory {

/// Asks for a name and makes an organizational unit of that name under the selected node.
void Create_OU(session::Session& session);

/// True for an OU or the domain, when units may be made at all: not in a WinNT domain, nor while only a
/// single OU is managed.
bool may_create_ou(const session::Session& session, const controls::TreeNode& above);

/// The same as `Create_OU` with the name given. True when it was made: its node is in the tree and selected,
/// and the log tab reports it. A refusal is reported in a box and on the log tab.
bool create_ou(session::Session& session, controls::TreeNode& above, std::string_view name);

}  // namespace twk::directory
