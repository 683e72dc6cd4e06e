#pragma once

#include <string_view>

namespace twk::session {
struct Session;
}

/// A property of many users from a file of lines "Username,ADValue", each user with a value of its own.
namespace twk::batch {

/// The button: asks for the file and runs over it.
void DELIMPORT_Click(session::Session& session);

/// How a line without a comma is taken.
enum class NoComma {
  kEndsRun,    ///< its user gets the empty text, and the lines behind it are not looked at
  kIsRefused,  ///< nothing is done about it, and the run goes on
};

/// Gives each user of the file its value, in a block of the log a line. The first comma of a line separates;
/// what is behind it is the value as it stands, with all blanks, quotes and further commas. A line of blanks
/// is nothing. Text is UTF-8, with or without a byte-order mark, or code page 1252.
///
/// A user is found in `ListView2` by text, or by the logon name when that is not the text of one row; whom
/// the list does not have is passed over, which only the log and `user_done` tell. A line that fails is told
/// with the file's name and the number of the line, and the run goes on.
///
/// False when the run ended before the end of the file: at a line without a comma, by Cancel (`stopped`), or
/// for what `failure` tells.
bool change_from_file(session::Session& session, std::string_view path, NoComma no_comma);

}  // namespace twk::batch
