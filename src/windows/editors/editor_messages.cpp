#include "windows/editors/editor_messages.hpp"

#include "stores/typed_text.hpp"
#include "windows/state/desktop.hpp"
#include "windows/state/form1.hpp"

namespace twk::windows {

void warn(Desktop& session, std::string_view text, std::string_view title) {
  session.platform.dialogs.MsgBox(text, platform::Buttons::kOk, platform::Icon::kExclamation, title);
}

bool refuses_typed(Desktop& session, std::initializer_list<std::string_view> texts, std::string_view title,
                   std::string (*refusal_of)(std::string_view)) {
  if (!stores::refuses(session, refusal_of, texts))
    return false;
  warn(session, session.form1.StatusBar1.panel1.get(), title);
  return true;
}

}  // namespace twk::windows
