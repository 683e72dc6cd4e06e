#pragma once

#include <CLI/CLI.hpp>

#include "cli/context.hpp"

/// The parts of the command `users`, which works on many users at once, a file each.
namespace twk::cli {

/// enable, disable, unlock, reset-password, password-expires, password-never-expires.
void add_users_account_functions(CLI::App& users, Context& context);
/// find-expired, find-locked.
void add_users_find(CLI::App& users, Context& context);
void add_users_delete(CLI::App& users, Context& context);
void add_users_move(CLI::App& users, Context& context);
void add_users_set_attribute(CLI::App& users, Context& context);

}  // namespace twk::cli
