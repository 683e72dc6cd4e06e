#include "cli/frame/context.hpp"
#include "cli/frame/rehearsed_steps.hpp"
#include "cli/group/group_commands.hpp"
#include "cli/terminal/exit_codes.hpp"
#include "cli/terminal/failures.hpp"
#include "cli/terminal/interrupt.hpp"
#include "cli/terminal/progress.hpp"
#include "groups/copy_group.hpp"

namespace twk::cli {
namespace {

/// Prints the result for each user, and the percentage.
class CopyPrinter final : public groups::CopyView {
 public:
  explicit CopyPrinter(Context& context) : context_(context) {}

  void copied(const groups::CopiedUser& user) override {
    if (context_.rehearses() && user.light == session::kGreen)
      return;
    progress_.clear();
    const std::string light(user.light);
    context_.output().result({{"path", user.path}, {"light", light}, {"message", user.text}},
                             context_.output().light(light) + "  " + user.text);
  }
  void progress(int percent) override { progress_.show(std::to_string(percent) + " %"); }
  bool stopped() override { return interrupted(); }

 private:
  Context& context_;
  Progress progress_;
};

int copy_group(Context& context, const std::string& from, const std::string& to, bool dry_run) {
  if (dry_run)
    print_steps(context);
  session::Session& session = groups_session(context, false);
  const groups::GroupRow source = find_group(context, session, from);
  const groups::GroupRow destination = find_group(context, session, to);
  if (!dry_run && !groups::confirm_copy(session, source, destination)) {
    complain(destination.name + ": nothing was done.");
    return kExitYellow;
  }
  groups::CopyOutcome outcome;
  {
    CopyPrinter printer(context);
    outcome = groups::copy_group(session, source, destination, printer);
  }
  return tell_group(context, destination.name, outcome.light, outcome.text);
}

}  // namespace

void add_group_copy(Command& group, Context& context) {
  auto from = std::make_shared<std::string>();
  auto to = std::make_shared<std::string>();
  auto dry_run = std::make_shared<bool>(false);
  auto* command = group.add_subcommand("copy", "Copy the users of one group into another");
  command->add_option("FROM", *from, "The group to copy from")->required();
  command->add_option("TO", *to, "The group to copy to")->required();
  add_dry_run(*command, *dry_run);
  command->callback([=, &context] {
    context.set_action([=, &context] { return copy_group(context, *from, *to, *dry_run); });
  });
}

}  // namespace twk::cli
