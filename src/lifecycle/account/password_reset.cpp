#include "lifecycle/account/password_reset.hpp"

#include "directory/operations.hpp"
#include "format/passwords.hpp"
#include "session/log_tab.hpp"
#include "session/session.hpp"

namespace twk::lifecycle {
namespace {

using session::Session;

bool is_wanted(Session& session, const PasswordReset& order) {
  return !order.confirm || session.platform.dialogs.MsgBox(
                               "Reset Password for " + order.name, platform::Buttons::kYesNo,
                               platform::Icon::kQuestion, "Reset Password") == platform::Answer::kYes;
}

bool set_password(Session& session, const PasswordReset& order, const std::string& password,
                  std::string& reason) {
  return session::is_active_directory(session)
             ? directory::Reset_AD_Password(session, password, order.key, &reason)
             : directory::Reset_NT_Password(session, password, order.name, &reason);
}

}  // namespace

session::RunOutcome reset_password(Session& session, const PasswordReset& order) {
  session::RunOutcome outcome;
  if (!is_wanted(session, order))
    return outcome;
  session.log.begin_block();
  const std::string password = format::reset_user_password_text(session, order.default_password, order.name);
  std::string reason;
  outcome.done = set_password(session, order, password, reason);
  if (outcome.done) {
    outcome.light = session::kGreen;
    outcome.message = "Password Reset For " + order.name;
    session::LOG_TAB(session, session::kGreen, " " + outcome.message);
    session.log.line("Password Reset for: " + order.name +
                     (session::is_debug(session) ? " - " + password : std::string()));
    session.status.panel1 = "Password for " + order.name + " has Been Reset.";
  } else {
    outcome.light = session::kRed;
    outcome.message = "Error ReSetting Password for: " + order.name;
    session.status.panel1 = "Error ReSetting Password... " + reason;
    session.log.reason(outcome.message, reason);
    outcome.warnings = session.log.take_reasons();
    session.platform.dialogs.beep();
  }
  session.log.close();
  return outcome;
}

}  // namespace twk::lifecycle
