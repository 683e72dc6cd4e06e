#include "windows/rehearse_import.hpp"

#include "base/text.hpp"
#include "batch/import_checks.hpp"
#include "batch/rehearse_import.hpp"
#include "session/log_tab.hpp"
#include "windows/state/desktop.hpp"
#include "windows/state/form1.hpp"

namespace twk::windows {

bool show_import_faults(Desktop& session, const batch::ImportOrder& order) {
  std::string stopping;
  for (const batch::ImportFault& fault : batch::check_import(session, order)) {
    const std::string text = fault.message + "; " + fault.remedy;
    session::LOG_TAB(session, fault.stops ? session::kRed : session::kYellow, text);
    if (fault.stops)
      stopping += text + ".\r\n";
  }
  if (!stopping.empty())
    session.platform.dialogs.MsgBox("Every line would fail:\r\n" + stopping, platform::Buttons::kOk,
                                    platform::Icon::kCritical, "Can't Import Users");
  return !stopping.empty();
}

RehearsalEnd rehearse_import(Desktop& session, std::string_view path, const batch::ImportOrder& order,
                             batch::ImportView& view) {
  int created = 0;
  int warned = 0;
  int refused = 0;
  const std::string now = session::date_and_time(session);
  const auto add = [&](const std::string& text, const std::string& light) {
    session.log_rows.add({}, text, light, {now});
  };
  const batch::RehearsedImport outcome = batch::rehearse_import(
      session, path, order, view,
      {.step = [&](const std::string& step) { add(step, {}); },
       .row_done =
           [&](const session::ImportRow& row) {
             const std::string& light = row.outcome.light;
             const bool is_made = light == session::kGreen || light == session::kYellow;
             ++(is_made ? created : refused);
             warned += light == session::kYellow ? 1 : 0;
             add("Line " + base::to_text(row.line) + ": " + std::string(base::trim(row.outcome.message)),
                 is_made ? light : std::string(session::kRed));
           }});
  session.form1.SSTab1 = tab::kLog;
  if (!outcome.failure.empty())
    return {outcome.failure, platform::Icon::kCritical};
  return {base::to_text(created) + " users would be created, " + base::to_text(warned) +
              " of them with warnings, " + base::to_text(refused) +
              " not.\r\nNothing was written. The log has each step.",
          platform::Icon::kInformation};
}

}  // namespace twk::windows
