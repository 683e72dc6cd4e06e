#include "base/errors.hpp"
#include "cli/frame/commands.hpp"
#include "cli/frame/context.hpp"
#include "cli/terminal/exit_codes.hpp"
#include "cli/terminal/failures.hpp"
#include "session/settings.hpp"
#include "world/lab_check.hpp"
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

int examine(Context& context) {
  if (const std::filesystem::path lab = context.named_lab(); !lab.empty())
    return examine_lab(context, lab);
  const live::Folders folders = live::user_folders();
  const world::ConnectionOptions wanted = world::wanted_connection(folders, context.options().connection);
  live::LiveSettings settings;
  try {
    settings = world::required_settings(wanted);
  } catch (const base::RuntimeError& failure) {
    throw UsageError(failure.description());
  }
  Output& output = context.output();
  const auto steps =
      world::real_domains().check_connection(settings, context.prompts(), world::stored_unit(folders),
                                             [&](const CheckStep& step) { tell(output, step); });
  return exit_code_of(live::worst_outcome(steps));
}

}  // namespace

void add_doctor_command(Command& app, Context& context) {
  auto* doctor = app.add_subcommand("doctor", "Test the connection to the domain, or a lab, step by step");
  doctor->footer("Example: twk --lab ~/lab doctor");
  doctor->callback([&context] { context.set_action([&context] { return examine(context); }); });
}

}  // namespace twk::cli
