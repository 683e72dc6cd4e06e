#include "stores/typed_text.hpp"

#include "base/text.hpp"
#include "session/session.hpp"

namespace twk::stores {

bool refuses_control_characters(session::Session& session, std::initializer_list<std::string_view> texts) {
  for (const std::string_view text : texts) {
    const auto control = base::find_control_character(text);
    if (!control)
      continue;
    session.platform.dialogs.beep();
    session.form1.StatusBar1.panel1 = "Control character " + *control + " not allowed";
    return true;
  }
  return false;
}

std::string storable(std::string_view text) {
  return base::from_ansi(base::to_ansi(text));
}

std::string folded_name(std::string_view name) {
  return base::upper(base::trim(name));
}

}  // namespace twk::stores
