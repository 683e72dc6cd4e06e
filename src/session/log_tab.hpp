#pragma once

#include <string>
#include <string_view>

#include "session/activity_log.hpp"

/// The log tab: the outcome of each operation, a row each, and the buttons that show and delete "Log.txt".
namespace twk::session {

struct Session;
class RunFile;

/// One row of the session's log; see `ActivityLog::add_row`.
std::string LOG_TAB(Session& session, std::string_view severity, std::string_view message,
                    std::string key = {});

/// "31/12/2026 09:05:00" of the session's clock.
std::string date_and_time(Session& session);

/// One line of a file that an import writes besides the log. A failure adds a "YELLOW" row to the log tab and
/// closes the file, so that it is reported once.
void write_run_file(Session& session, RunFile& file, std::string_view text);

/// The buttons of the log tab.
void Clear_log(Session& session);
/// Shows "Log.txt" in a text viewer, without waiting for it. False when none starts, which the status line
/// says.
bool Log_Detail(Session& session);
/// Asks, and deletes "Log.txt" on Yes. A missing file is not an error.
void Delete_Log_File(Session& session);

}  // namespace twk::session
