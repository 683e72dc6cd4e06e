#include "stores/store_outcome.hpp"

#include "controls/basic.hpp"
#include "session/session.hpp"

namespace twk::stores {

StoreOutcome completed(std::string status) {
  return {.done = true, .status = std::move(status)};
}

StoreOutcome refused(std::string status) {
  return {.status = std::move(status), .beep = true};
}

StoreOutcome refused_in_box(std::string message, std::string title) {
  return {.message = std::move(message), .title = std::move(title)};
}

StoreOutcome file_failure(std::string_view file, const base::RuntimeError& failure) {
  return {.message = "Error Opening " + std::string(file) + "\r\n" + failure.description(),
          .title = std::string(file),
          .icon = platform::Icon::kCritical};
}

void tell(session::Session& session, const StoreOutcome& outcome) {
  if (outcome.beep)
    session.platform.dialogs.beep();
  if (!outcome.status.empty())
    session.status.panel1 = outcome.status;
  if (!outcome.message.empty())
    session.platform.dialogs.MsgBox(outcome.message, platform::Buttons::kOk, outcome.icon, outcome.title);
}

}  // namespace twk::stores
