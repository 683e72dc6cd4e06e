#pragma once

#include <optional>
#include <string>

#include "app/background_check.hpp"
#include "app/connection_window.hpp"

namespace twk::app {

/// What came of an attempt to connect.
struct ConnectionAttempt {
  bool cancelled = false;
  FailedConnection failed = {};  ///< empty for a success
  std::string password = {};     ///< of the settings, or typed meanwhile
};

/// Tries each step of a logon in the background, while a small window shows how far it is. Cancel returns
/// at once, and the step that is going on ends unseen. Passwords are asked for by `ask`, if it is not empty.
ConnectionAttempt try_to_connect(
    const live::LiveSettings& settings,
    const std::function<std::optional<std::string>(const std::string& user)>& ask,
    const ConnectionTest& test = {});

}  // namespace twk::app
