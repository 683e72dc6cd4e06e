#include "windows/controls_defaults.hpp"

#include "platform/logon_hours.hpp"
#include "session/form1.hpp"
#include "stores/side_tables.hpp"
#include "windows/editors/drive_letters.hpp"

namespace twk::windows {

void prepare_controls(session::Session& session) {
  session::Form1& form1 = session.form1;
  stores::fill_wts_rows(session);
  session.SerialTokenUsed = false;
  form1.UM_ADD_GROUP.enabled = true;
  form1.UM_REMOVE_GROUP.enabled = false;
  form1.add.enabled = false;
  form1.remove.enabled = false;
  session.EditingTemplate = false;
  session.AltIdTried = false;
  fill_drive_letters(form1.Home_Drive_letter);
  fill_drive_letters(form1.UM_Drive_Letter);
  session.TemplateLogonHours.assign(platform::kLogonHoursSize, 255);
}

}  // namespace twk::windows
