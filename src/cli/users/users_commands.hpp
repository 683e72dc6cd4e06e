#pragma once

#include "cli/frame/context.hpp"
#include "cli/parser/command.hpp"

/// The parts of the command `users`, which works on many users at once, with a file for each.
namespace twk::cli {

/// enable, disable, unlock, reset-password, password-expires, password-never-expires.
void add_users_account_functions(Command& users, Context& context);
/// The reports: find-expired, find-locked, find-inactive …
void add_users_find(Command& users, Context& context);
void add_users_delete(Command& users, Context& context);
void add_users_move(Command& users, Context& context);
void add_users_move_ou(Command& users, Context& context);
void add_users_groups(Command& users, Context& context);
void add_users_rename(Command& users, Context& context);
void add_users_set_attribute(Command& users, Context& context);

}  // namespace twk::cli
