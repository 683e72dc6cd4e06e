#pragma once

#include <functional>
#include <optional>
#include <string>

namespace twk::live {

/// Callbacks for the connections of a domain. All may be empty.
struct Prompts {
  /// Asks for the password of that user; none when nobody entered one.
  std::function<std::optional<std::string>(const std::string& user)> password;
  /// Receives what happened to the logon during the work: a ticket that expired or was renewed, a server that
  /// went away.
  std::function<void(const std::string& text)> tell;
  /// True when the person asks to stop.
  std::function<bool()> is_stopped = {};
};

}  // namespace twk::live
