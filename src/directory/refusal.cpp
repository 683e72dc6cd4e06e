#include "directory/refusal.hpp"

#include "base/error_words.hpp"
#include "base/errors.hpp"
#include "base/text.hpp"
#include "session/log_tab.hpp"
#include "session/session.hpp"

namespace twk::directory {
namespace {

bool can_be_corrected(std::uint32_t number) {
  using namespace platform::ads_error;
  return number == kObjectExists || number == kInvalidDn || number == kConstraint || number == kUnwilling;
}

void tell(session::Session& session, std::string_view title, std::string_view light, const std::string& log,
          const std::string& box) {
  session::LOG_TAB(session, light, log);
  session.platform.dialogs.MsgBox(box, platform::Buttons::kOk, platform::Icon::kExclamation, title);
}

}  // namespace

void tell_refusal(session::Session& session, std::string_view title, const std::string& what,
                  const base::Trap& failure) {
  const std::string text = what + ": " + base::in_words(failure.number(), failure.description());
  tell(session, title, can_be_corrected(failure.number()) ? session::kYellow : session::kRed, text,
       text + "\r\n\r\nError Number: " + base::to_text(failure.number()));
}

void tell_refusal(session::Session& session, std::string_view title, const std::string& what) {
  tell(session, title, session::kYellow, what, what);
}

}  // namespace twk::directory
