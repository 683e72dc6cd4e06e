#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace twk::session {
struct Session;
}

/// A property of many users from a file of lines "Username,ADValue", each user with a value of its own.
namespace twk::batch {

/// The button: asks for the file and runs over it.
void DELIMPORT_Click(session::Session& session);

/// How a run takes what the window takes as it comes.
struct FileRules {
  /// The path of whom a line names; nothing for nobody, which passes the line over. Raises for a name that is
  /// not of one user. None looks in `ListView2`: by text, or by the logon name when that is not the text of
  /// one row.
  std::function<std::optional<std::string>(const std::string& name)> find;
  /// A line without a comma is refused, and the run goes on; else its user gets the empty text and the lines
  /// behind it are not looked at. Words that no terminal-server setting knows are refused, else they count as
  /// "Never" and "no".
  bool strict = false;
};

/// Gives each user of a file its value, in a block of the log a line. The first comma of a line separates;
/// what is behind it is the value as it stands, with all blanks, quotes and further commas. A line of blanks
/// is nothing. `bytes` are UTF-8, with or without a byte-order mark, or code page 1252; `title` is what
/// messages call the file.
///
/// Whom nobody knows is passed over, which only the log and `user_done` tell. A line that fails is told with
/// the file and its number, and the run goes on.
///
/// False when the run ended before the end of the file: at a line without a comma, by Cancel (`stopped`), or
/// for what `failure` tells.
bool change_from_file(session::Session& session, const std::string& title, std::string_view bytes,
                      const FileRules& rules = {});

}  // namespace twk::batch
