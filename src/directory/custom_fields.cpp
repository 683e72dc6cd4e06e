#include "directory/custom_fields.hpp"

#include "base/text.hpp"
#include "session/form1.hpp"
#include "session/settings.hpp"

namespace twk::directory {

void show_custom_fields(session::Session& session) {
  for (std::size_t i = 0; i < session.form1.Custom_Value.size(); ++i) {
    controls::Label& label = session.form1.Custom_Label.at(i);
    const std::string text = session::read_setting(
        session, session::kCustom, "Custom" + base::to_text(static_cast<std::int64_t>(i) + 1));
    const bool shown = session.LastRegResult && !base::trim(text).empty();
    if (shown)
      label.caption = text;
    label.visible = shown;
    session.form1.Custom_Value.at(i).visible = shown;
  }
}

}  // namespace twk::directory
