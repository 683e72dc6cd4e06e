#include <algorithm>
#include <optional>

#include "cli/plan/plan_commands.hpp"
#include "cli/plan/plan_file.hpp"
#include "cli/plan/plan_record.hpp"
#include "cli/terminal/display.hpp"
#include "cli/terminal/exit_codes.hpp"
#include "cli/terminal/failures.hpp"
#include "cli/terminal/input.hpp"
#include "cli/terminal/interrupt.hpp"

namespace twk::cli {
namespace {

struct RunArguments {
  std::string file;
  bool dry_run = false;
  bool go_on = false;
};

std::string_view light_of(int exit_code) {
  return exit_code == kExitGreen    ? session::kGreen
         : exit_code == kExitYellow ? session::kYellow
                                    : session::kRed;
}

/// What a line came to.
struct Ended {
  int exit_code = kExitGreen;
  std::string message;
};

class PlanRun {
 public:
  PlanRun(Context& context, const RunArguments& arguments, const LineParser& parse)
      : context_(context),
        arguments_(arguments),
        parse_(parse),
        title_(arguments.file == "-" ? "standard input" : arguments.file),
        lines_(read_plan(title_, read_input(arguments.file))) {}

  int run() {
    check();
    if (arguments_.dry_run)
      context_.rehearse_as_one();
    else
      begin_record();
    for (const PlanLine& line : lines_) {
      if (interrupted() || (worst_ >= kExitRed && !arguments_.go_on))
        break;
      run_line(line);
    }
    return tell_end();
  }

 private:
  /// All lines are understood before the first one runs.
  void check() {
    for (const PlanLine& line : lines_) {
      try {
        parse_(line.words, arguments_.dry_run);
      } catch (const UsageError& fault) {
        throw UsageError(title_ + ", line " + std::to_string(line.number) + ": " + fault.what());
      }
    }
  }

  void begin_record() {
    record_.emplace(context_.session(Depth::kSettings), title_);
    context_.record_changes([this](const batch::AccountChange& change) { record_->change(change); });
  }

  void run_line(const PlanLine& line) {
    context_.output().result({{"line", line.number}, {"command", line.text}},
                             std::to_string(line.number) + ": " + printable(line.text));
    if (record_)
      record_->begin(line.number, line.text);
    const Ended ended = run_command(line);
    ++done_;
    worst_ = std::max(worst_, ended.exit_code);
    if (record_)
      record_->end(line.number, line.text, light_of(ended.exit_code), ended.message,
                   context_.output().last_record());
  }

  Ended run_command(const PlanLine& line) {
    try {
      const int exit_code = context_.run_further(parse_(line.words, arguments_.dry_run));
      return {exit_code, context_.output().last_message()};
    } catch (const std::exception& failure) {
      return {report_failure(), failure.what()};
    }
  }

  int tell_end() {
    const bool whole = done_ == lines_.size();
    context_.record_changes({});
    if (record_)
      record_->finish(whole ? "whole" : "stopped");
    const std::string_view light = worst_ == kExitGreen && !whole ? session::kYellow : light_of(worst_);
    std::string message = std::to_string(done_) + " of " + std::to_string(lines_.size()) +
                          (arguments_.dry_run ? " commands rehearsed" : " commands done");
    if (!whole) {
      message += interrupted() ? ", stopped" : ", stopped by a RED one: --go-on runs the others all the same";
    }
    Json result = {{"light", light}, {"done", done_}, {"commands", lines_.size()}, {"message", message}};
    if (record_)
      result["planRecord"] = record_->path();
    context_.output().result(result, context_.output().light(light) + "  " + message +
                                         (record_ ? "\nRecord: " + record_->path() : std::string()));
    context_.keep_exit_code();
    return worst_ >= kExitRed ? kExitRed : exit_code_of_light(light);
  }

  Context& context_;
  const RunArguments& arguments_;
  const LineParser& parse_;
  std::string title_;
  std::vector<PlanLine> lines_;
  std::optional<PlanRecord> record_;
  std::size_t done_ = 0;
  int worst_ = kExitGreen;
};

}  // namespace

void add_plan_commands(Command& app, Context& context, const LineParser& parse) {
  auto* plan = app.add_subcommand("plan", "Run many commands as one, from a file");
  plan->require_subcommand();
  auto arguments = std::make_shared<RunArguments>();
  auto* run = plan->add_subcommand("run", "Run the commands of a file, in order, up to the first RED one");
  run->add_option("FILE", arguments->file,
                  "The file: a command a line, without \"twk\" and its own options; \"-\" for standard input")
      ->required();
  run->add_flag("--dry-run", arguments->dry_run,
                "Rehearse each command; one that has no --dry-run is refused before anything runs");
  run->add_flag("--go-on", arguments->go_on, "Also run what follows a RED command");
  run->footer(
      "Words are separated by blanks, double quotes hold a word together; blank lines and those that begin\n"
      "with # are skipped. All lines are understood before the first one runs. In a lab a\n"
      "rehearsed line finds all that earlier lines would change; in a real domain it finds\n"
      "the units and groups that they would make, and users are as and where they are now.\n"
      "A plan:\n"
      "  # the move up in summer\n"
      "  users disable --group \"Year 13\"\n"
      "  users move-ou \"OU=Leavers,DC=twk,DC=test\" --group \"Year 13\"\n"
      "  users groups --add \"Year 13\" --remove \"Year 12\" --group \"Year 12\"");
  run->callback([=, &context] {
    context.set_action([=, &context] { return PlanRun(context, *arguments, parse).run(); });
  });
  add_plan_undo(*plan, context);
}

}  // namespace twk::cli
