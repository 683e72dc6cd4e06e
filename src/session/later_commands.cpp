#include "session/later_commands.hpp"

#include <algorithm>
#include <array>

#include "session/session.hpp"

namespace twk::session {
namespace {

constexpr std::array<std::size_t, 1> kLaterOptions = {1};  // multi-user functions
constexpr std::array kLaterPopup = {4, 5};                 // delete, move
constexpr std::array<std::string_view, 2> kLaterKeys = {"deleteuser", "MultiUser"};

void switch_off(controls::MenuItem& item) {
  item.enabled = false;
  item.tool_tip = std::string(kNotInThisVersion);
}

}  // namespace

void switch_off_later_commands(Form1& form) {
  for (const std::size_t index : kLaterOptions)
    switch_off(form.mnuOption.at(index));
  for (const int index : kLaterPopup)
    switch_off(form.mnupopup.at(static_cast<std::size_t>(index)));
  for (std::size_t i = 0; i < kToolbarKeys.size(); ++i) {
    if (std::find(kLaterKeys.begin(), kLaterKeys.end(), kToolbarKeys[i]) != kLaterKeys.end())
      switch_off(form.Toolbar1.at(i));
  }
}

bool is_later_popup_entry(int index) {
  return std::find(kLaterPopup.begin(), kLaterPopup.end(), index) != kLaterPopup.end();
}

void tell_later_command(Session& session) {
  session.form1.StatusBar1.panel1 = std::string(kNotInThisVersion);
}

}  // namespace twk::session
