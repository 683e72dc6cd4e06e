#include "stores/typed_text.hpp"

#include "base/text.hpp"
#include "records/records.hpp"
#include "session/form1.hpp"
#include "session/session.hpp"

namespace twk::stores {

std::string control_refusal(std::string_view text) {
  const auto control = base::find_control_character(text);
  return control ? "Control character " + *control + " not allowed" : std::string();
}

std::string name_refusal(std::string_view name) {
  if (std::string refusal = control_refusal(name); !refusal.empty())
    return refusal;
  const auto format = base::find_invisible_character(name);
  return format ? "Format character " + *format + " not allowed" : std::string();
}

std::string record_refusal(std::string_view text) {
  std::string refusal = control_refusal(text);
  return refusal.empty() ? records::code_page_refusal(text) : refusal;
}

std::string record_name_refusal(std::string_view name) {
  std::string refusal = name_refusal(name);
  return refusal.empty() ? records::code_page_refusal(name) : refusal;
}

bool refuses(session::Session& session, std::string (*refusal_of)(std::string_view),
             std::initializer_list<std::string_view> texts) {
  for (const std::string_view text : texts) {
    const std::string refusal = refusal_of(text);
    if (refusal.empty())
      continue;
    session.platform.dialogs.beep();
    session.status.panel1 = refusal;
    return true;
  }
  return false;
}

std::string folded_name(std::string_view name) {
  return base::upper(base::trim(name));
}

}  // namespace twk::stores
