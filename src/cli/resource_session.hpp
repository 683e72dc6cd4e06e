#pragma once

#include <functional>
#include <string>

#include "cli/context.hpp"

/// What the commands for permissions, ownership and shares have in common.
namespace twk::cli {

/// A session that knows the kind of its domain, without the domain's users.
session::Session& resource_session(Context& context);

/// Runs calls of the seam. A failure that a person can mend leaves as `Refused` with the system's words; one
/// that is for want of rights as a runtime error that ends in exit code 77. `account` is whom the calls look
/// up.
void in_plain_words(const std::function<void()>& calls, const std::string& account = {});

/// A block of "Log.txt" around a command that changes something. What it raises is its last line.
void in_log_block(session::Session& session, const std::function<void()>& work);

/// A light with its message, as the log tab would show it; gives the exit code.
int tell_light(Context& context, std::string_view light, const std::string& message, const Json& further);

}  // namespace twk::cli
