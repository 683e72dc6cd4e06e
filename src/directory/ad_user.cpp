#include "directory/ad_user.hpp"

#include <algorithm>
#include <functional>
#include <iterator>

#include "base/text.hpp"
#include "directory/custom_attributes.hpp"
#include "directory/details_parts.hpp"
#include "directory/operations.hpp"
#include "platform/ldap_text.hpp"
#include "session/loaded_domain.hpp"
#include "session/session.hpp"

namespace twk::directory {
namespace {

using platform::ObjectPtr;
using platform::User;
using session::Session;

constexpr int kClear = 1;  ///< `PutEx`: empties an attribute
constexpr const char* kGroupIcon = "W2KGRP";

/// "Jo Smith" of "CN=Jo Smith", at most so many characters.
std::string common_name(const std::string& name, std::size_t longest) {
  return std::string(base::left(platform::plain_name(name), longest));
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

/// A field and the new text of its attribute; an empty text clears it.
struct FieldChange {
  std::string attribute;
  std::string text;
};

std::vector<FieldChange> profile_fields(const UserDetails& details) {
  return {{"LoginScript", details.LoginScript},
          {"Profile", details.Profile},
          {"HomeDrive", details.HomeDrive},
          {"HomeDirectory", details.HomeDirectory}};
}

std::vector<FieldChange> account_fields(const UserDetails& details) {
  std::vector<FieldChange> fields;
  if (!details.PreW2K.empty())
    fields.push_back({"samAccountName", details.PreW2K});
  fields.push_back({"EMailAddress", details.Mail});
  const std::string& logon = details.LogonName;
  fields.push_back({"userPrincipalName", logon.empty() ? logon : logon + details.LogonSuffix});
  return fields;
}

std::vector<FieldChange> general_fields(const UserDetails& details) {
  return {{"FullName", details.FullName},      {"Description", details.Description},
          {"FirstName", details.FirstName},    {"LastName", details.LastName},
          {"OfficeLocations", details.Office}, {"initials", details.Initials}};
}

void stage(User& user, const std::vector<FieldChange>& fields) {
  for (const FieldChange& field : fields)
    put_or_clear(user, field.attribute, field.text);
}

/// One save: what is written where, and what the directory did not take.
struct Save {
  Session& session;
  const UserChange& change;
  std::vector<std::string>& refused;

  [[nodiscard]] ObjectPtr account() const {
    return session.platform.directory.GetObject(base::trim(change.details.key));
  }
};

/// Runs a write over a fresh object of the user; what is refused goes to the refusals as "what: reason". True
/// when it went through. Raises when no server answers.
bool save_part(Save& save, const std::string& what, const std::function<void(User& user)>& put) {
  base::Trap trap;
  const bool saved = trap([&] {
    User user(save.account());
    put(user);
    user.SetInfo();
  });
  if (trap.number() == platform::ads_error::kServerDown ||
      trap.number() == platform::ads_error::kNoSuchObject)
    base::raise(trap.number(), trap.description());
  if (!saved)
    save.refused.push_back(what + ": " + trap.description());
  return saved;
}

/// Saves each field separately; returns how many were saved.
std::size_t save_one_by_one(Save& save, const std::vector<FieldChange>& fields) {
  return static_cast<std::size_t>(std::count_if(fields.begin(), fields.end(), [&](const FieldChange& field) {
    return save_part(save, field.attribute, [&](User& user) { stage(user, {field}); });
  }));
}

std::vector<FieldChange> changed_custom_fields(const Save& save) {
  std::vector<FieldChange> fields;
  for (std::size_t i = 0; i < save.change.details.Custom.size(); ++i) {
    std::string attribute = custom_attribute(save.session, i);
    if (!attribute.empty() && save.change.changed.Custom.at(i))
      fields.push_back({std::move(attribute), save.change.details.Custom.at(i)});
  }
  return fields;
}

void save_custom_values(Save& save) {
  const std::vector<FieldChange> fields = changed_custom_fields(save);
  if (save_one_by_one(save, fields) == fields.size())
    return;
  save.session.platform.dialogs.MsgBox("Error setting a custom value", platform::Buttons::kOk,
                                       platform::Icon::kCritical, "Error saving settings");
}

/// "User cannot change password" is written through the WinNT object, which uses the name currently in the
/// directory, not one that is still to be saved.
void save_cannot_change(const Save& save) {
  const std::string name = save.account()->Get("samAccountName").text();
  const ObjectPtr account = save.session.platform.directory.GetObject(winnt_path(save.session, name));
  const std::int32_t flags = account->Get("UserFlags").integer();
  const bool set = (flags & platform::kFlagCannotChangePassword) != 0;
  const bool wanted = save.change.details.cannot_change;
  if (!wanted && !set)
    return;
  account->Put("UserFlags", wanted ? flags | platform::kFlagCannotChangePassword
                                   : flags & ~platform::kFlagCannotChangePassword);
  account->SetInfo();
}

void stage_flags(const Save& save, User& user) {
  const UserDetails& details = save.change.details;
  if (save.change.must_change_before != details.must_change)
    user.Put("pwdLastSet", details.must_change ? 0 : -1);
  if (save.change.was_locked_out && !details.locked_out)
    user.put_IsAccountLocked(false);
  // First, since the bits below are set on top of what the account has then.
  save_cannot_change(save);
  user.put_AccountDisabled(details.disabled);
  const std::int32_t control = user.Get("UserAccountControl").integer();
  const bool set = (control & platform::kFlagPasswordNeverExpires) != 0;
  if (details.never_expires)
    user.Put("UserAccountControl", control | platform::kFlagPasswordNeverExpires);
  else if (set)
    user.Put("UserAccountControl", control & ~platform::kFlagPasswordNeverExpires);
}

void append(std::vector<FieldChange>& fields, std::vector<FieldChange> more) {
  fields.insert(fields.end(), std::make_move_iterator(more.begin()), std::make_move_iterator(more.end()));
}

std::vector<FieldChange> changed_fields(const UserChange& change) {
  std::vector<FieldChange> fields;
  if (change.changed.Profile)
    append(fields, profile_fields(change.details));
  if (change.changed.Account)
    append(fields, account_fields(change.details));
  if (change.changed.General)
    append(fields, general_fields(change.details));
  return fields;
}

/// All at once; what a directory refuses as a whole is written in parts, so that the accepted ones are kept.
/// Raises when no part went through.
void save_fields_and_flags(Save& save, User& user) {
  const std::vector<FieldChange> fields = changed_fields(save.change);
  const bool flags = save.change.changed.Flags;
  base::Trap trap;
  if (trap([&] {
        stage(user, fields);
        if (flags)
          stage_flags(save, user);
        user.SetInfo();
      }))
    return;
  if (trap.number() == platform::ads_error::kServerDown || fields.size() + (flags ? 1 : 0) < 2)
    base::raise(trap.number(), trap.description());
  const std::size_t saved = save_one_by_one(save, fields);
  const bool flags_saved =
      flags && save_part(save, "account options", [&](User& fresh) { stage_flags(save, fresh); });
  if (saved == 0 && !flags_saved)
    base::raise(trap.number(), trap.description());
}

void save_expiry(Save& save, User& user) {
  base::Trap trap;
  if (trap([&] {
        stage_typed_expiry(save.session, user, save.change.details.Expires);
        user.SetInfo();
      }))
    return;
  save.refused.push_back("AccountExpirationDate: " + trap.description());
  save.session.platform.dialogs.MsgBox(
      "Error setting expiration date: " + base::to_text(trap.number()) + "\r\n" + trap.description(),
      platform::Buttons::kOk, platform::Icon::kNone, "");
}

}  // namespace

void Read_AD_User_Groups(Session& session, const ObjectPtr& user) {
  const GroupName primary = find_primary_group(session);
  session.domain.own_groups.clear();
  if (!primary.path.empty()) {
    session.status.panel1 = common_name(user->Name(), 50) + " Primary Group is '" + primary.name + "'";
    show_membership(session, primary.path, primary.name, kGroupIcon, true);
  }
  for (const ObjectPtr& group : user->Groups())
    show_membership(session, group->ADsPath(), common_name(group->Name(), 100), kGroupIcon, false);
}

bool Save_AD_User(Session& session, const UserChange& change, std::vector<std::string>& refused) {
  Save save{session, change, refused};
  session.CurrentUser = save.account();
  User user(session.CurrentUser);
  if (!check_drive_letter(session, change.details.HomeDrive))
    return false;
  if (change.changed.Account)
    save_expiry(save, user);
  save_custom_values(save);
  save_fields_and_flags(save, user);
  return true;
}

}  // namespace twk::directory
