#include "stores/typed_text.hpp"

#include "base/text.hpp"
#include "records/records.hpp"
#include "stores/store_outcome.hpp"

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

std::string first_refusal(std::string (*refusal_of)(std::string_view),
                          std::initializer_list<std::string_view> texts) {
  for (const std::string_view text : texts) {
    if (std::string refusal = refusal_of(text); !refusal.empty())
      return refusal;
  }
  return {};
}

bool refuses(session::Session& session, std::string (*refusal_of)(std::string_view),
             std::initializer_list<std::string_view> texts) {
  std::string refusal = first_refusal(refusal_of, texts);
  if (refusal.empty())
    return false;
  tell(session, refused(std::move(refusal)));
  return true;
}

std::string folded_name(std::string_view name) {
  return base::upper(base::trim(name));
}

}  // namespace twk::stores
