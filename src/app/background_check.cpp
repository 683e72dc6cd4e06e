#include "app/background_check.hpp"

#include <algorithm>
#include <chrono>
#include <iterator>

#include "app/server_trial.hpp"
#include "world/real_domains.hpp"
#include "world/stored_connection.hpp"

namespace twk::app {

ConnectionTest usual_connection_test(const std::string& database) {
  return [database](const live::LiveSettings& settings, const live::Prompts& prompts, const auto& tell) {
    std::vector<live::CheckStep> steps = world::real_domains().check_connection(
        settings, prompts, {world::stored_unit(live::user_folders())}, tell);
    const bool stopped = prompts.is_stopped && prompts.is_stopped();
    if (stopped || live::worst_outcome(steps) == live::StepOutcome::kFailed)
      return steps;
    std::ranges::move(try_servers(settings, database, prompts, tell), std::back_inserter(steps));
    return steps;
  };
}

std::vector<std::string> logon_step_names() {
  std::vector<std::string> names = live::check_step_names();
  names.resize(logon_step_count());
  return names;
}

std::vector<std::string> all_step_names() {
  std::vector<std::string> names = live::check_step_names();
  names.emplace_back("file servers");
  return names;
}

std::size_t logon_step_count() {
  const auto& names = live::check_step_names();
  return static_cast<std::size_t>(
      std::distance(names.begin(), std::find(names.begin(), names.end(), "rights")));
}

std::unique_ptr<Errand> start_check(const ConnectionTest& test, const live::LiveSettings& settings,
                                    std::size_t count, const ConnectionListener& listener) {
  return std::make_unique<Errand>([=](Errand::Home& home) {
    using Clock = std::chrono::steady_clock;
    std::size_t ended = 0;
    Clock::time_point start = Clock::now();
    live::Prompts prompts;
    if (listener.ask_password) {
      prompts.password = [&](const std::string& user) {
        return home.ask([ask = listener.ask_password, user] { return ask(user); });
      };
    }
    prompts.is_stopped = [&] { return ended >= count || home.is_left(); };
    test(settings, prompts, [&](const live::CheckStep& step) {
      const auto now = Clock::now();
      const auto time = std::chrono::duration_cast<std::chrono::milliseconds>(now - start);
      start = now;
      const std::size_t place = ended++;
      if (place < count)
        home.post([listener, place, one = TimedStep{step, time}] { listener.on_step(place, one); });
    });
    home.post(listener.on_end);
  });
}

}  // namespace twk::app
