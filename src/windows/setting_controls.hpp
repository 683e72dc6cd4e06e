#pragma once

#include <array>
#include <string_view>

#include "controls/basic.hpp"
#include "windows/state/form1.hpp"

/// Which control of the main window shows which setting: a row each, read at the start, written when a person
/// changes it. The words and defaults of the settings are in `session/settings_schema.hpp`.
namespace twk::windows {

struct Desktop;

/// A box that is ticked while its switch is on.
struct SettingBox {
  std::string_view sub_key;
  std::string_view name;
  controls::CheckBox& box;
};
/// Those that are stored as soon as they change.
std::array<SettingBox, 19> setting_boxes(Form1& form);
/// Those stored by "Save" on the set-up tab, in its order.
std::array<SettingBox, 6> command_boxes(Form1& form);

/// Two option buttons, of which the first is chosen while the switch is on.
struct SettingPair {
  std::string_view name;  ///< below "Preferences"
  controls::OptionButton& on;
  controls::OptionButton& off;
};
std::array<SettingPair, 3> setting_pairs(Form1& form);

enum class Absent { kEmpties, kLeaves };
/// A field that holds the text of a setting, without the blanks around it.
struct SettingField {
  std::string_view sub_key;
  std::string_view name;
  controls::TextBox& field;
  Absent absent = Absent::kEmpties;
};
std::array<SettingField, 7> setting_fields(Form1& form);

/// Fills all of these controls from the settings.
void read_setting_controls(Desktop& session);

/// Stores a box that a person changed. The box must belong to a setting.
void store_box(Desktop& session, const controls::CheckBox& box);
/// Chooses an option button and stores it. The button must belong to a pair.
void choose_option(Desktop& session, const controls::OptionButton& button);

}  // namespace twk::windows
