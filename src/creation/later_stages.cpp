#include "creation/later_stages.hpp"

#include "session/form1.hpp"

namespace twk::creation {

void switch_off_later_stages(session::Form1& form) {
  for (controls::CheckBox* gate : {&form.Create_Shares, &form.Dir_Security}) {
    gate->value = 0;
    gate->enabled = false;
  }
}

}  // namespace twk::creation
