#include "base/errors.hpp"
#include "base/text.hpp"
#include "batch/import.hpp"
#include "cli/frame/import_faults.hpp"
#include "cli/frame/import_preview.hpp"
#include "cli/frame/import_run.hpp"
#include "cli/frame/import_steps.hpp"
#include "cli/frame/password_file.hpp"
#include "cli/terminal/exit_codes.hpp"
#include "cli/terminal/failures.hpp"
#include "cli/user/import_again.hpp"
#include "cli/user/import_layout.hpp"
#include "cli/user/user_commands.hpp"

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
  std::string passwords;
  std::string resume;
  std::string undo;
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

/// What a new import needs, and one that is taken up or back has in its record.
void require_arguments(const ImportArguments& arguments) {
  for (const auto& [name, value] : {std::pair{"FILE", &arguments.file},
                                    {"--template", &arguments.place.template_name},
                                    {"--site", &arguments.place.site}}) {
    if (value->empty())
      throw UsageError(std::string(name) + " is required");
  }
  if (arguments.preview && arguments.dry_run)
    throw UsageError("--preview and --dry-run exclude each other");
}

/// An option that had no effect could make a person believe in a preview, or in another OU.
void refuse_what_the_record_has(const ImportArguments& arguments) {
  const std::string option = arguments.undo.empty() ? "--resume" : "--undo";
  const CreationPlace& place = arguments.place;
  const bool of_order = !place.template_name.empty() || !place.site.empty() || !place.ou.empty() ||
                        !place.like.empty() || place.keep_names || place.plain_letters ||
                        !place.key.empty() || arguments.columns.any() || arguments.csv ||
                        arguments.halt_on_errors || arguments.halt_on_warnings || arguments.skip_prompts ||
                        !arguments.groups.empty() || !arguments.description.empty() || arguments.expires ||
                        arguments.expires_after || arguments.make_parents;
  if (of_order)
    throw UsageError(option +
                     " takes what was asked for from the record: give no other option of the import");
  if (arguments.preview)
    throw UsageError(option + " has no --preview, but it has --dry-run");
  if (!arguments.passwords.empty() && !arguments.undo.empty())
    throw UsageError("--undo has no --passwords");
}

int import_users(Context& context, const ImportArguments& arguments) {
  if (!arguments.undo.empty() || !arguments.resume.empty())
    refuse_what_the_record_has(arguments);
  if (!arguments.undo.empty())
    return undo_import(context, arguments.undo, arguments.dry_run);
  std::optional<PasswordFile> passwords;
  if (!arguments.passwords.empty() && !arguments.dry_run && !arguments.preview)
    passwords.emplace(arguments.passwords);
  ImportExtras extras;
  if (passwords)
    extras.password_set = [&](std::string_view account, std::string_view password) {
      base::Trap trap;
      if (!trap([&] { passwords->add(account, password); }))
        complain("The password of " + std::string(account) + " is not in the file: " + trap.description());
    };
  if (!arguments.resume.empty())
    return resume_import(context, arguments.resume, arguments.dry_run, extras);
  require_arguments(arguments);
  if (!arguments.groups.empty())
    set_group_range(context, arguments.groups);
  const std::string path = checked_file(context, arguments.file, arguments.csv);
  std::optional<ImportSteps> steps;
  if (arguments.dry_run)
    steps.emplace(context);
  if (arguments.preview)
    context.rehearse([](const std::string&) {});
  session::Session& session = context.session(Depth::kUnits);
  batch::ImportOrder order = batch::stored_order(session);
  choose_place(context, session, arguments.place, order.user);
  if (const std::string fault = batch::refused_place(session, order.user); !fault.empty()) {
    session.platform.dialogs.MsgBox(fault, platform::Buttons::kOk, platform::Icon::kCritical,
                                    "Can't Import Users");
    return kExitRed;
  }
  // Without a column, the second line would be the person of the first.
  if (!order.user.key.text.empty() && base::find_fold(order.user.key.text, "%IMPORT") == base::npos)
    throw UsageError("--key needs a column of the file, such as employeeNumber=%IMPORT5%");
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
  extras.steps = steps ? &*steps : nullptr;
  return run_import(context, session, path, order, extras);
}

}  // namespace

void add_user_import(Command& user, Context& context) {
  auto arguments = std::make_shared<ImportArguments>();
  auto* command = user.add_subcommand("import", "Create a user for each line of a CSV file");
  auto* file =
      command->add_option("FILE", arguments->file, "The file: one user per line, every comma separates");
  add_place_options(*command, arguments->place, false);
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
  command
      ->add_option("--passwords", arguments->passwords,
                   "Write the accounts and their passwords to this new file, which nobody else can read")
      ->type_name("FILE");
  auto* resume = command
                     ->add_option("--resume", arguments->resume,
                                  "Go on with an import that was broken off, by its record")
                     ->type_name("RECORD")
                     ->excludes(file);
  command->add_option("--undo", arguments->undo, "Take back what an import made, by its record")
      ->type_name("RECORD")
      ->excludes(file)
      ->excludes(resume);
  command->callback(
      [=, &context] { context.set_action([=, &context] { return import_users(context, *arguments); }); });
}

}  // namespace twk::cli
