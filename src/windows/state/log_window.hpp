#pragma once

#include <string>
#include <vector>

#include "controls/basic.hpp"
#include "controls/list_view.hpp"

namespace twk::windows {

/// The window that shows "Log.txt".
struct LogWindow {
  controls::Label told;       ///< how much of the file is shown
  controls::ListView blocks;  ///< what it was about; sub-items: day and time, administrator. Newest first
  std::vector<std::string> texts;  ///< of the blocks, in the order of their keys: "0", "1" …
  controls::Label text;            ///< of the selected block
};

}  // namespace twk::windows
