#include <set>

#include "base/errors.hpp"
#include "base/text.hpp"
#include "batch/import.hpp"
#include "cli/frame/creation_progress.hpp"
#include "cli/frame/import_faults.hpp"
#include "cli/frame/import_preview.hpp"
#include "cli/frame/import_steps.hpp"
#include "cli/terminal/display.hpp"
#include "cli/terminal/exit_codes.hpp"
#include "cli/terminal/failures.hpp"
#include "cli/terminal/interrupt.hpp"
#include "cli/user/import_layout.hpp"
#include "cli/user/user_commands.hpp"
#include "local/posix_files.hpp"

namespace twk::cli {
namespace {

struct ImportArguments {
  std::string file;
  CreationPlace place;
  GivenColumns columns;
  bool halt_on_errors = false;
  bool halt_on_warnings = false;
  bool skip_prompts = false;
  std::string groups;
  std::string description;
  std::optional<std::string> expires;
  std::optional<std::string> expires_after;
  bool csv = false;
  bool preview = false;
  bool dry_run = false;
  bool make_parents = false;
};

struct Counts {
  std::size_t created = 0;
  std::size_t warnings = 0;
  std::size_t refused = 0;
};

void set_halts(batch::ImportOrder& order, const ImportArguments& arguments) {
  order.halt_on_errors = order.halt_on_errors || arguments.halt_on_errors || arguments.halt_on_warnings;
  order.halt_on_warnings = order.halt_on_warnings || arguments.halt_on_warnings;
  order.user.skip_prompts = order.user.skip_prompts || arguments.skip_prompts;
}

/// Sets the fields with groups for this run; the stored choice stays as it is.
void set_group_range(Context& context, const std::string& groups) {
  std::string start = "0";
  std::string finish = "0";
  if (base::equals_fold(groups, "all")) {
    finish = "99";
  } else if (!base::equals_fold(groups, "none")) {
    const std::size_t dash = groups.find('-');
    const auto lower = base::to_number(groups.substr(0, dash));
    const auto upper = dash == base::npos ? lower : base::to_number(groups.substr(dash + 1));
    if (!lower || !upper || *lower < 0 || *upper > 99 || *lower > *upper)
      throw UsageError("--groups takes none, all or a range of fields such as 5-8, from 0 to 99");
    start = base::to_text(*lower);
    finish = base::to_text(*upper);
  }
  context.override_setting("Setup", "ImportGroupsStart", start);
  context.override_setting("Setup", "ImportGroupsFinish", finish);
}

void set_expiry(session::Session& session, const ImportArguments& arguments, std::string& expiry) {
  if (arguments.expires && arguments.expires_after)
    throw UsageError("give either --expires or --expires-after");
  if (arguments.expires)
    expiry = *arguments.expires;
  if (arguments.expires_after && base::trim(*arguments.expires_after).empty())
    throw UsageError("--expires-after takes a day such as 31/12/2026 or 2026-12-31, or %IMPORTn%");
  if (arguments.expires_after)
    expiry = "end of " + *arguments.expires_after;
  const std::string refused = batch::refused_expiry(session, expiry);
  if (!refused.empty())
    throw UsageError("the expiry of the accounts: " + refused);
}

std::string_view light_of(const session::ImportRow& row) {
  return row.outcome.light.empty() ? session::kRed : std::string_view(row.outcome.light);
}

void print_row(Output& output, const session::ImportRow& row, Counts& counts) {
  const std::string_view light = light_of(row);
  const std::string message(base::trim(row.outcome.message));
  if (light == session::kRed)
    ++counts.refused;
  else
    ++counts.created;
  if (light == session::kYellow)
    ++counts.warnings;
  output.result({{"line", row.line},
                 {"user", row.outcome.user},
                 {"light", light},
                 {"message", message},
                 {"warnings", warnings_of(light, message, row.outcome.warnings)}},
                pad(std::to_string(row.line), 6) + output.light(light) + std::string(8 - light.size(), ' ') +
                    pad(printable(row.outcome.user), 20) + "  " + printable(message));
}

/// GREEN when every line made a user without a warning; RED when the run was halted or failed.
std::string_view light_of_run(const session::ImportState& state, const Counts& counts, bool faultless) {
  if (!state.failure.empty() || state.ImportHalt)
    return session::kRed;
  const bool clean = faultless && counts.refused == 0 && counts.warnings == 0 && !state.ImportStopped;
  return clean ? session::kGreen : session::kYellow;
}

std::string end_of_run(const session::Session& session) {
  const session::ImportState& state = session.import;
  if (!state.failure.empty())
    return state.failure;
  if (state.ImportHalt)
    return "Import Halted because errors were detected";
  return state.ImportStopped ? "Import Halted by User" : session.status.panel1.get();
}

void print_rehearsed_end(Output& output, const Counts& counts, std::string_view light,
                         const std::string& message) {
  output.result({{"light", light},
                 {"created", counts.created},
                 {"warned", counts.warnings},
                 {"refused", counts.refused},
                 {"message", message}},
                std::to_string(counts.created) + " would be created, " + std::to_string(counts.warnings) +
                    " of them with warnings, " + std::to_string(counts.refused) +
                    " not created. Nothing was written.");
}

void print_end(Output& output, const session::ImportState& state, const Counts& counts,
               std::string_view light, const std::string& message) {
  const std::string error_path = local::to_local_path(state.error_path);
  const std::string summary_path = local::to_local_path(state.summary_path);
  output.result({{"light", light},
                 {"created", counts.created},
                 {"warned", counts.warnings},
                 {"refused", counts.refused},
                 {"importErr", error_path},
                 {"summary", summary_path},
                 {"message", message}},
                std::to_string(counts.created) + " created, " + std::to_string(counts.warnings) +
                    " of them with warnings, " + std::to_string(counts.refused) + " not created" +
                    (state.ImportStopped ? ", stopped.\n" : ".\n") + "Not created: " + printable(error_path) +
                    "\n" + "Summary:     " + printable(summary_path));
}

/// Prints what went wrong besides the creations, each text once: a log or a summary that could not be
/// written. True when there was something.
bool tell_faults(const session::Session& session, std::set<std::string> told) {
  const controls::ListView& rows = session.log_rows;
  bool any = false;
  for (std::size_t i = 0; i < rows.size(); ++i) {
    if (rows.at(i).icon != session::kYellow || !told.insert(rows.at(i).text).second)
      continue;
    complain(rows.at(i).text);
    any = true;
  }
  return any;
}

int run_import(Context& context, session::Session& session, const std::string& path,
               const batch::ImportOrder& order, ImportSteps* steps) {
  session::ImportState& state = session.import;
  state.rehearsed = steps != nullptr;
  Counts counts;
  CreationProgress progress(session);
  std::set<std::string> outcomes;
  context.dialogs().before_text([&] { progress.clear(); });
  context.dialogs().on_events([&] {
    if (interrupted())
      state.ImportStopped = true;
  });
  state.row_done = [&](const session::ImportRow& row) {
    progress.clear();
    if (steps != nullptr)
      steps->print(row.line);
    print_row(context.output(), row, counts);
    outcomes.insert(row.outcome.message);
  };
  batch::run_import(session, path, order, progress);
  progress.clear();
  context.dialogs().before_text({});
  context.dialogs().on_events({});
  state.row_done = {};

  const bool faults = tell_faults(session, std::move(outcomes));
  if (!state.failure.empty())
    complain(state.failure);
  if (state.summary_path.empty() && (!state.rehearsed || !state.failure.empty()))
    return kExitRed;
  const std::string_view light = light_of_run(state, counts, !faults);
  if (state.rehearsed)
    print_rehearsed_end(context.output(), counts, light, end_of_run(session));
  else
    print_end(context.output(), state, counts, light, end_of_run(session));
  context.keep_exit_code();
  return exit_code_of_light(light);
}

/// The path of a file that contains a user.
std::string checked_file(Context& context, const std::string& file, bool csv) {
  std::string path = std::filesystem::absolute(file).string();
  if (!std::filesystem::exists(path) || std::filesystem::is_directory(path))
    throw BadInput("There is no file " + file);
  if (!std::filesystem::is_regular_file(path))
    throw BadInput(file + " is not an ordinary file: save the lines to one first");
  const std::string bytes = context.services().files.read(path);
  require_user(bytes, csv, file);
  if (!csv && !context.output().json())
    hint_at_csv(bytes, file);
  return path;
}

int import_users(Context& context, const ImportArguments& arguments) {
  if (!arguments.groups.empty())
    set_group_range(context, arguments.groups);
  const std::string path = checked_file(context, arguments.file, arguments.csv);
  if (arguments.preview && arguments.dry_run)
    throw UsageError("--preview and --dry-run exclude each other");
  std::optional<ImportSteps> steps;
  if (arguments.dry_run)
    steps.emplace(context);
  if (arguments.preview)
    context.rehearse([](const std::string&) {});
  session::Session& session = context.session(Depth::kDomain);
  batch::ImportOrder order = batch::stored_order(session);
  choose_place(context, session, arguments.place, order.user);
  if (const std::string fault = batch::refused_place(session, order.user); !fault.empty()) {
    session.platform.dialogs.MsgBox(fault, platform::Buttons::kOk, platform::Icon::kCritical,
                                    "Can't Import Users");
    return kExitRed;
  }
  set_halts(order, arguments);
  order.user.Description = arguments.description;
  set_expiry(session, arguments, order.user.Expiry);
  order.csv = arguments.csv;
  use_columns_of(session, order, session.platform.files.read(path), arguments.columns);
  if (steps)
    steps->follow(session);
  if (arguments.make_parents)
    batch::make_parent_folders(session, order);
  if (steps)
    steps->print(0);
  if (tell_import_faults(context, session, order))
    return kExitRed;
  if (arguments.preview)
    return preview_import(context, session, path, std::move(order));
  return run_import(context, session, path, order, steps ? &*steps : nullptr);
}

}  // namespace

void add_user_import(Command& user, Context& context) {
  auto arguments = std::make_shared<ImportArguments>();
  auto* command = user.add_subcommand("import", "Create a user for each line of a CSV file");
  command->add_option("FILE", arguments->file, "The file: one user per line, every comma separates")
      ->required();
  add_place_options(*command, arguments->place);
  command->add_flag(
      "--csv", arguments->csv,
      "Fields may be quoted, the first line holds headings, which name columns like numbers do");
  add_column_options(*command, arguments->columns);
  command->add_flag("--halt-on-errors", arguments->halt_on_errors, "End at the first user that fails");
  command->add_flag("--halt-on-warnings", arguments->halt_on_warnings,
                    "End at the first user that has a warning, or fails");
  command->add_flag("--skip-prompts", arguments->skip_prompts, "Leave out properties that ask for a value");
  command->add_option("--groups", arguments->groups, "Fields that may name groups")
      ->type_name("none|all|A-B");
  command
      ->add_option("--description", arguments->description,
                   "Description of the accounts, with %IMPORTn% for a column")
      ->type_name("TEXT")
      ->may_be_empty();
  command
      ->add_option("--expires", arguments->expires,
                   "Day at the beginning of which the accounts expire, or %IMPORTn%")
      ->type_name("TEXT");
  command
      ->add_option("--expires-after", arguments->expires_after,
                   "Last day of the accounts, which expire at its end, or %IMPORTn%")
      ->type_name("TEXT");
  command->add_flag("--preview", arguments->preview, "Show the result of each line, but create nothing");
  command->add_flag("--make-parents", arguments->make_parents,
                    "Make the folders above homes and profiles that do not exist");
  command->add_flag("--dry-run", arguments->dry_run,
                    "Print what would be done for each line, and do nothing");
  command->callback(
      [=, &context] { context.set_action([=, &context] { return import_users(context, *arguments); }); });
}

}  // namespace twk::cli
