#pragma once

#include <functional>
#include <string>
#include <vector>

#include "cli/frame/context.hpp"
#include "cli/parser/command.hpp"

/// The command `plan`: many commands as one.
namespace twk::cli {

/// Understands the words of a command without running it, and returns its action; with `dry_run` the
/// rehearsal of it. Raises `UsageError`, also for a command that has no rehearsal.
using LineParser = std::function<std::function<int()>(const std::vector<std::string>& words, bool dry_run)>;

void add_plan_commands(Command& app, Context& context, const LineParser& parse);

/// Takes back what a run of a plan did, by its record.
void add_plan_undo(Command& plan, Context& context);

}  // namespace twk::cli
