#include "windows/editors/custom_properties.hpp"

#include "directory/custom_attributes.hpp"
#include "session/settings.hpp"
#include "windows/editors/editor_messages.hpp"
#include "windows/state/desktop.hpp"
#include "windows/state/editor_windows.hpp"
#include "windows/state/form1.hpp"

namespace twk::windows {
namespace {

constexpr std::string_view kTitle = "Custom Properties";

directory::CustomFieldRows rows_of_window(const Custom& window) {
  directory::CustomFieldRows rows;
  for (std::size_t i = 0; i < rows.size(); ++i)
    rows.at(i) = {window.ListView1.at(i).text, window.ListView1.at(i).sub_items.front()};
  return rows;
}

}  // namespace

void show_custom(Desktop& session) {
  Custom_Load(session);
  session.platform.dialogs.show_modal("Custom");
}

void Custom_Load(Desktop& session) {
  controls::ListView& rows = session.custom.ListView1;
  rows.clear();
  for (directory::CustomField& field : directory::read_custom_fields(session))
    rows.add({}, std::move(field.caption), {}, {std::move(field.attribute)});
  rows.select(&rows.at(0));
}

bool Custom_OK(Desktop& session) {
  const directory::CustomFieldRows rows = rows_of_window(session.custom);
  if (const std::string refusal = directory::refused_custom_fields(rows); !refusal.empty()) {
    warn(session, refusal, kTitle);
    return false;
  }
  const std::string unwritten = directory::write_custom_fields(session, rows);
  if (!unwritten.empty())
    warn(session, "Cannot write the setting " + unwritten + ".", kTitle);
  show_custom_fields(session);
  return unwritten.empty();
}

void Custom_Cancel(Desktop& session) {
  session.custom.ListView1.clear();
}

}  // namespace twk::windows
