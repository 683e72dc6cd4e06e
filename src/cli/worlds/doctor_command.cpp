#include <algorithm>

#include "base/errors.hpp"
#include "cli/frame/commands.hpp"
#include "cli/frame/context.hpp"
#include "cli/terminal/exit_codes.hpp"
#include "cli/terminal/failures.hpp"
#include "cli/terminal/interrupt.hpp"
#include "session/settings.hpp"
#include "world/lab_check.hpp"
#include "world/real_domains.hpp"
#include "world/server_check.hpp"
#include "world/stored_connection.hpp"

namespace twk::cli {
namespace {

using live::CheckStep;
using live::StepOutcome;

constexpr std::string_view kLights[] = {session::kGreen, session::kYellow, session::kRed, "SKIPPED"};

/// Columns for people: light, step, finding.
std::string text_of(const Output& output, const CheckStep& step) {
  constexpr std::size_t kWidth = 18;
  constexpr std::size_t kLightWidth = 9;
  const std::string_view word = kLights[static_cast<std::size_t>(step.outcome)];
  const std::size_t gap = step.name.size() < kWidth ? kWidth - step.name.size() : 1;
  const std::string light = step.outcome == StepOutcome::kSkipped ? std::string(word) : output.light(word);
  return light + std::string(kLightWidth - word.size(), ' ') + step.name + std::string(gap, ' ') +
         step.detail;
}

void tell(Output& output, const CheckStep& step) {
  output.result({{"step", step.name}, {"outcome", live::outcome_word(step.outcome)}, {"detail", step.detail}},
                text_of(output, step));
}

int exit_code_of(StepOutcome worst) {
  if (worst == StepOutcome::kFailed)
    return kExitRed;
  return worst == StepOutcome::kWarning ? kExitYellow : kExitGreen;
}

int examine_lab(Context& context, const std::filesystem::path& folder) {
  if (!world::may_be_lab(folder))
    throw BadInput(folder.string() +
                   " is not a lab: it has no lab.conf. `twk lab init DIR --sample` makes one");
  const auto steps = world::check_lab(folder, context.dialogs(),
                                      [&](const CheckStep& step) { tell(context.output(), step); });
  return exit_code_of(live::worst_outcome(steps));
}

int examine(Context& context, const std::string& unit) {
  if (const std::filesystem::path lab = context.named_lab(); !lab.empty()) {
    if (!unit.empty())
      throw UsageError("--ou looks at the rights in a real domain; a lab has none");
    return examine_lab(context, lab);
  }
  const live::Folders folders = live::user_folders();
  const world::ConnectionOptions wanted = world::wanted_connection(folders, context.options().connection);
  live::LiveSettings settings;
  try {
    settings = world::required_settings(wanted);
  } catch (const base::RuntimeError& failure) {
    throw UsageError(failure.description());
  }
  const auto print = [&](const CheckStep& step) { tell(context.output(), step); };
  const live::CheckedPlace place{unit.empty() ? world::stored_unit(folders) : unit, !unit.empty()};
  auto worst =
      live::worst_outcome(world::real_domains().check_connection(settings, context.prompts(), place, print));
  if (worst != StepOutcome::kFailed)
    worst = std::max(worst, live::worst_outcome(world::check_servers(context.world(), print)));
  return std::max(exit_code_of(worst), interrupted() ? kExitYellow : kExitGreen);
}

}  // namespace

void add_doctor_command(Command& app, Context& context) {
  auto* doctor = app.add_subcommand("doctor", "Test the connection to the domain, or a lab, step by step");
  auto unit = std::make_shared<std::string>();
  doctor
      ->add_option("--ou", *unit, "Where the rights are looked at: any that were delegated there are enough")
      ->type_name("DN");
  doctor->callback([=, &context] { context.set_action([=, &context] { return examine(context, *unit); }); });
}

}  // namespace twk::cli
