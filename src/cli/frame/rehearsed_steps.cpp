#include "cli/frame/rehearsed_steps.hpp"

#include "cli/terminal/display.hpp"

namespace twk::cli {
namespace {

void print_step(Context& context, const std::string& step) {
  Json result = {{"step", step}};
  if (std::string user = context.user_of_run(); !user.empty())
    result["user"] = std::move(user);
  context.output().result(result, printable(step));
}

}  // namespace

void add_dry_run(Command& command, bool& dry_run) {
  command.add_flag("--dry-run", dry_run, "Print what would be done, in order, and do nothing");
}

void print_steps(Context& context) {
  context.rehearse([&context](const std::string& step) { print_step(context, step); });
}

void tell_trees(Context& context, session::RunTerms& terms) {
  terms.rehearse = [&context](const std::string& step) { print_step(context, step); };
}

}  // namespace twk::cli
