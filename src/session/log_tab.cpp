#include "session/log_tab.hpp"

#include <algorithm>

#include "base/errors.hpp"
#include "session/session.hpp"

namespace twk::session {

std::string LOG_TAB(Session& session, std::string_view severity, std::string_view message, std::string key) {
  return session.log.add_row(severity, message, std::move(key));
}

std::string date_and_time(Session& session) {
  return date_and_time(session.platform.clock);
}

void write_run_file(Session& session, RunFile& file, std::string_view text) {
  base::Trap trap;
  if (trap([&] { file.line(text); }))
    return;
  file.close();
  LOG_TAB(session, kYellow, "Import files: " + trap.description());
}

void Clear_log(Session& session) {
  session.log_rows.clear();
}

bool Log_Detail(Session& session) {
  std::string path = session.log.path();
  std::replace(path.begin(), path.end(), '\\', '/');
  const std::string failure = session.platform.process.run({"xdg-open", path}, false, 1).failure;
  if (!failure.empty())
    session.status.panel1 = "Log.txt cannot be shown: " + failure;
  return failure.empty();
}

void Delete_Log_File(Session& session) {
  const platform::Answer answer = session.platform.dialogs.MsgBox(
      "Sure to delete the log file", platform::Buttons::kYesNo, platform::Icon::kQuestion, "Delete Log File");
  if (answer != platform::Answer::kYes)
    return;
  base::Trap trap;
  trap([&] { session.platform.files.remove(session.log.path()); });
}

}  // namespace twk::session
