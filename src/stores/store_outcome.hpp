#pragma once

#include <string>
#include <string_view>

#include "base/errors.hpp"
#include "platform/dialogs.hpp"

namespace twk::session {
struct Session;
}

namespace twk::stores {

/// What came of a change to a record, and how the person who wanted it learns that.
struct StoreOutcome {
  bool done = false;
  std::string status = {};   ///< for the status line; empty when that stays
  std::string message = {};  ///< to be acknowledged in a box; empty for none
  std::string title = {};    ///< of the box
  platform::Icon icon = platform::Icon::kExclamation;
  bool beep = false;
  bool at_name = false;  ///< another name is needed
};

/// A record is written after the others, or over the live one of its name.
enum class SaveAs { kNew, kLive };

StoreOutcome completed(std::string status);
/// Refused with a beep and a line in the status.
StoreOutcome refused(std::string status);
/// Refused in a box.
StoreOutcome refused_in_box(std::string message, std::string title);
/// A file of the database directory could not be opened, read or written.
StoreOutcome file_failure(std::string_view file, const base::RuntimeError& failure);

/// Shows it.
void tell(session::Session& session, const StoreOutcome& outcome);

}  // namespace twk::stores
