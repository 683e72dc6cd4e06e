#pragma once

#include <functional>
#include <string>

#include "cli/frame/context.hpp"

/// What the commands for permissions, ownership and shares have in common.
namespace twk::cli {

/// A session that knows the kind of its domain, without the domain's users.
session::Session& resource_session(Context& context);

/// Runs calls of the seam. What the system refuses leaves as `Refused` with its words; what is for want of
/// rights, of a file or of a server as a runtime error with an exit code of its own; a descriptor that cannot
/// be read as `BadInput`. `account` is whom the calls look up.
void in_plain_words(const std::function<void()>& calls, const std::string& account = {});

/// A block of "Log.txt" around a command that changes something. What it raises is its last line.
void in_log_block(session::Session& session, const std::function<void()>& work);

/// The message with the reasons behind it that the log was given since its block began.
std::string with_reasons(session::Session& session, std::string message);

/// A light with its message, as the log tab would show it; gives the exit code.
int tell_light(Context& context, std::string_view light, const std::string& message, const Json& further);

}  // namespace twk::cli
