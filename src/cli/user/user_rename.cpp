#include <optional>

#include "base/text.hpp"
#include "cli/frame/user_runs.hpp"
#include "cli/terminal/exit_codes.hpp"
#include "cli/terminal/failures.hpp"
#include "cli/user/user_commands.hpp"
#include "lifecycle/rename/rename_nt.hpp"
#include "lifecycle/rename/rename_principal.hpp"
#include "lifecycle/rename/rename_record.hpp"
#include "lifecycle/rename/rename_user.hpp"
#include "session/account_windows.hpp"
#include "session/form1.hpp"

namespace twk::cli {
namespace {

struct RenameArguments {
  std::string name;
  std::optional<std::string> logon;
  std::optional<std::string> upn;
  std::optional<std::string> full_name;
  std::optional<std::string> first;
  std::optional<std::string> last;
  std::optional<std::string> display;
  bool rename_dirs = false;
  bool even_if_shared = false;
  bool dry_run = false;
};

/// Enters a given value into a field; the rest stays as the window shows it.
void type(controls::TextBox& field, const std::optional<std::string>& text) {
  if (text)
    field.text = *text;
}

/// A name without a suffix keeps the account's own.
void type_principal(session::RenameUser& window, const std::string& name) {
  const lifecycle::PrincipalName principal = lifecycle::split_principal(name);
  window.User_logon_name.text = principal.prefix;
  if (principal.suffix.empty())
    return;
  const std::string suffix = lifecycle::find_suffix(window.AD_Domain.items(), principal.suffix);
  if (suffix.empty()) {
    std::string known;
    for (const std::string& one : window.AD_Domain.items())
      known += (known.empty() ? "" : ", ") + one;
    throw UsageError("--upn: the forest has no suffix " + principal.suffix + "; it has " + known);
  }
  window.AD_Domain.text = suffix;
}

bool rename_in_directory(session::Session& session, const RenameArguments& arguments) {
  lifecycle::RenameUser_Load(session);
  session::RenameUser& window = session.rename_user;
  type(window.Logon_Name_pre2000, arguments.logon);
  if (arguments.upn)
    type_principal(window, *arguments.upn);
  type(window.Full_Name, arguments.full_name);
  type(window.First_Name, arguments.first);
  type(window.Last_Name, arguments.last);
  type(window.Display_Name, arguments.display);
  window.ReNameSD.value = arguments.rename_dirs ? 1 : 0;
  if (arguments.full_name)
    lifecycle::RenameUser_Full_Name_Change(session);
  if (arguments.logon)
    lifecycle::RenameUser_Logon_Name_pre2000_Change(session);
  return lifecycle::RenameUser_Command2_Click(session);
}

bool rename_in_nt(session::Session& session, const RenameArguments& arguments) {
  if (arguments.upn || arguments.first || arguments.last || arguments.display)
    throw UsageError("an account of this domain has only a logon name and a full name");
  lifecycle::Rename_NT_Load(session);
  session::Rename_NT& window = session.rename_nt;
  type(window.User_Logon, arguments.logon);
  type(window.Full_Name, arguments.full_name);
  window.RenameDir.value = arguments.rename_dirs ? 1 : 0;
  if (arguments.logon)
    lifecycle::Rename_NT_User_Logon_Change(session);
  if (arguments.full_name)
    lifecycle::Rename_NT_Full_Name_Change(session);
  return lifecycle::Rename_NT_OKButton_Click(session);
}

/// The first row of the worst light that the operation added to the log tab.
const controls::ListRow* worst_row(const session::Session& session, std::size_t rows) {
  const controls::ListView& log = session.form1.ListView1;
  const controls::ListRow* worst = nullptr;
  for (std::size_t i = rows; i < log.size(); ++i) {
    if (worst == nullptr || exit_code_of_light(log.at(i).icon) > exit_code_of_light(worst->icon))
      worst = &log.at(i);
  }
  return worst;
}

/// The user of that name, or the one who had it before an interrupted renaming.
controls::TreeNode& reach_renamed_user(Context& context, session::Session& session, const std::string& name) {
  try {
    return reach_user(context, session, name);
  } catch (const Refused&) {
    const auto record = lifecycle::find_rename_record(session, name);
    if (!record)
      throw;
    controls::TreeNode& node = reach_user(context, session, record->account);
    const Domain domain = context.domain();
    if (lifecycle::record_identifier(bind_user(domain, record->account)) != record->identifier)
      throw;
    return node;
  }
}

session::Session& open_session(Context& context, const RenameArguments& arguments) {
  if (arguments.dry_run)
    print_steps(context);
  session::Session& session = context.session(Depth::kDomain);
  if (arguments.dry_run)
    tell_trees(context, session);
  session.runs.even_if_shared = consent_of(arguments.even_if_shared);
  return session;
}

int rename_user(Context& context, const RenameArguments& arguments) {
  if (!arguments.logon && !arguments.upn && !arguments.full_name && !arguments.first && !arguments.last &&
      !arguments.display)
    throw UsageError("say what to change: --logon, --upn, --full-name, --first, --last or --display");
  session::Session& session = open_session(context, arguments);
  controls::TreeNode& node = reach_renamed_user(context, session, arguments.name);
  session.form1.TreeView1.select(&node);
  const std::string old_text = node.text;
  const std::size_t rows = session.form1.ListView1.size();
  bool renamed = false;
  act(session, [&] {
    renamed = context.domain().active_directory ? rename_in_directory(session, arguments)
                                                : rename_in_nt(session, arguments);
  });
  const controls::ListRow* const row = worst_row(session, rows);
  if (!renamed && row == nullptr)
    throw Refused(old_text + " was not renamed.");
  const std::string_view light = row == nullptr ? session::kGreen : std::string_view(row->icon);
  const bool green = light == session::kGreen;
  if (green && arguments.dry_run)
    return kExitGreen;
  const std::string message =
      green ? old_text + " is " + node.text + " now" : std::string(base::trim(row->text));
  context.output().result({{"light", light}, {"message", message}, {"user", node.text}, {"was", old_text}},
                          context.output().light(light) + "  " + message);
  return exit_code_of_light(light);
}

}  // namespace

void add_user_rename(Command& user, Context& context) {
  auto arguments = std::make_shared<RenameArguments>();
  auto* rename = user.add_subcommand("rename", "Change the names of a user");
  rename
      ->add_option("NAME", arguments->name, "Account name, common name, principal name or distinguished name")
      ->required();
  rename->add_option("--logon", arguments->logon, "Account name")->type_name("L");
  rename->add_option("--upn", arguments->upn, "Principal name; empty for none")->type_name("U");
  rename->add_option("--full-name", arguments->full_name, "Common name; in a WinNT domain the full name")
      ->type_name("F");
  rename->add_option("--first", arguments->first, "First name; empty for none")->type_name("F");
  rename->add_option("--last", arguments->last, "Last name; empty for none")->type_name("L");
  rename->add_option("--display", arguments->display, "Display name; empty for none")->type_name("D");
  rename->add_flag("--rename-dirs", arguments->rename_dirs, "Rename the user's shares and folders too");
  add_even_if_shared(*rename, arguments->even_if_shared);
  rename->add_flag("--dry-run", arguments->dry_run, "Print what would be done, in order, and do nothing");
  rename->callback(
      [=, &context] { context.set_action([=, &context] { return rename_user(context, *arguments); }); });
}

}  // namespace twk::cli
