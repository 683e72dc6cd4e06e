#pragma once

#include "creation/new_user_request.hpp"

namespace twk::controls {
struct TreeNode;
}
namespace twk::session {
struct Session;
}

namespace twk::creation {

/// What the settings ask of every creation: its stages, formats, password, flags, command. Without names,
/// place, template and site.
NewUserRequest stored_request(session::Session& session);

/// The new user goes to that node of the tree, or is made like the user there; none changes nothing.
void take_place(NewUserRequest& request, const controls::TreeNode* node);

}  // namespace twk::creation
