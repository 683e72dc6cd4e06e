#include "session/later_commands.hpp"

#include <algorithm>
#include <array>

#include "session/session.hpp"

namespace twk::session {
namespace {

constexpr std::array<std::size_t, 1> kLaterOptions = {4};  // groups
constexpr std::array<std::string_view, 1> kLaterKeys = {"Groups"};

void switch_off(controls::MenuItem& item) {
  item.enabled = false;
  item.tool_tip = std::string(kNotInThisVersion);
}

}  // namespace

void switch_off_later_commands(Form1& form) {
  for (const std::size_t index : kLaterOptions)
    switch_off(form.mnuOption.at(index));
  for (std::size_t i = 0; i < kToolbarKeys.size(); ++i) {
    if (std::find(kLaterKeys.begin(), kLaterKeys.end(), kToolbarKeys[i]) != kLaterKeys.end())
      switch_off(form.Toolbar1.at(i));
  }
}

void tell_later_command(Session& session) {
  session.form1.StatusBar1.panel1 = std::string(kNotInThisVersion);
}

}  // namespace twk::session
