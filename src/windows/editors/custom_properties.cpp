#include "windows/editors/custom_properties.hpp"

#include "base/text.hpp"
#include "directory/custom_fields.hpp"
#include "session/editor_windows.hpp"
#include "session/form1.hpp"
#include "session/settings.hpp"
#include "windows/editors/editor_messages.hpp"

namespace twk::windows {
namespace {

using session::Session;

constexpr std::string_view kTitle = "Custom Properties";

std::string numbered(std::string_view name, std::size_t number) {
  return std::string(name) + base::to_text(static_cast<std::int64_t>(number));
}

bool write(Session& session, const std::string& name, std::string_view value) {
  session::write_setting(session, session::kCustom, name, value);
  if (session.LastRegResult)
    return true;
  warn(session, "Cannot write the setting " + name + ".", kTitle);
  return false;
}

/// A field without an attribute would show nothing.
bool lacks_attribute(Session& session) {
  const controls::ListView& rows = session.custom.ListView1;
  for (std::size_t i = 0; i < rows.size(); ++i) {
    if (!rows.at(i).text.empty() && rows.at(i).sub_items.front().empty()) {
      warn(session, "\"" + rows.at(i).text + "\" has no attribute.", kTitle);
      return true;
    }
  }
  return false;
}

bool write_rows(Session& session) {
  const controls::ListView& rows = session.custom.ListView1;
  for (std::size_t i = 0; i < rows.size(); ++i) {
    if (!write(session, numbered("Custom", i + 1), rows.at(i).text) ||
        !write(session, numbered("Property", i + 1), rows.at(i).sub_items.front()))
      return false;
  }
  return true;
}

}  // namespace

void show_custom(Session& session) {
  Custom_Load(session);
  session.platform.dialogs.show_modal("Custom");
}

void Custom_Load(Session& session) {
  controls::ListView& rows = session.custom.ListView1;
  rows.clear();
  for (std::size_t number = 1; number <= session.form1.Custom_Value.size(); ++number) {
    const auto read = [&](std::string_view name) {
      return std::string(
          base::trim(session::read_setting(session, session::kCustom, numbered(name, number))));
    };
    std::string display_name = read("Custom");
    rows.add({}, std::move(display_name), {}, {read("Property")});
  }
  rows.select(&rows.at(0));
}

bool Custom_OK(Session& session) {
  if (lacks_attribute(session))
    return false;
  const bool written = write_rows(session);
  directory::show_custom_fields(session);
  return written;
}

void Custom_Cancel(Session& session) {
  session.custom.ListView1.clear();
}

}  // namespace twk::windows
