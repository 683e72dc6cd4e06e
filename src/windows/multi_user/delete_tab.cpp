#include "windows/multi_user/delete_tab.hpp"

#include <optional>
#include <utility>
#include "base/text.hpp"
#include "batch/delete_users.hpp"
#include "batch/rehearse_selection.hpp"
#include "windows/mail/mail_tab.hpp"
#include "windows/mail/search_mail.hpp"
#include "windows/multi_user/run_preview.hpp"
#include "windows/multi_user/run_watch.hpp"
#include "windows/multi_user/run_window.hpp"
#include "windows/state/form1.hpp"

namespace twk::windows {
namespace {

bool lacks_server(Desktop& session) {
  const MultiUser& window = session.multi_user;
  if (!window.Delete_Mail.on() || !base::trim(window.EX_Server.text.get()).empty())
    return false;
  session.platform.dialogs.MsgBox("Must Select Users Exchange Server to \r\nDelete Mail Account",
                                  platform::Buttons::kOk, platform::Icon::kExclamation,
                                  "Delete Mail Account");
  return true;
}

/// "Delete account, shares, folders", as the boxes say.
std::string what_goes(const MultiUser& window) {
  std::string text;
  for (const auto& [box, name] : {std::pair(&window.Delete_NT_Account, "account"),
                                  {&window.Del_Shares, "shares"},
                                  {&window.Delete_Data, "folders"},
                                  {&window.Delete_Mail, "mailbox"}}) {
    if (box->on())
      text += (text.empty() ? "Delete " : ", ") + std::string(name);
  }
  if (text.empty())
    text = "Delete nothing: no box says what";
  return text + (window.Run_command.on() ? ", and run the command" : "") + ".";
}

bool is_deletion_wanted(Desktop& session) {
  std::optional<batch::SelectionRehearsal> rehearsal;
  const auto rehearse = [&](const batch::MeantUser& user) {
    if (!rehearsal)
      rehearsal.emplace(session, delete_order(session), [&session] { return preview_goes_on(session); });
    return rehearsal->steps_of(user);
  };
  return is_run_wanted(session, {"Delete Users", what_goes(session.multi_user), "&Delete", rehearse});
}

void run_deletion(Desktop& session) {
  MultiUser& window = session.multi_user;
  const RunningWindow running(
      session, window.Del_User,
      {&window.Command7.enabled, &window.DELIMPORT.enabled, &window.Run_command.enabled,
       &window.No_Prompting.enabled, &window.EX_Server.enabled, &window.Command1.enabled,
       &window.Command2.enabled, &window.Del_Permissions.enabled, &window.Delete_Mail.enabled,
       &window.Delete_Data.enabled, &window.Delete_NT_Account.enabled, &window.Del_Shares.enabled});
  RunWatch watch(session, Del_User_Click);
  const batch::RunHooks hooks = watch.hooks();
  run_over_selection(session, window.Del_User, "Delete Completed, Check log for errors",
                     [&](session::RunView& view) {
                       return batch::delete_selection(session, delete_order(session), view, hooks);
                     });
}

}  // namespace

lifecycle::DeleteOrder delete_order(Desktop& session) {
  const MultiUser& window = session.multi_user;
  const Form1& form = session.form1;
  lifecycle::DeleteOrder order;
  order.shares = window.Del_Shares.on();
  order.take_ownership = window.Del_Permissions.on();
  order.account = window.Delete_NT_Account.on();
  order.data = window.Delete_Data.on();
  order.mailbox = window.Delete_Mail.on();
  order.command = window.Run_command.on();
  order.confirm = form.Confirm_Deletes.on();
  order.through_drive_shares = form.chkAdmin_Shares.on();
  order.profile_named_by_user = form.Profile_Delete_Name.on();
  order.mail = {
      window.EX_Server.text, {}, mail_administrator(form), [&session](const mail::MailboxDeletion& request) {
        return choose_mailbox(session, request);
      }};
  order.script = {form.Delete_Script.text, form.Run_Hidden[2].on(), form.Wait_NEW[2].on()};
  order.terms.silent = window.No_Prompting.on();
  return order;
}

void Del_User_Click(Desktop& session) {
  MultiUser& window = session.multi_user;
  if (window.Del_User.caption == std::string(kCancelCaption))
    return stop_over_selection(session, window.Del_User, "&Delete Users", "Delete Canceled");
  if (is_running(window) || lacks_selection(session) || lacks_server(session) || !is_deletion_wanted(session))
    return;
  run_deletion(session);
}

}  // namespace twk::windows
