#include <algorithm>
#include <array>
#include <filesystem>
#include <map>

#include "base/errors.hpp"
#include "base/text.hpp"
#include "batch/import_record.hpp"
#include "batch/undo_change.hpp"
#include "batch/undo_import.hpp"
#include "cli/frame/rehearsed_steps.hpp"
#include "cli/frame/selection_run.hpp"
#include "cli/plan/plan_commands.hpp"
#include "cli/plan/plan_record.hpp"
#include "cli/terminal/display.hpp"
#include "cli/terminal/exit_codes.hpp"
#include "cli/terminal/failures.hpp"
#include "cli/terminal/interrupt.hpp"
#include "creation/command_text.hpp"

namespace twk::cli {
namespace {

namespace fs = std::filesystem;

struct UndoArguments {
  std::string record;
  bool dry_run = false;
};

/// A command of a recorded plan.
struct RecordedCommand {
  int line = 0;
  std::string text;
  std::vector<batch::AccountChange> changes;
  std::string import;  ///< the record of its import; empty for none
  std::string light;   ///< how it ended; empty when the plan was broken off within it
  bool undone = false;
};

struct RecordedPlan {
  std::string path;
  records::JsonLine order;
  std::vector<RecordedCommand> commands;
};

void take_entry(RecordedPlan& plan, std::map<std::int64_t, std::size_t>& places,
                const records::JsonLine& entry) {
  const std::int64_t number = entry.number("line");
  if (number == 0)
    return;
  const auto [place, is_new] = places.try_emplace(number, plan.commands.size());
  if (is_new)
    plan.commands.push_back({static_cast<int>(number), entry.text("command"), {}, {}, {}, false});
  RecordedCommand& command = plan.commands[place->second];
  if (auto change = batch::change_of(entry))
    command.changes.push_back(std::move(*change));
  if (std::string import = entry.text("import"); !import.empty())
    command.import = std::move(import);
  if (std::string light = entry.text("light"); !light.empty())
    command.light = std::move(light);
  command.undone = command.undone || entry.is_set("undone");
}

/// A last line that was not written to its end is left out.
RecordedPlan read_plan_record(Context& context, const std::string& given) {
  RecordedPlan plan;
  plan.path = fs::absolute(given).string();
  if (!fs::is_regular_file(plan.path))
    throw BadInput("There is no record " + plan.path);
  const std::string bytes = context.services().files.read(plan.path);
  std::map<std::int64_t, std::size_t> places;
  int number = 0;
  for (std::size_t at = 0, end = 0; (end = bytes.find('\n', at)) != std::string::npos; at = end + 1) {
    const auto entry = records::JsonLine::parse(std::string_view(bytes).substr(at, end - at));
    if (++number == 1 && (!entry || entry->text("record") != "plan" || entry->number("version") != 1))
      throw BadInput(plan.path + ", line 1: this is no record of a plan");
    if (!entry)
      throw BadInput(plan.path + ", line " + std::to_string(number) + ": this is no entry of a record");
    if (number == 1)
      plan.order = *entry;
    take_entry(plan, places, *entry);
  }
  if (number == 0)
    throw BadInput(plan.path + " is empty");
  return plan;
}

/// True for a command that changes nothing.
bool only_reads(const std::vector<std::string>& words) {
  constexpr std::array<std::string_view, 9> kReading = {"list", "show", "find",     "members", "check",
                                                        "get",  "info", "describe", "export"};
  if (words.size() < 2)
    return true;
  return words[0] == "doctor" || words[0] == "format" || words[1].starts_with("find-") ||
         std::ranges::find(kReading, words[1]) != kReading.end();
}

/// True for a command whose changes are in the record, each for itself.
bool is_recorded(const std::vector<std::string>& words) {
  constexpr std::array<std::string_view, 5> kRecorded = {"enable", "disable", "groups", "move-ou",
                                                         "set-attribute"};
  return words.size() > 1 && words[0] == "users" && std::ranges::find(kRecorded, words[1]) != kRecorded.end();
}

class PlanUndo {
 public:
  PlanUndo(Context& context, session::Session& session, const RecordedPlan& plan)
      : context_(context), session_(session), plan_(plan) {}

  int run() {
    for (auto command = plan_.commands.rbegin(); command != plan_.commands.rend() && !interrupted();
         ++command) {
      if (!command->undone)
        undo(*command);
    }
    context_.keep_exit_code();
    if (counts_.all() == 0) {
      complain("nothing of this plan is left to take back");
      return kExitYellow;
    }
    const int exit_code = tell_counts(context_, counts_, context_.rehearses());
    return kept_ ? std::max(exit_code, kExitYellow) : exit_code;
  }

