#pragma once

/// What the New User tab says beside its fields: what "Create User" would make of them.
namespace twk::windows {

struct Desktop;

/// Asks the run's own checks, which change nothing. Without a name it only says where the account would be.
void foresee_new_user(Desktop& session);

/// The domain, the templates or the sites changed: they are taken anew for the next time.
void forget_foresight(Desktop& session);

}  // namespace twk::windows
