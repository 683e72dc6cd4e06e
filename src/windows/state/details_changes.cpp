#include "windows/state/details_changes.hpp"

#include <algorithm>

#include "windows/state/form1.hpp"

namespace twk::windows {

template <typename T>
void DetailsChanges::follow(const controls::Observable<T>& value, std::vector<Field<T>>& fields, bool& flag) {
  fields.push_back({&value, value.get()});
  watches_.push_back(value.watch([this, &flag] {
    flag = true;
    changed_.emit();
  }));
}

DetailsChanges::DetailsChanges(Form1& form) : form_(form) {
  const auto follow_texts = [this](bool& flag, std::initializer_list<controls::TextBox*> boxes) {
    for (controls::TextBox* const box : boxes)
      follow(box->text, texts_, flag);
  };
  follow_texts(Account, {&form.UM_PreW2K, &form.UM_Logon_Name, &form.UM_W2KDomain_Name, &form.UM_MailAddress,
                         &form.AccExpires});
  follow_texts(Profile, {&form.UM_Home_Dir, &form.UM_Logon_Script, &form.UM_Profile_Dir});
  follow(form.UM_Drive_Letter.text, texts_, Profile);
  follow_texts(General, {&form.UM_Description, &form.UM_First, &form.UM_Full_Name, &form.UM_Initails,
                         &form.UM_Last, &form.UM_Office});
  for (std::size_t i = 0; i < form.Custom_Value.size(); ++i) {
    follow(form.Custom_Value.at(i).text, texts_, Custom);
    watches_.push_back(form.Custom_Value.at(i).text.watch([this, i] { Custom_Changed.at(i) = true; }));
  }
  for (const controls::CheckBox* box : {&form.chkAcctDisabled, &form.chkAcctLockedOut, &form.chkCantChange,
                                        &form.chkMustChange, &form.chkPwdNever})
    follow(box->value, ticks_, Flags);
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
  for (Field<std::string>& field : texts_)
    field.before = field.value->get();
  for (Field<int>& field : ticks_)
    field.before = field.value->get();
  changed_.emit();
}

bool DetailsChanges::differs(const controls::Observable<std::string>& text) const {
  return std::any_of(texts_.begin(), texts_.end(),
                     [&](const auto& field) { return field.value == &text && field.before != text.get(); });
}

bool DetailsChanges::differs(const controls::Observable<int>& value) const {
  return std::any_of(ticks_.begin(), ticks_.end(),
                     [&](const auto& field) { return field.value == &value && field.before != value.get(); });
}

bool DetailsChanges::any() const {
  const auto is_changed = [](const auto& field) { return field.before != field.value->get(); };
  return !form_.USERID.text.get().empty() && (std::any_of(texts_.begin(), texts_.end(), is_changed) ||
                                              std::any_of(ticks_.begin(), ticks_.end(), is_changed));
}

}  // namespace twk::windows
