#include "base/errors.hpp"
#include "cli/frame/commands.hpp"
#include "cli/frame/context.hpp"
#include "cli/terminal/exit_codes.hpp"
#include "cli/terminal/failures.hpp"
#include "session/settings.hpp"
#include "world/real_domains.hpp"
#include "world/stored_connection.hpp"

namespace twk::cli {
namespace {

using live::CheckStep;
using live::StepOutcome;

constexpr std::string_view kLights[] = {session::kGreen, session::kYellow, session::kRed, "SKIPPED"};

/// Columns for people: light, step, finding.
std::string text_of(const Output& output, const CheckStep& step) {
  constexpr std::size_t kWidth = 14;
  constexpr std::size_t kLightWidth = 9;
  const std::string_view word = kLights[static_cast<std::size_t>(step.outcome)];
  const std::string light = step.outcome == StepOutcome::kSkipped ? std::string(word) : output.light(word);
  return light + std::string(kLightWidth - word.size(), ' ') + step.name +
         std::string(kWidth - step.name.size(), ' ') + step.detail;
}

int examine(Context& context) {
  if (!context.options().lab.empty())
    throw UsageError("doctor tests the connection to a real domain: leave --lab out");
  const live::Folders folders = live::user_folders();
  const world::ConnectionOptions wanted = world::wanted_connection(folders, context.options().connection);
  live::LiveSettings settings;
  try {
    settings = world::required_settings(wanted);
  } catch (const base::RuntimeError& failure) {
    throw UsageError(failure.description());
  }
  Output& output = context.output();
  const auto steps = world::real_domains().check_connection(
      settings, context.prompts(), world::stored_unit(folders), [&](const CheckStep& step) {
        output.result(
            {{"step", step.name}, {"outcome", live::outcome_word(step.outcome)}, {"detail", step.detail}},
            text_of(output, step));
      });
  switch (live::worst_outcome(steps)) {
    case StepOutcome::kFailed:
      return kExitRed;
    case StepOutcome::kWarning:
      return kExitYellow;
    default:
      return kExitGreen;
  }
}

}  // namespace

void add_doctor_command(Command& app, Context& context) {
  auto* doctor = app.add_subcommand("doctor", "Test the connection to a real domain, step by step");
  doctor->callback([&context] { context.set_action([&context] { return examine(context); }); });
}

}  // namespace twk::cli
