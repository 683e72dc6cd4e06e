#include "windows/state/details_changes.hpp"

#include "windows/state/form1.hpp"

namespace twk::windows {

DetailsChanges::DetailsChanges(Form1& form) : form_(form) {
  const auto watch_text = [this](bool& flag, std::initializer_list<controls::TextBox*> boxes) {
    for (controls::TextBox* const box : boxes)
      watches_.push_back(box->text.watch([&flag] { flag = true; }));
  };
  watch_text(Account, {&form.UM_PreW2K, &form.UM_Logon_Name, &form.UM_W2KDomain_Name, &form.UM_MailAddress,
                       &form.AccExpires});
  watch_text(Profile, {&form.UM_Home_Dir, &form.UM_Logon_Script, &form.UM_Profile_Dir});
  watches_.push_back(form.UM_Drive_Letter.text.watch([this] { Profile = true; }));
  watch_text(General, {&form.UM_Description, &form.UM_First, &form.UM_Full_Name, &form.UM_Initails,
                       &form.UM_Last, &form.UM_Office});
  for (std::size_t i = 0; i < form.Custom_Value.size(); ++i) {
    watches_.push_back(form.Custom_Value.at(i).text.watch([this, i] {
      Custom = true;
      Custom_Changed.at(i) = true;
    }));
  }
  for (const controls::CheckBox* box : {&form.chkAcctDisabled, &form.chkAcctLockedOut, &form.chkCantChange,
                                        &form.chkMustChange, &form.chkPwdNever})
    watches_.push_back(box->value.watch([this] { Flags = true; }));
  // Without an account there is nothing to save and no membership to change.
  const auto follow_account = [&form] {
    const bool shown = !form.USERID.text.get().empty();
    form.Userman_Save.enabled = shown;
    if (!shown) {
      form.UM_ADD_GROUP.enabled = false;
      form.UM_REMOVE_GROUP.enabled = false;
    }
  };
  follow_account();
  watches_.push_back(form.USERID.text.watch(follow_account));
}

void DetailsChanges::clear() {
  Account = false;
  Profile = false;
  General = false;
  Flags = false;
  Custom = false;
  Custom_Changed = {};
  must_change_ = form_.chkMustChange.on();
}

}  // namespace twk::windows
