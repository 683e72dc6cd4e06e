#pragma once

#include "creation/creation_view.hpp"
#include "creation/new_user_request.hpp"
#include "session/creation_outcome.hpp"

namespace twk::session {
struct Session;
}

namespace twk::creation {

/// Takes one user from a name to an account with all that hangs on it. The log tab and "Log.txt" say what was
/// done. Nothing that was done is undone when a later stage fails. With "/DEBUG" a failure after the
/// account's fields raises.
session::CreationOutcome create_user(session::Session& session, NewUserRequest request, CreationView& view);

}  // namespace twk::creation