 private:
  void undo(const RecordedCommand& command) {
    std::vector<std::string> words = creation::split_command(command.text);
    if (!words.empty() && words.front() == "twk")
      words.erase(words.begin());
    const std::size_t failed = counts_.failed;
    for (auto change = command.changes.rbegin(); change != command.changes.rend() && !interrupted(); ++change)
      tell(command.line, batch::take_back(session_, *change));
    if (!command.import.empty())
      undo_import(command);
    else if (!is_recorded(words) && !only_reads(words))
      return keep(command);
    if (counts_.failed == failed && !interrupted() && !context_.rehearses())
      batch::note_in_record(context_.services().files, plan_.path,
                            {{"line", std::int64_t{command.line}}, {"undone", true}});
  }

  void undo_import(const RecordedCommand& command) {
    const batch::RecordedRun run = batch::load_import_record(context_.services().files, command.import);
    if (const std::string fault = batch::refused_record(session_, run); !fault.empty())
      throw BadInput(command.import + ": " + fault);
    batch::undo_import(session_, run, [&](const batch::UndoneLine& undone) {
      tell(command.line, {undone.outcome, undone.line.user, {}});
      return !interrupted();
    });
  }

  void keep(const RecordedCommand& command) {
    kept_ = true;
    const std::string_view light = command.light.empty() ? "broken off" : std::string_view(command.light);
    complain("line " + std::to_string(command.line) + " (" + std::string(light) +
             ") cannot be taken back: " + command.text);
  }

  void tell(int line, const batch::UserOutcome& outcome) {
    counts_.add(outcome.light, outcome.done);
    if (context_.rehearses() && outcome.light == session::kGreen)
      return;
    const std::string message(base::trim(outcome.message));
    context_.output().result({{"line", line},
                              {"user", outcome.user},
                              {"light", outcome.light},
                              {"message", message},
                              {"warnings", warnings_of(outcome.light, message, outcome.warnings)}},
                             pad(std::to_string(line), 6) + context_.output().light(outcome.light) +
                                 std::string(8 - std::min<std::size_t>(outcome.light.size(), 7), ' ') +
                                 printable(message));
  }

  Context& context_;
  session::Session& session_;
  const RecordedPlan& plan_;
  RunCounts counts_;
  bool kept_ = false;  ///< something cannot be taken back
};

int undo_plan(Context& context, const UndoArguments& arguments) {
  const RecordedPlan plan = read_plan_record(context, arguments.record);
  if (arguments.dry_run)
    print_steps(context);
  session::Session& session = context.session(Depth::kDomain);
  if (!base::equals_fold(plan.order.text("domain"), session.DomainName))
    throw BadInput(plan.path + " is of the domain " + plan.order.text("domain") + ", this one is " +
                   session.DomainName);
  std::size_t changes = 0;
  std::size_t imports = 0;
  for (const RecordedCommand& command : plan.commands) {
    changes += command.undone ? 0 : command.changes.size();
    imports += command.undone || command.import.empty() ? 0 : 1;
  }
  const std::string question = "Take back the plan of " + plan.order.text("begun") + ": " +
                               std::to_string(changes) + (changes == 1 ? " change" : " changes") +
                               " of accounts and " + std::to_string(imports) +
                               (imports == 1 ? " import?" : " imports?");
  if (!arguments.dry_run &&
      context.dialogs().MsgBox(question, platform::Buttons::kYesNo, platform::Icon::kQuestion, "Undo Plan") !=
          platform::Answer::kYes)
    return kExitRed;
  return PlanUndo(context, session, plan).run();
}

}  // namespace

void add_plan_undo(Command& plan, Context& context) {
  auto arguments = std::make_shared<UndoArguments>();
  auto* undo = plan.add_subcommand(
      "undo",
      "Take back what a plan did, in reverse order: imports, enabled and disabled accounts, groups, "
      "units and attributes of users");
  undo->add_option("RECORD", arguments->record, "The record that the plan's run named")->required();
  add_dry_run(*undo, arguments->dry_run);
  undo->footer("What cannot be taken back is named, and the exit code is 1.");
  undo->callback(
      [=, &context] { context.set_action([=, &context] { return undo_plan(context, *arguments); }); });
}

}  // namespace twk::cli
