#include "lifecycle/account/consent.hpp"

#include "session/account_windows.hpp"
#include "session/multi_user.hpp"
#include "session/session.hpp"

namespace twk::lifecycle {

bool is_silent(const session::Session& session) {
  return (session.runs.Delete_Running && session.multi_user.No_Prompting.on()) ||
         (session.runs.Move_Running && session.multi_user.No_Prompt.on());
}

bool has_consent(session::Session& session, session::Consent said, std::string_view question,
                 std::string_view title) {
  if (said != session::Consent::kAsk)
    return said == session::Consent::kYes;
  return !is_silent(session) && !session.runs.rehearse &&
         session.platform.dialogs.MsgBox(question, platform::Buttons::kYesNo, platform::Icon::kExclamation,
                                         title) == platform::Answer::kYes;
}

}  // namespace twk::lifecycle
