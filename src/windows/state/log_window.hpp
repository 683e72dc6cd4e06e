#pragma once

#include <string>
#include <vector>

#include "controls/basic.hpp"
#include "controls/list_view.hpp"

namespace twk::windows {

/// What "Log.txt" says of one operation.
struct LogBlock {
  std::string time;
  std::string administrator;
  std::string subject;  ///< the first line of its own
  std::string text;
  bool has_errors = false;
};

/// The window that shows "Log.txt".
struct LogWindow {
  controls::Label told;       ///< how much of the file is shown
  controls::ListView blocks;  ///< what it was about; sub-items: day and time, administrator. Newest first
  std::vector<LogBlock> all;  ///< newest first; the keys of the rows are places in it: "0", "1" …
  controls::CheckBox only_errors;
  controls::Label text;  ///< of the selected block
};

}  // namespace twk::windows
