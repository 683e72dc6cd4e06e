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
  std::string name;     ///< see `session::BlockReader`
  std::string light;    ///< empty when nobody knows
  std::string told_by;  ///< who knows it: the log tab, or the record of an import
};

/// The window that shows "Log.txt".
struct LogWindow {
  controls::Label told;       ///< how much of the file is shown
  controls::ListView blocks;  ///< what it was about; sub-items: day and time, administrator. Newest first
  std::vector<LogBlock> all;  ///< newest first; the keys of the rows are places in it: "0", "1" …
  controls::ComboBox shown;   ///< which of them the list has: all, those of a light, those with errors
  controls::Label light;      ///< of the selected block, and who knows it
  controls::Label text;       ///< of the selected block
};

}  // namespace twk::windows
