#include "directory/ad_user.hpp"

#include <algorithm>
#include <functional>
#include <iterator>
#include <vector>

#include "base/errors.hpp"
#include "base/text.hpp"
#include "directory/account_expiry.hpp"
#include "directory/details_fields.hpp"
#include "directory/operations.hpp"
#include "platform/adsi.hpp"
#include "platform/ldap_text.hpp"
#include "session/form1.hpp"
#include "session/loaded_domain.hpp"
#include "session/session.hpp"
#include "session/settings.hpp"

namespace twk::directory {
namespace {

using platform::ObjectPtr;
using platform::User;
using platform::Value;
using session::Session;

constexpr int kClear = 1;  ///< `PutEx`: empties an attribute
constexpr const char* kGroupIcon = "W2KGRP";

/// "Jo Smith" of "CN=Jo Smith", at most so many characters.
std::string common_name(const std::string& name, std::size_t longest) {
  return std::string(base::left(platform::plain_name(name), longest));
}

std::string custom_attribute(Session& session, std::size_t index) {
  return session::read_setting(session, session::kCustom,
                               "Property" + base::to_text(static_cast<std::int64_t>(index) + 1));
}

std::string joined(const Value& value) {
  if (!value.is_list())
    return value.text();
  std::string text;
  for (const Value& element : value.list())
    text += (text.empty() ? "" : ",") + element.text();
  return text;
}

void read_fields(Session& session, const User& user) {
  session::Form1& form = session.form1;
  base::Trap trap;
  const auto read = [&](controls::Observable<std::string>& field, std::string_view property) {
    trap([&] { field = user.Get(property).text(); });
  };
  form.USERID.text = common_name(user.Name(), 100);
  read(form.UM_Full_Name.text, "FullName");
  read(form.UM_Description.text, "Description");
  read(form.UM_First.text, "FirstName");
  read(form.UM_Last.text, "LastName");
  read(form.UM_Office.text, "OfficeLocations");
  read(form.UM_Initails.text, "initials");
  read(form.UM_Profile_Dir.text, "Profile");
  read(form.UM_Home_Dir.text, "HomeDirectory");
  read(form.UM_Logon_Script.text, "LoginScript");
  read(form.UM_Drive_Letter.text, "HomeDrive");
  read(form.UM_MailAddress.text, "EmailAddress");
  read(form.UM_PreW2K.text, "samAccountName");
  trap([&] {
    const std::string principal = user.Get("userPrincipalName").text();
    const std::size_t at = std::min(principal.find('@'), principal.size());
    form.UM_Logon_Name.text = principal.substr(0, at);
    if (at < principal.size())
      form.UM_W2KDomain_Name.text = std::string(base::left(std::string_view(principal).substr(at), 100));
  });
  trap([&] { form.AccExpires.text = expiry_text(session.platform.clock, expiry_of(user)); });
}

void read_custom_values(Session& session, const User& user) {
  base::Trap trap;
  for (std::size_t i = 0; i < session.form1.Custom_Value.size(); ++i) {
    const std::string attribute = custom_attribute(session, i);
    if (!attribute.empty())
      trap([&] { session.form1.Custom_Value.at(i).text = joined(user.Get(attribute)); });
  }
}

void read_winnt_flags(Session& session) {
  session::Form1& form = session.form1;
  show_lock_out(session, false);
  base::Trap trap;
  ObjectPtr account;
  if (!trap([&] {
        account = session.platform.directory.GetObject(winnt_path(session, form.UM_PreW2K.text.get()));
      }))
    return;
  trap([&] { form.chkMustChange.value = account->Get("PasswordExpired").integer() != 0 ? 1 : 0; });
  trap([&] {
    const std::int32_t flags = account->Get("userFlags").integer();
    form.chkCantChange.value = (flags & platform::kFlagCannotChangePassword) != 0 ? 1 : 0;
  });
  trap([&] { show_lock_out(session, User(account).IsAccountLocked()); });
}

void read_flags(session::Form1& form, const User& user) {
  base::Trap trap;
  trap([&] {
    const std::int32_t control = user.Get("UserAccountControl").integer();
    form.chkPwdNever.value = (control & platform::kFlagPasswordNeverExpires) != 0 ? 1 : 0;
  });
  trap([&] { form.chkAcctDisabled.value = user.AccountDisabled() ? 1 : 0; });
}

struct GroupName {
  std::string path;
  std::string name;
};

/// The group whose token the user has; both empty when there is none.
GroupName find_primary_group(Session& session) {
  platform::QueryOptions options;
  options.page_size = 1000;
  const auto rows = run_query(session,
                              "<LDAP://" + session.DomainName +
                                  ">;(&(objectCategory=group)(objectClass=Group));adsPath,Name,"
                                  "primaryGroupToken;SubTree",
                              options);
  GroupName found;
  for (; !rows->at_eof(); rows->MoveNext()) {
    if (!found.path.empty() || rows->field(2).text() != session.UserPrimaryGroupID)
      continue;
    found = {rows->field(0).text(), rows->field(1).text()};
    rows->MoveLast();
  }
  rows->Close();
  return found;
}

void put_or_clear(User& user, std::string_view attribute, const std::string& text) {
  if (text.empty())
    user.PutEx(kClear, attribute, 0);
  else
    user.Put(attribute, text);
}

void save_expiry(Session& session, User& user) {
  base::Trap trap;
  if (trap([&] {
        stage_typed_expiry(session, user);
        user.SetInfo();
      }))
    return;
  session.details.refused.push_back("AccountExpirationDate: " + trap.description());
  session.platform.dialogs.MsgBox(
      "Error setting expiration date: " + base::to_text(trap.number()) + "\r\n" + trap.description(),
      platform::Buttons::kOk, platform::Icon::kNone, "");
}

/// A field of the tab and the new text of its attribute; an empty text clears it.
struct FieldChange {
  std::string attribute;
  std::string text;
};

std::vector<FieldChange> profile_fields(const session::Form1& form) {
  return {{"LoginScript", form.UM_Logon_Script.text},
          {"Profile", form.UM_Profile_Dir.text},
          {"HomeDrive", form.UM_Drive_Letter.text},
          {"HomeDirectory", form.UM_Home_Dir.text}};
}

std::vector<FieldChange> account_fields(const session::Form1& form) {
  std::vector<FieldChange> fields;
  if (!form.UM_PreW2K.text.get().empty())
    fields.push_back({"samAccountName", form.UM_PreW2K.text});
  fields.push_back({"EMailAddress", form.UM_MailAddress.text});
  const std::string& logon = form.UM_Logon_Name.text;
  fields.push_back({"userPrincipalName", logon.empty() ? logon : logon + form.UM_W2KDomain_Name.text.get()});
  return fields;
}

std::vector<FieldChange> general_fields(const session::Form1& form) {
  return {{"FullName", form.UM_Full_Name.text},     {"Description", form.UM_Description.text},
          {"FirstName", form.UM_First.text},        {"LastName", form.UM_Last.text},
          {"OfficeLocations", form.UM_Office.text}, {"initials", form.UM_Initails.text}};
}

void stage(User& user, const std::vector<FieldChange>& fields) {
  for (const FieldChange& field : fields)
    put_or_clear(user, field.attribute, field.text);
}

/// Runs a write over a fresh object of the shown user; what is refused goes to the refusals as "what:
/// reason". True when it went through. Raises when no server answers.
bool save_part(Session& session, const std::string& what, const std::function<void(User& user)>& put) {
  base::Trap trap;
  const bool saved = trap([&] {
    User user(session.platform.directory.GetObject(base::trim(session.form1.USERID_W2K.text.get())));
    put(user);
    user.SetInfo();
  });
  if (trap.number() == platform::ads_error::kServerDown ||
      trap.number() == platform::ads_error::kNoSuchObject)
    base::raise(trap.number(), trap.description());
  if (!saved)
    session.details.refused.push_back(what + ": " + trap.description());
  return saved;
}

/// Saves each field separately; returns how many were saved.
std::size_t save_one_by_one(Session& session, const std::vector<FieldChange>& fields) {
  return static_cast<std::size_t>(std::count_if(fields.begin(), fields.end(), [&](const FieldChange& field) {
    return save_part(session, field.attribute, [&](User& user) { stage(user, {field}); });
  }));
}

/// The custom attributes whose boxes were changed since they were read.
std::vector<FieldChange> custom_fields(Session& session) {
  std::vector<FieldChange> fields;
  for (std::size_t i = 0; i < session.form1.Custom_Value.size(); ++i) {
    const controls::TextBox& box = session.form1.Custom_Value.at(i);
    std::string attribute = custom_attribute(session, i);
    if (!attribute.empty() && box.visible && session.details.Custom_Changed.at(i))
      fields.push_back({std::move(attribute), box.text});
  }
  return fields;
}

void save_custom_values(Session& session) {
  const std::vector<FieldChange> fields = custom_fields(session);
  if (save_one_by_one(session, fields) == fields.size())
    return;
  session.platform.dialogs.MsgBox("Error setting a custom value", platform::Buttons::kOk,
                                  platform::Icon::kCritical, "Error saving settings");
}

/// "User cannot change password" is written through the WinNT object, which uses the name currently in the
/// directory, not one that is still to be saved.
void save_cannot_change(Session& session) {
  const session::Form1& form = session.form1;
  platform::DirectoryService& directory = session.platform.directory;
  const std::string name =
      directory.GetObject(base::trim(form.USERID_W2K.text.get()))->Get("samAccountName").text();
  const ObjectPtr account = directory.GetObject(winnt_path(session, name));
  const std::int32_t flags = account->Get("UserFlags").integer();
  const bool set = (flags & platform::kFlagCannotChangePassword) != 0;
  if (!form.chkCantChange.on() && !set)
    return;
  account->Put("UserFlags", form.chkCantChange.on() ? flags | platform::kFlagCannotChangePassword
                                                    : flags & ~platform::kFlagCannotChangePassword);
  account->SetInfo();
}

void save_flags(Session& session, User& user) {
  const session::Form1& form = session.form1;
  // Written again, it would restart the age of the password.
  if (session.details.must_change() != form.chkMustChange.on())
    user.Put("pwdLastSet", form.chkMustChange.on() ? 0 : -1);
  if (form.chkAcctLockedOut.enabled && !form.chkAcctLockedOut.on())
    user.put_IsAccountLocked(false);
  // First, since the bits below are set on top of what the account has then.
  save_cannot_change(session);
  user.put_AccountDisabled(form.chkAcctDisabled.on());
  const std::int32_t control = user.Get("UserAccountControl").integer();
  const bool set = (control & platform::kFlagPasswordNeverExpires) != 0;
  if (form.chkPwdNever.on())
    user.Put("UserAccountControl", control | platform::kFlagPasswordNeverExpires);
  else if (set)
    user.Put("UserAccountControl", control & ~platform::kFlagPasswordNeverExpires);
}

void append(std::vector<FieldChange>& fields, std::vector<FieldChange> more) {
  fields.insert(fields.end(), std::make_move_iterator(more.begin()), std::make_move_iterator(more.end()));
}

std::vector<FieldChange> changed_fields(const Session& session) {
  const session::DetailsChanges& changed = session.details;
  std::vector<FieldChange> fields;
  if (changed.Profile)
    append(fields, profile_fields(session.form1));
  if (changed.Account)
    append(fields, account_fields(session.form1));
  if (changed.General)
    append(fields, general_fields(session.form1));
  return fields;
}

/// All at once; what a directory refuses as a whole is written in parts, so that the accepted ones are kept.
/// Raises when no part went through.
void save_fields_and_flags(Session& session, User& user) {
  const std::vector<FieldChange> fields = changed_fields(session);
  const bool flags = session.details.Flags;
  base::Trap trap;
  if (trap([&] {
        stage(user, fields);
        if (flags)
          save_flags(session, user);
        user.SetInfo();
      }))
    return;
  if (trap.number() == platform::ads_error::kServerDown || fields.size() + (flags ? 1 : 0) < 2)
    base::raise(trap.number(), trap.description());
  const std::size_t saved = save_one_by_one(session, fields);
  const bool flags_saved =
      flags && save_part(session, "account options", [&](User& fresh) { save_flags(session, fresh); });
  if (saved == 0 && !flags_saved)
    base::raise(trap.number(), trap.description());
}

/// False for a wrong drive letter.
bool save_user(Session& session) {
  session.CurrentUser = session.platform.directory.GetObject(base::trim(session.form1.USERID_W2K.text.get()));
  User user(session.CurrentUser);
  if (!check_drive_letter(session))
    return false;
  if (session.details.Account)
    save_expiry(session, user);
  if (session.details.Custom)
    save_custom_values(session);
  save_fields_and_flags(session, user);
  return true;
}

ObjectPtr bind_group(Session& session, const controls::ListRow& row) {
  session.CurrentGroup = session.platform.directory.GetObject(row.key);
  return session.CurrentGroup;
}

}  // namespace

bool Read_AD_User(Session& session, std::string_view path) {
  session::Form1& form = session.form1;
  base::Trap trap;
  if (!trap([&] { session.CurrentUser = session.platform.directory.GetObject(path); })) {
    session.status.panel1 = "Error reading user: " + trap.description();
    return false;
  }
  const ObjectPtr object = session.CurrentUser;
  const User user(object);
  read_fields(session, user);
  read_custom_values(session, user);
  read_winnt_flags(session);
  read_flags(form, user);
  session.UserPrimaryGroupID = platform::text_or_empty(*object, "PrimaryGroupID");
  Read_AD_User_Groups(session, object);
  session.details.clear();
  session.CurrentUser.reset();
  return true;
}

bool Read_AD_User_Groups(Session& session, const ObjectPtr& user) {
  const GroupName primary = find_primary_group(session);
  session.domain.own_groups.clear();
  if (!primary.path.empty()) {
    session.status.panel1 = common_name(user->Name(), 50) + " Primary Group is '" + primary.name + "'";
    show_membership(session, primary.path, primary.name, kGroupIcon, true);
  }
  for (const ObjectPtr& group : user->Groups())
    show_membership(session, group->ADsPath(), common_name(group->Name(), 100), kGroupIcon, false);
  return true;
}

bool Save_AD_User(Session& session) {
  return save_shown_user(session, save_user);
}

bool Add_AD_User_Group(Session& session, std::size_t row) {
  bind_group(session, session.domain.other_groups.at(row))->Add(session.form1.USERID_W2K.text.get());
  return true;
}

bool Remove_AD_User_Group(Session& session, std::size_t row) {
  bind_group(session, session.domain.own_groups.at(row))->Remove(session.form1.USERID_W2K.text.get());
  return true;
}

}  // namespace twk::directory
