#include "base/errors.hpp"
#include "batch/rename_users.hpp"
#include "cli/frame/rehearsed_steps.hpp"
#include "cli/frame/selection_run.hpp"
#include "cli/frame/user_runs.hpp"
#include "cli/terminal/display.hpp"
#include "cli/terminal/failures.hpp"
#include "cli/terminal/input.hpp"
#include "cli/user/user_commands.hpp"
#include "cli/users/users_commands.hpp"
#include "lifecycle/rename/rename_record.hpp"

namespace twk::cli {
namespace {

struct RenamesArguments {
  std::string file;
  bool rename_dirs = false;
  bool even_if_shared = false;
  bool dry_run = false;
};

void print_line(Context& context, const session::Session& session, const batch::RenamedLine& line) {
  const batch::UserOutcome& result = line.result;
  const std::string_view light = light_of(result);
  context.output().result({{"line", line.number},
                           {"user", result.user},
                           {"dn", dn_of_user(session, result.path)},
                           {"light", light},
                           {"message", result.message},
                           {"warnings", warnings_of(light, result.message, result.warnings)}},
                          pad(std::to_string(line.number), 6) + context.output().light(light) +
                              std::string(8 - light.size(), ' ') + pad(printable(result.user), 20) + "  " +
                              printable(result.message));
}

/// The node of a user, or of one whose renaming was interrupted; null when there is none.
controls::TreeNode* find_node(Context& context, session::Session& session, const std::string& name) {
  // Otherwise near names would be searched for in the whole domain, once for each unknown name.
  if (const auto located = find_user(context.domain(), name))
    return &reach_located_user(context, session, *located);
  if (!lifecycle::find_rename_record(session, name))
    return nullptr;
  return &reach_renamed_user(context, session, name);
}

/// A refusal is about one line.
controls::TreeNode* find_or_raise(Context& context, session::Session& session, const std::string& name) {
  try {
    return find_node(context, session, name);
  } catch (const Refused& refusal) {
    throw base::RuntimeError(platform::ads_error::kNoSuchObject, refusal.what());
  }
}

int rename_users(Context& context, const RenamesArguments& arguments) {
  const std::string bytes = read_input(arguments.file);
  if (arguments.dry_run) {
    context.rehearse_as_one();
    print_steps(context);
  }
  session::Session& session = context.session(Depth::kDomain);
  RunCounts counts;
  batch::RenameFileOrder order;
  ConsoleView view(context, session);
  order.folders = arguments.rename_dirs;
  order.terms.even_if_shared = consent_of(arguments.even_if_shared);
  if (arguments.dry_run)
    tell_trees(context, order.terms);
  order.find = [&](const std::string& name) { return find_or_raise(context, session, name); };
  order.done = [&](const batch::RenamedLine& line) {
    view.clear();
    if (line.unknown)
      ++counts.unknown;
    else
      counts.add(line.result.light, line.result.done);
    if (!arguments.dry_run || line.result.light != session::kGreen)
      print_line(context, session, line);
  };
  base::Trap trap;
  const bool read = trap([&] { batch::rename_from_file(session, bytes, order, view); });
  if (!read && trap.number() == base::error::kTypeMismatch)
    throw BadInput((arguments.file == "-" ? "standard input" : arguments.file) + ": " + trap.description());
  if (!read)
    throw base::RuntimeError(trap.number(), trap.description());
  view.clear();
  session.status.panel1 = std::string();
  return tell_counts(context, counts, arguments.dry_run);
}

}  // namespace

void add_users_rename(Command& users, Context& context) {
  auto arguments = std::make_shared<RenamesArguments>();
  auto* command = users.add_subcommand("rename", "Change the names of the users of a file");
  command
      ->add_option("--from-file", arguments->file,
                   "The file, as a spreadsheet program saves it, \"-\" for standard input. Its first line "
                   "holds the headings User and, besides it, any of Logon, UPN, Full name, First name, Last "
                   "name, Display name; an empty field leaves that name as it is")
      ->required()
      ->type_name("F");
  command->add_flag("--rename-dirs", arguments->rename_dirs, "Rename the users' shares and folders too");
  add_even_if_shared(*command, arguments->even_if_shared);
  add_dry_run(*command, arguments->dry_run);
  command->callback(
      [=, &context] { context.set_action([=, &context] { return rename_users(context, *arguments); }); });
}

}  // namespace twk::cli
