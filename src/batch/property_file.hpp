#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "batch/property_order.hpp"

namespace twk::session {
class RunView;
struct Session;
}  // namespace twk::session

/// A property of many users from a file of lines "Username,ADValue", with a separate value for each user.
namespace twk::batch {

/// How strict a run is about what the window accepts.
struct FileRules {
  /// Returns the path of the user named by a line; none skips the line. Raises for a name that fits several
  /// users. Without it, the list of users is searched: by text, or by the logon name when the text does not
  /// identify one row.
  std::function<std::optional<std::string>(const std::string& name)> find;
  /// A line without a comma is refused, and the run continues; otherwise its user gets the empty text and the
  /// remaining lines are ignored. Words that no terminal-server setting knows are refused; otherwise they
  /// count as "Never" and "no".
  bool strict = false;
};

/// Sets the value for each user of a file, with a block of the log for each line. The first comma of a
/// line separates; everything after it is the value, including blanks, quotes and further commas. A blank
/// line is ignored. `bytes` are UTF-8, with or without a byte-order mark, or code page 1252; `title` is the
/// file's name in messages.
///
/// An unknown user is skipped, which only the log and `user_done` report. A failed line is reported with the
/// file and its number, and the run continues; it ends before the end of the file at a line without a comma,
/// when it is stopped, or for the reason in `failure`.
PropertyCounts change_from_file(session::Session& session, const PropertyOrder& order,
                                const std::string& title, std::string_view bytes, session::RunView& view,
                                const FileRules& rules = {});

}  // namespace twk::batch
