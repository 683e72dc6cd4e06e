#include "windows/unsaved_edits.hpp"

#include "windows/account/unsaved.hpp"
#include "windows/site_tab.hpp"
#include "windows/template_tab.hpp"

namespace twk::windows {

bool may_leave_all(Desktop& session) {
  return may_leave_details(session) && may_leave_template(session) && may_leave_site(session);
}

}  // namespace twk::windows
