#include "creation/later_stages.hpp"

#include "session/form1.hpp"

namespace twk::creation {

void switch_off_later_stages(session::Form1& form) {
  form.Create_Mail_Account.value = 0;
  form.Create_Mail_Account.enabled = false;
}

}  // namespace twk::creation
