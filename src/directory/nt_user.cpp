#include "directory/nt_user.hpp"

#include "base/text.hpp"
#include "directory/details_parts.hpp"
#include "directory/operations.hpp"
#include "platform/group_type.hpp"
#include "session/loaded_domain.hpp"
#include "session/session.hpp"

namespace twk::directory {
namespace {

using platform::ObjectPtr;
using platform::User;
using session::Session;

/// A flag that is already off costs no write; one that is on is always written.
void save_flag(User& user, std::int32_t bit, bool on) {
  const std::int32_t flags = user.Get("UserFlags").integer();
  if (!on && (flags & bit) == 0)
    return;
  user.Put("UserFlags", on ? flags | bit : flags & ~bit);
  user.SetInfo();
}

}  // namespace

void Read_NT_User_Groups(Session& session, const ObjectPtr& user) {
  session.domain.own_groups.clear();
  for (const ObjectPtr& group : user->Groups()) {
    const std::string name = group->Name();
    const bool primary = base::to_text(Group_RID(session, name)) == session.UserPrimaryGroupID;
    if (primary)
      session.status.panel2 = user->Name() + " Primary Group is '" + name + "'";
    const bool global = group->Get("groupType").integer() == platform::group_type::kGlobal;
    show_membership(session, name, name, global ? "Global" : "Local", primary);
  }
}

bool Save_NT_User(Session& session, const UserChange& change) {
  const UserDetails& details = change.details;
  session.CurrentUser = session.platform.directory.GetObject(winnt_path(session, base::trim(details.name)));
  User user(session.CurrentUser);
  if (!check_drive_letter(session, details.HomeDrive))
    return false;
  stage_typed_expiry(session, user, details.Expires);
  user.put_FullName(details.FullName);
  user.put_HomeDirectory(details.HomeDirectory);
  user.put_LoginScript(details.LoginScript);
  user.put_Profile(details.Profile);
  user.put_Description(details.Description);
  user.Put("HomeDirDrive", details.HomeDrive);
  user.SetInfo();
  user.Put("PasswordExpired", details.must_change ? 1 : 0);
  if (change.was_locked_out && !details.locked_out)
    user.put_IsAccountLocked(false);
  user.put_AccountDisabled(details.disabled);
  user.SetInfo();
  save_flag(user, platform::kFlagCannotChangePassword, details.cannot_change);
  save_flag(user, platform::kFlagPasswordNeverExpires, details.never_expires);
  return true;
}

}  // namespace twk::directory
