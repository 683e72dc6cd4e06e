#include "windows/custom_commands.hpp"

#include "base/errors.hpp"
#include "base/text.hpp"
#include "controls/tree_view.hpp"
#include "creation/command_text.hpp"
#include "creation/shell.hpp"
#include "directory/operations.hpp"
#include "platform/adsi.hpp"
#include "session/log_tab.hpp"
#include "session/settings.hpp"
#include "windows/state/desktop.hpp"
#include "windows/state/form1.hpp"

namespace twk::windows {
namespace {

using creation::CommandUser;
using platform::readable_text;

/// A WinNT account has a single full name: its first word, its last, and what is between.
void split_full_name(std::string_view full_name, CommandUser& user) {
  full_name = base::trim(full_name);
  const std::size_t first = full_name.find(' ');
  user.first = full_name.substr(0, first);
  if (first == base::npos)
    return;
  const std::size_t last = full_name.rfind(' ');
  user.last = full_name.substr(last + 1);
  user.middle = base::trim(full_name.substr(first, last - first));
}

CommandUser read_user(Desktop& session, const controls::TreeNode& node) {
  const bool active_directory = session::is_active_directory(session);
  const platform::ObjectPtr object = session.platform.directory.GetObject(
      active_directory ? node.key : directory::winnt_path(session, node.key));
  CommandUser user;
  if (active_directory) {
    user = {readable_text(object, "samAccountName"), readable_text(object, "FirstName"),
            readable_text(object, "initials"), readable_text(object, "LastName")};
  } else {
    user.account = object->Name();
    split_full_name(readable_text(object, "FullName"), user);
  }
  return user;
}

}  // namespace

void run_custom_command(Desktop& session, int index, controls::TreeNode& node) {
  const Form1& form = session.form1;
  controls::StatusBar& status = session.form1.StatusBar1;
  if (node.image != "USER") {
    status.panel1 = "Select a user first.";
    return;
  }
  const std::string suffix = index == 14 ? "1" : "";
  CommandUser user;
  base::Trap trap;
  if (!trap([&] { user = read_user(session, node); })) {
    session::LOG_TAB(session, session::kRed, "Error reading user " + node.text + ": " + trap.description());
    status.panel1 = "Error reading user " + node.text;
    return;
  }
  const std::vector<std::string> words = creation::command_words(
      session, session::read_setting(session, session::kCustom, "Script" + suffix), user,
      {form.NTSERVER.text, form.EXSERVER.text, form.EXSite.text, form.EXorg.text});
  const std::string command = creation::shown_command(words);
  const bool hidden =
      base::equals_fold(session::read_setting(session, session::kCustom, "RUNHIDDEN" + suffix), "YES");
  session.log.begin_block();
  session.log.line("Running Script: " + command);
  const std::string failure =
      creation::clsShell(session.platform.process).Spawn(words, false, hidden ? 0 : 1).failure;
  if (!failure.empty()) {
    session.log.line("Error Running Command: " + command);
    session.log.reason(failure);
  }
  session.log.close();
  if (failure.empty()) {
    session::LOG_TAB(session, session::kGreen, user.account + " Command started: " + command);
    status.panel1 = "Ready.";
  } else {
    session::LOG_TAB(session, session::kYellow, user.account + " Error Running Command: " + command);
    status.panel1 = "Error Running Command...";
  }
}

}  // namespace twk::windows
