#include "windows/controls_defaults.hpp"

#include "windows/editors/drive_letters.hpp"
#include "windows/state/form1.hpp"

namespace twk::windows {

void prepare_controls(Desktop& session) {
  Form1& form1 = session.form1;
  form1.UM_ADD_GROUP.enabled = true;
  form1.UM_REMOVE_GROUP.enabled = false;
  form1.add.enabled = false;
  form1.remove.enabled = false;
  session.EditingTemplate = false;
  fill_drive_letters(form1.Home_Drive_letter);
  fill_drive_letters(form1.UM_Drive_Letter);
}

}  // namespace twk::windows
