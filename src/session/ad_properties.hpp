#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "controls/basic.hpp"
#include "session/multi_user.hpp"

/// State of the tab "AD Properties" of the window `MultiUser`, except the field `AD_CHANGE`, which the window
/// holds. Fields have the names of the tab's controls.
namespace twk::session {

/// The outcome for one user whose property was to change, or for one line of a file that named no user.
struct PropertyOutcome {
  std::int32_t line = 0;  ///< of the file, counted from 1; 0 for a user of the selection
  std::string user;       ///< its name in its container, or its name in the line
  std::string path;       ///< its ADsPath; empty for one that could not be read
  std::string value;      ///< as written, or as it would have been
  bool changed = false;
  bool skipped = false;  ///< the line names nobody in the list
  std::string reason;    ///< why not; empty when it was changed
};

struct ADProperties {
  controls::ComboBox AD_Properties;
  controls::Label Syntax;
  controls::Observable<bool> multi_value{false};  ///< the frame "Multi Value" is enabled
  controls::OptionButton AD_Append;
  controls::OptionButton AD_Replace;
  controls::Button CHANGE_AD = button("C&hange");
  controls::ProgressBar progress;
  controls::Observable<bool> progress_visible{false};

  std::string filled_for;    ///< the domain whose schema `AD_Properties` shows
  std::string looked_up;     ///< the property that `Syntax` and the frame are about
  std::int32_t users = 0;    ///< of the last run: changed
  std::int32_t errors = 0;   ///< of the last run: not changed
  std::int32_t skipped = 0;  ///< lines of the last file that named nobody in the list
  std::int32_t line = 0;     ///< current line of the file; 0 for a run over the selection
  std::string reason;        ///< why the last user was not changed
  bool stopped = false;      ///< the last run was ended by Cancel
  std::string failure;       ///< why the last run ended early; empty when it did not
  /// Called after each user and each skipped line; may be empty.
  std::function<void(const PropertyOutcome&)> user_done;
};

}  // namespace twk::session
