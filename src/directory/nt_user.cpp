#include "directory/nt_user.hpp"

#include "base/errors.hpp"
#include "base/text.hpp"
#include "directory/account_expiry.hpp"
#include "directory/details_fields.hpp"
#include "directory/operations.hpp"
#include "platform/adsi.hpp"
#include "platform/group_type.hpp"
#include "session/form1.hpp"
#include "session/loaded_domain.hpp"
#include "session/session.hpp"

namespace twk::directory {
namespace {

using platform::ObjectPtr;
using platform::User;
using session::Session;

void read_fields(Session& session, const User& user) {
  session::Form1& form = session.form1;
  form.USERID.text = user.Name();
  form.UM_Full_Name.text = user.FullName();
  form.UM_Description.text = user.Description();
  form.UM_Profile_Dir.text = user.Profile();
  form.UM_Home_Dir.text = user.HomeDirectory();
  form.UM_Logon_Script.text = user.LoginScript();
  form.UM_Drive_Letter.text = platform::text_or_empty(*user.object(), "HomeDirDrive");
  base::Trap trap;
  if (!trap([&] { form.AccExpires.text = expiry_text(session.platform.clock, expiry_of(user)); }))
    form.AccExpires.text = std::string("Never");
}

void read_flags(Session& session, const User& user) {
  session::Form1& form = session.form1;
  form.chkMustChange.value = user.Get("PasswordExpired").integer() != 0 ? 1 : 0;
  const std::int32_t flags = user.Get("userFlags").integer();
  form.chkCantChange.value = (flags & platform::kFlagCannotChangePassword) != 0 ? 1 : 0;
  form.chkPwdNever.value = (flags & platform::kFlagPasswordNeverExpires) != 0 ? 1 : 0;
  form.chkAcctDisabled.value = user.AccountDisabled() ? 1 : 0;
  show_lock_out(session, user.IsAccountLocked());
}

void read_user(Session& session, std::string_view name) {
  if (!session.DomainContainer) {
    throw base::RuntimeError(platform::ads_error::kServerDown,
                             "The domain " + session.DomainName + " was not found");
  }
  session.CurrentUser = session.DomainContainer->GetObject("user", name);
  const User user(session.CurrentUser);
  read_fields(session, user);
  session.UserPrimaryGroupID = platform::text_or_empty(*session.CurrentUser, "PrimaryGroupID");
  read_flags(session, user);
  Read_NT_User_Groups(session, session.CurrentUser);
}

/// A flag that is already off costs no write; one that is on is always written.
void save_flag(User& user, std::int32_t bit, bool on) {
  const std::int32_t flags = user.Get("UserFlags").integer();
  if (!on && (flags & bit) == 0)
    return;
  user.Put("UserFlags", on ? flags | bit : flags & ~bit);
  user.SetInfo();
}

/// False for a wrong drive letter.
bool save_user(Session& session) {
  const session::Form1& form = session.form1;
  session.CurrentUser =
      session.platform.directory.GetObject(winnt_path(session, base::trim(form.USERID.text.get())));
  User user(session.CurrentUser);
  if (!check_drive_letter(session))
    return false;
  stage_typed_expiry(session, user);
  user.put_FullName(form.UM_Full_Name.text.get());
  user.put_HomeDirectory(form.UM_Home_Dir.text.get());
  user.put_LoginScript(form.UM_Logon_Script.text.get());
  user.put_Profile(form.UM_Profile_Dir.text.get());
  user.put_Description(form.UM_Description.text.get());
  user.Put("HomeDirDrive", form.UM_Drive_Letter.text.get());
  user.SetInfo();
  user.Put("PasswordExpired", form.chkMustChange.on() ? 1 : 0);
  if (form.chkAcctLockedOut.enabled && !form.chkAcctLockedOut.on())
    user.put_IsAccountLocked(false);
  user.put_AccountDisabled(form.chkAcctDisabled.on());
  user.SetInfo();
  save_flag(user, platform::kFlagCannotChangePassword, form.chkCantChange.on());
  save_flag(user, platform::kFlagPasswordNeverExpires, form.chkPwdNever.on());
  return true;
}

ObjectPtr bind_group(Session& session, const controls::ListRow& row) {
  session.CurrentGroup = session.platform.directory.GetObject(winnt_path(session, row.text));
  return session.CurrentGroup;
}

}  // namespace

bool Read_NT_User(Session& session, std::string_view name) {
  base::Trap trap;
  const bool read = trap([&] { read_user(session, name); });
  session.CurrentUser.reset();
  if (!read)
    session.status.panel1 = "Error reading user: " + trap.description();
  return read;
}

bool Read_NT_User_Groups(Session& session, const ObjectPtr& user) {
  session.domain.own_groups.clear();
  for (const ObjectPtr& group : user->Groups()) {
    const std::string name = group->Name();
    const bool primary = base::to_text(Group_RID(session, name)) == session.UserPrimaryGroupID;
    if (primary)
      session.status.panel2 = user->Name() + " Primary Group is '" + name + "'";
    const bool global = group->Get("groupType").integer() == platform::group_type::kGlobal;
    show_membership(session, name, name, global ? "Global" : "Local", primary);
  }
  return true;
}

bool Save_NT_User(Session& session) {
  return save_shown_user(session, save_user);
}

bool Add_NT_User_Group(Session& session, std::size_t row) {
  const session::Form1& form = session.form1;
  bind_group(session, session.domain.other_groups.at(row))->Add(winnt_path(session, form.USERID.text.get()));
  return true;
}

bool Remove_NT_User_Group(Session& session, std::size_t row) {
  const session::Form1& form = session.form1;
  bind_group(session, session.domain.own_groups.at(row))->Remove(winnt_path(session, form.USERID.text.get()));
  return true;
}

}  // namespace twk::directory
