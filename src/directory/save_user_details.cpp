#include "base/error_words.hpp"
#include "base/errors.hpp"
#include "directory/account_expiry.hpp"
#include "directory/account_marks.hpp"
#include "directory/ad_user.hpp"
#include "directory/nt_user.hpp"
#include "directory/user_details.hpp"
#include "session/session.hpp"

namespace twk::directory {
namespace {

using session::Session;

std::string saved_message(const std::vector<std::string>& refused) {
  std::string message = "Saved...";
  const char* separator = " but not ";
  for (const std::string& one : refused) {
    message += separator + one;
    separator = "; ";
  }
  return message;
}

void show_marks(Session& session, const UserChange& change) {
  const UserDetails& details = change.details;
  set_mark(session, details.key, mark::kDisabled, details.disabled);
  set_mark(session, details.key, mark::kLocked, details.locked_out);
  base::Trap unreadable;
  unreadable([&] {
    const auto ends = expiry_of_text(session.platform.clock, details.Expires);
    set_mark(session, details.key, mark::kExpired, ends && *ends <= session.platform.clock.utc_now());
  });
}

}  // namespace

SaveOutcome save_user_details(Session& session, const UserChange& change) {
  SaveOutcome outcome;
  base::Trap trap;
  trap([&] {
    outcome.saved = session::is_active_directory(session) ? Save_AD_User(session, change, outcome.refused)
                                                          : Save_NT_User(session, change);
  });
  session.CurrentUser.reset();
  if (outcome.saved && outcome.refused.empty())
    show_marks(session, change);
  if (trap.number() != 0)
    session.status.panel1 = "Error saving user: " + base::in_words(trap.number(), trap.description());
  else if (outcome.saved)
    session.status.panel1 = saved_message(outcome.refused);
  outcome.message = session.status.panel1;
  return outcome;
}

}  // namespace twk::directory
