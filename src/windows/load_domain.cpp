#include "windows/load_domain.hpp"

#include "directory/loading/select_domain.hpp"
#include "windows/account/details_tab.hpp"
#include "windows/multi_user/multi_user_window.hpp"
#include "windows/state/desktop.hpp"
#include "windows/state/form1.hpp"
#include "windows/state/hourglass.hpp"

namespace twk::windows {

bool load_domain(Desktop& session, const std::string& name) {
  session.form1.DomName.text = name;
  {
    const Hourglass hourglass(session.form1);
    if (!name.empty())
      Clear_UM(session);
    if (!directory::Select_Domain(session, name))
      return false;
  }
  MultiUser_Load(session);
  return true;
}

}  // namespace twk::windows
