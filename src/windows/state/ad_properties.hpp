#pragma once

#include <string>

#include "controls/basic.hpp"
#include "windows/state/multi_user.hpp"

/// State of the tab "AD Properties" of the window `MultiUser`, except the field `AD_CHANGE`, which the window
/// holds. Fields have the names of the tab's controls.
namespace twk::windows {

struct ADProperties {
  controls::ComboBox AD_Properties;
  controls::Label Syntax;
  controls::Observable<bool> multi_value{false};  ///< the frame "Multi Value" is enabled
  controls::OptionButton AD_Append;
  controls::OptionButton AD_Replace;
  controls::Button CHANGE_AD = button("C&hange");
  controls::ProgressBar progress;
  controls::Observable<bool> progress_visible{false};

  std::string filled_for;  ///< the domain whose schema `AD_Properties` shows
  std::string looked_up;   ///< the property that `Syntax` and the frame are about
};

}  // namespace twk::windows
