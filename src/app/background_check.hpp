#pragma once

#include <cstddef>
#include <functional>
#include <limits>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "app/connection_steps.hpp"
#include "app/errand.hpp"
#include "live/terms/check_step.hpp"
#include "live/terms/live_settings.hpp"
#include "live/terms/prompts.hpp"

namespace twk::app {

/// Tests a connection as `RealDomains::check_connection` does; replaced in tests.
using ConnectionTest = std::function<std::vector<live::CheckStep>(
    const live::LiveSettings& settings, const live::Prompts& prompts,
    const std::function<void(const live::CheckStep&)>& tell)>;

/// That of the real domains, and once somebody is logged on, of the file servers that the database names; an
/// empty one is the person's own.
ConnectionTest usual_connection_test(const std::string& database);

/// What a window does while a connection is tested; all in its own thread.
struct ConnectionListener {
  std::function<void(std::size_t place, const TimedStep& ended)> on_step;
  std::function<void()> on_end;
  std::function<std::optional<std::string>(const std::string& user)> ask_password;  ///< may be empty
};

/// Steps until somebody is logged on: those before "rights".
std::size_t logon_step_count();
/// The names of those steps; of all of them, with one in place of the file servers.
std::vector<std::string> logon_step_names();
std::vector<std::string> all_step_names();
inline constexpr std::size_t kAllSteps = std::numeric_limits<std::size_t>::max();

/// Starts a test, whose end does not wait for the window, nor the window for it. At most `count` steps are
/// made.
std::unique_ptr<Errand> start_check(const ConnectionTest& test, const live::LiveSettings& settings,
                                    std::size_t count, const ConnectionListener& listener);

}  // namespace twk::app
