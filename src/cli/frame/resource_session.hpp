#pragma once

#include <functional>
#include <string>

#include "cli/frame/context.hpp"

/// What the commands for permissions, ownership and shares share.
namespace twk::cli {

/// A session that knows the kind of its domain, without the domain's users.
session::Session& resource_session(Context& context);

/// Runs calls of the seam. A refusal by the system leaves as `Refused` with its text; missing rights, a
/// missing file or server as a runtime error with a separate exit code; an unreadable descriptor as
/// `BadInput`. `account` is the account that the calls look up.
void in_plain_words(const std::function<void()>& calls, const std::string& account = {});

/// A block of "Log.txt" around a command that changes something. A failure is its last line.
void in_log_block(session::Session& session, const std::function<void()>& work);

/// The message, followed by the reasons logged since the block began.
std::string with_reasons(session::Session& session, std::string message);

/// A light with its message, as the log tab would show it; returns the exit code.
int tell_light(Context& context, std::string_view light, const std::string& message, const Json& further);

}  // namespace twk::cli
