#include "directory/user_details.hpp"

#include <functional>

#include "base/error_words.hpp"
#include "directory/ad_user.hpp"
#include "directory/custom_attributes.hpp"
#include "directory/details_parts.hpp"
#include "directory/load_options.hpp"
#include "directory/nt_user.hpp"
#include "directory/operations.hpp"
#include "session/loaded_domain.hpp"
#include "session/session.hpp"

namespace twk::directory {
namespace {

using controls::ListView;
using platform::ObjectPtr;
using platform::User;
using platform::Value;
using session::Session;

std::string joined(const Value& value) {
  if (!value.is_list())
    return value.text();
  std::string text;
  for (const Value& element : value.list())
    text += (text.empty() ? "" : ",") + element.text();
  return text;
}

void read_custom_values(Session& session, const User& user, UserDetails& details) {
  base::Trap absent;
  for (std::size_t i = 0; i < details.Custom.size(); ++i) {
    const std::string attribute = custom_attribute(session, i);
    if (!attribute.empty())
      absent([&] { details.Custom.at(i) = joined(user.Get(attribute)); });
  }
}

ObjectPtr bind_account(Session& session, const std::string& key) {
  if (session::is_active_directory(session))
    return session.platform.directory.GetObject(key);
  if (!session.DomainContainer) {
    throw base::RuntimeError(platform::ads_error::kServerDown,
                             "The domain " + session.DomainName + " was not found");
  }
  return session.DomainContainer->GetObject("user", key);
}

/// Raises what the directory raises.
UserDetails read_user(Session& session, const std::string& key) {
  session.CurrentUser = bind_account(session, key);
  const ObjectPtr object = session.CurrentUser;
  std::optional<base::RuntimeError> unread;  // of one field: it stays empty
  UserDetails details = read_account(account_domain(session), object, unread);
  details.key = key;
  const bool active_directory = session::is_active_directory(session);
  if (active_directory)
    read_custom_values(session, User(object), details);
  session.UserPrimaryGroupID = platform::text_or_empty(*object, "PrimaryGroupID");
  if (active_directory)
    Read_AD_User_Groups(session, object);
  else
    Read_NT_User_Groups(session, object);
  return details;
}

/// Changes the memberships of the selected rows, from the last to the first, and moves these rows. Returns
/// their keys.
std::vector<std::string> change_groups(Session& session, ListView& from, ListView& to,
                                       const std::function<void(const platform::ObjectPtr& group)>& change) {
  std::vector<std::string> keys;
  for (std::size_t place = from.size(); place-- > 0;) {
    const controls::ListRow& row = from.at(place);
    if (!row.selected)
      continue;
    base::Trap trap;
    const bool changed = trap([&] {
      session.CurrentGroup = session.platform.directory.GetObject(
          session::is_active_directory(session) ? row.key : winnt_path(session, row.text));
      change(session.CurrentGroup);
    });
    session.CurrentGroup.reset();
    if (changed) {
      keys.push_back(row.key);
      controls::move_row(from, row, to);
    } else {
      session.status.panel1 =
          "Error changing group " + row.text + ": " + base::in_words(trap.number(), trap.description());
    }
  }
  return keys;
}

/// The account as a member of a group.
std::string member_path(const Session& session, const UserDetails& user) {
  return session::is_active_directory(session) ? user.key : winnt_path(session, user.name);
}

}  // namespace

AccountDomain account_domain(const Session& session) {
  return {.services = session.platform,
          .name = session.DomainName,
          .nt_name = winnt_domain(session),
          .active_directory = session::is_active_directory(session)};
}

std::optional<UserDetails> read_user_details(Session& session, const std::string& key) {
  std::optional<UserDetails> details;
  base::Trap trap;
  trap([&] { details = read_user(session, key); });
  session.CurrentUser.reset();
  if (trap.number() != 0)
    session.status.panel1 = "Error reading user: " + trap.description();
  return details;
}

std::vector<std::string> add_to_selected_groups(Session& session, const UserDetails& user) {
  return change_groups(session, session.domain.other_groups, session.domain.own_groups,
                       [&](const ObjectPtr& group) { group->Add(member_path(session, user)); });
}

std::vector<std::string> remove_from_selected_groups(Session& session, const UserDetails& user) {
  return change_groups(session, session.domain.own_groups, session.domain.other_groups,
                       [&](const ObjectPtr& group) { group->Remove(member_path(session, user)); });
}

void return_own_groups(Session& session) {
  session::LoadedDomain& domain = session.domain;
  const bool loaded = !read_load_options(session).SkipGroups;
  // A row that is in the other list already raises; it is gone from this one then, as it should be.
  base::Trap trap;
  while (loaded && !domain.own_groups.empty())
    trap([&] {
      controls::move_row(domain.own_groups, domain.own_groups.at(domain.own_groups.size() - 1),
                         domain.other_groups);
    });
  domain.own_groups.clear();
}

}  // namespace twk::directory
