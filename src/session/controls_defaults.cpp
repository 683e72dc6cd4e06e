#include "session/controls_defaults.hpp"

#include "stores/side_tables.hpp"

namespace twk::session {

void fill_drive_letters(controls::ComboBox& box) {
  box.clear();
  box.add_item({});
  for (char letter = 'A'; letter <= 'Z'; ++letter)
    box.add_item({letter, ':'});
  box.select(0);
}

void prepare_controls(Session& session) {
  Form1& form1 = session.form1;
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
  session.TemplateLogonHours.assign(stores::kLogonHoursSize, 255);
}

}  // namespace twk::session
