#include "groups/memberships.hpp"

#include <algorithm>
#include <array>
#include <unordered_map>

#include "base/errors.hpp"
#include "base/text.hpp"
#include "directory/names.hpp"
#include "directory/operations.hpp"
#include "platform/adsi.hpp"
#include "platform/ldap_text.hpp"
#include "session/loaded_domain.hpp"
#include "session/session.hpp"

namespace twk::groups {
namespace {

using platform::ObjectPtr;
using session::Session;

/// Servers find the names by their index, but some compare what they found with all of the filter.
constexpr std::size_t kMostNamesInFilter = 20;

std::set<std::string> identities(const platform::Value& names) {
  std::set<std::string> found;
  for (const platform::Value& name : names.list())
    found.insert(base::upper(name.text()));
  return found;
}

/// The answer for the accounts of these paths, by their identities.
std::unordered_map<std::string, Memberships> search_memberships(const Session& session,
                                                                std::span<const std::string> paths) {
  std::string names;
  for (const std::string& path : paths)
    names +=
        "(distinguishedName=" + platform::escape_filter_value(std::string(directory::name_in_path(path))) +
        ")";
  std::unordered_map<std::string, Memberships> found;
  std::vector<std::string> attributes = membership_attributes();
  attributes.emplace_back("distinguishedName");
  platform::QueryOptions at_once;
  at_once.page_size = 0;
  const auto rows = session.platform.query.execute(
      {"LDAP://" + session.DomainName, "(|" + names + ")", attributes, platform::Scope::kSubtree}, at_once);
  for (; !rows->at_eof(); rows->MoveNext()) {
    const std::array values = {rows->field(0), rows->field(1), rows->field(2)};
    found.emplace(base::upper(rows->field(values.size()).text()), memberships_of(values));
  }
  return found;
}

}  // namespace

std::string group_identity(const Session& session, std::string_view group) {
  return base::upper(session::is_active_directory(session) ? directory::name_in_path(group) : group);
}

std::vector<std::string> membership_attributes() {
  return {"memberOf", "primaryGroupID", "objectSid"};
}

Memberships memberships_of(std::span<const platform::Value> values) {
  Memberships known{identities(values[0]), values[1].integer(), {}};
  if (const auto sid = platform::Sid::decode(values[2].bytes()))
    known.sid = sid->text();
  return known;
}

Memberships read_memberships(const Session& session, const ObjectPtr& account) {
  Memberships known;
  known.primary = platform::value_or_empty(*account, "primaryGroupID").integer();
  known.sid = platform::readable_sid(account);
  if (session::is_active_directory(session)) {
    known.groups = identities(platform::value_or_empty(*account, "memberOf"));
    return known;
  }
  for (const ObjectPtr& group : account->Groups())
    known.groups.insert(base::upper(group->Name()));
  return known;
}

std::vector<std::optional<Memberships>> read_memberships(const Session& session,
                                                         std::span<const std::string> paths) {
  std::vector<std::optional<Memberships>> known(paths.size());
  for (std::size_t first = 0; first < paths.size(); first += kMostNamesInFilter) {
    const auto some = paths.subspan(first, std::min(kMostNamesInFilter, paths.size() - first));
    std::unordered_map<std::string, Memberships> found;
    base::Trap unanswered;
    unanswered([&] { found = search_memberships(session, some); });
    for (std::size_t i = 0; i < some.size(); ++i) {
      if (const auto one = found.find(group_identity(session, some[i])); one != found.end())
        known[first + i] = one->second;
    }
  }
  return known;
}

}  // namespace twk::groups
