#include "windows/account/unsaved.hpp"

#include "windows/account/details_tab.hpp"
#include "windows/state/desktop.hpp"
#include "windows/state/details_changes.hpp"
#include "windows/state/form1.hpp"

namespace twk::windows {

bool may_leave(Desktop& session, const std::string& what, const std::function<bool()>& save) {
  Leaving& leaving = session.details.leaving;
  leaving.text = "Save " + what + "?";
  leaving.answer = Leaving::Answer::kCancel;
  session.platform.dialogs.show_modal("Leaving");
  return leaving.answer == Leaving::Answer::kDiscard || (leaving.answer == Leaving::Answer::kSave && save());
}

bool may_leave_details(Desktop& session) {
  if (!session.details.any())
    return true;
  const auto save = [&session] {
    Userman_Save_Click(session);
    return !session.details.any();
  };
  if (!may_leave(session, "the changes to " + session.form1.USERID.text.get(), save))
    return false;
  session.details.clear();
  return true;
}

}  // namespace twk::windows
