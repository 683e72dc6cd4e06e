#include <optional>

#include "cli/exit_codes.hpp"
#include "cli/failures.hpp"
#include "cli/user_commands.hpp"
#include "lifecycle/rename_nt.hpp"
#include "lifecycle/rename_user.hpp"

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
};

/// Types into a field what was given; the rest stays as the window shows it.
void type(controls::TextBox& field, const std::optional<std::string>& text) {
  if (text)
    field.text = *text;
}

std::string principal_prefix(const session::Session& session, const std::string& upn) {
  const std::string& suffix = session.rename_user.AD_Domain.caption;
  if (upn.find('@') == std::string::npos)
    return upn;
  if (!upn.ends_with(suffix))
    throw UsageError("--upn ends in " + suffix + " in this domain, or gives what stands in front of it");
  return upn.substr(0, upn.size() - suffix.size());
}

bool rename_in_directory(session::Session& session, const RenameArguments& arguments) {
  lifecycle::RenameUser_Load(session);
  session::RenameUser& window = session.rename_user;
  type(window.Logon_Name_pre2000, arguments.logon);
  if (arguments.upn)
    window.User_logon_name.text = principal_prefix(session, *arguments.upn);
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
    throw UsageError("an account of this domain has a logon name and a full name alone");
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

/// The worst light that the operation added to the log tab.
std::string_view worst_light(const session::Session& session, std::size_t rows) {
  std::string_view worst = session::kGreen;
  const controls::ListView& log = session.form1.ListView1;
  for (std::size_t i = rows; i < log.size(); ++i) {
    if (exit_code_of_light(log.at(i).icon) > exit_code_of_light(worst))
      worst = exit_code_of_light(log.at(i).icon) == kExitRed ? session::kRed : session::kYellow;
  }
  return worst;
}

int rename_user(Context& context, const RenameArguments& arguments) {
  if (!arguments.logon && !arguments.upn && !arguments.full_name && !arguments.first && !arguments.last &&
      !arguments.display)
    throw UsageError("say what is to be another: --logon, --upn, --full-name, --first, --last or --display");
  session::Session& session = context.session(Depth::kDomain);
  controls::TreeNode& node = reach_user(context, session, arguments.name);
  session.form1.TreeView1.select(&node);
  const std::string old_text = node.text;
  const std::size_t rows = session.form1.ListView1.size();
  bool renamed = false;
  act(session, [&] {
    renamed = context.domain().active_directory ? rename_in_directory(session, arguments)
                                                : rename_in_nt(session, arguments);
  });
  if (!renamed)
    throw Refused(old_text + " is not renamed.");
  const std::string_view light = worst_light(session, rows);
  context.output().result({{"light", light}, {"user", node.text}, {"was", old_text}},
                          context.output().light(light) + "  " + old_text + " is " + node.text + " now");
  return exit_code_of_light(light);
}

}  // namespace

void add_user_rename(Command& user, Context& context) {
  auto arguments = std::make_shared<RenameArguments>();
  auto* rename = user.add_subcommand("rename", "Give a user other names");
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
  rename->callback(
      [=, &context] { context.set_action([=, &context] { return rename_user(context, *arguments); }); });
}

}  // namespace twk::cli
