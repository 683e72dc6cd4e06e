#include "lifecycle/account/consent.hpp"

#include "session/session.hpp"

namespace twk::lifecycle {

bool is_silent(const session::Session& session) {
  return session.run.terms.silent;
}

bool has_consent(session::Session& session, session::Consent said, std::string_view question,
                 std::string_view title) {
  if (said != session::Consent::kAsk)
    return said == session::Consent::kYes;
  return !is_silent(session) && !session.run.terms.rehearse &&
         session.platform.dialogs.MsgBox(question, platform::Buttons::kYesNo, platform::Icon::kExclamation,
                                         title) == platform::Answer::kYes;
}

}  // namespace twk::lifecycle
