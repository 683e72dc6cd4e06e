#pragma once

namespace twk::session {
struct Session;
}

namespace twk::creation {

/// Takes one user from a name to an account with everything that belongs to it, from the contents of the New
/// User tab. Outcomes are shown by the lights, the logs and `LastCreation`; under import also by `ImportHalt`
/// and the summary. Nothing that was done is undone when a later stage fails. With "/DEBUG" a failure after
/// the account's fields raises.
void CreateUser_Click(session::Session& session);

}  // namespace twk::creation
