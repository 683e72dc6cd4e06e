#include "cli/frame/directory_reader.hpp"

#include <algorithm>
#include <array>
#include <optional>

#include "ads/sid.hpp"
#include "base/errors.hpp"
#include "base/text.hpp"
#include "cli/parser/near_matches.hpp"
#include "cli/terminal/failures.hpp"
#include "directory/account_expiry.hpp"
#include "directory/domain_search.hpp"
#include "directory/hours_of_week.hpp"
#include "directory/nt_listing.hpp"
#include "platform/adsi.hpp"
#include "platform/group_type.hpp"
#include "platform/ldap_text.hpp"
#include "platform/logon_hours.hpp"

namespace twk::cli {
namespace {

using platform::ObjectPtr;
using platform::Value;

constexpr std::string_view kUsers = directory::kUserConditions;
constexpr std::string_view kGroups = directory::kGroupConditions;

using directory::ldap_path;

std::string winnt_path(const Domain& domain, std::string_view name) {
  return name.empty() ? platform::winnt_path(domain.nt_name) : platform::winnt_path(domain.nt_name, name);
}

/// The distinguished name in "LDAP://twk.test/CN=…".
std::string dn_of_path(std::string_view path) {
  const std::size_t slash = path.find('/', std::string_view("LDAP://").size());
  return std::string(slash == base::npos ? path : path.substr(slash + 1));
}

Value get(const ObjectPtr& object, std::string_view attribute) {
  return platform::value_or_empty(*object, attribute);
}

std::int32_t get_number(const ObjectPtr& object, std::string_view attribute) {
  const Value value = get(object, attribute);
  return value.is_empty() ? 0 : value.integer();
}

using Row = directory::FoundRow;

std::vector<Row> query(const Domain& domain, std::string_view base_dn, const std::string& filter,
                       std::vector<std::string> attributes) {
  return directory::search_domain(domain, base_dn, filter, std::move(attributes));
}

/// The entries that a query would find, none of which is read.
std::size_t count(const Domain& domain, const std::string& filter) {
  platform::QueryOptions options;
  options.page_size = 1000;
  const auto records = domain.services.query.execute(
      {ldap_path(domain, {}), filter, {"distinguishedName"}, platform::Scope::kSubtree}, options);
  std::size_t found = 0;
  for (; !records->at_eof(); records->MoveNext())
    ++found;
  return found;
}

std::string conjunction(std::string_view conditions, const std::string& further = {}) {
  return "(&" + std::string(conditions) + further + ")";
}

void sort_by_name(std::vector<Json>& rows) {
  std::vector<std::pair<std::string, Json>> keyed;
  keyed.reserve(rows.size());
  for (Json& row : rows) {
    std::string key = base::upper(row.text_at("name"));
    keyed.emplace_back(std::move(key), std::move(row));
  }
  std::stable_sort(keyed.begin(), keyed.end(),
                   [](const auto& a, const auto& b) { return a.first < b.first; });
  std::transform(keyed.begin(), keyed.end(), rows.begin(), [](auto& pair) { return std::move(pair.second); });
}

/// The children of one class of a WinNT domain.
std::vector<ObjectPtr> winnt_children(const Domain& domain, const std::string& object_class) {
  std::vector<ObjectPtr> out;
  const std::array<std::string, 1> classes = {object_class};
  domain.services.directory.GetObject(winnt_path(domain, {}))
      ->enumerate(classes, [&](const ObjectPtr& child) {
        out.push_back(child);
        return true;
      });
  return out;
}

std::vector<std::string> names_of(const std::vector<Json>& rows) {
  std::vector<std::string> names;
  names.reserve(rows.size());
  for (const Json& row : rows)
    names.push_back(row.text_at("name"));
  return names;
}

/// The path of the object that meets these conditions and has the name: as account name, which a directory
/// looks up at once, otherwise as another of its names; empty when there is none.
std::string look_up(const Domain& domain, std::string_view kind, std::string_view conditions,
                    std::string_view name) {
  const std::string value = platform::escape_filter_value(name);
  auto rows = query(domain, {}, conjunction(conditions, "(sAMAccountName=" + value + ")"), {"ADsPath"});
  if (rows.empty() && name.find('=') != base::npos) {
    // A distinguished name, which may be spelled differently than in the directory.
    base::Trap missing;
    std::string dn;
    missing([&] {
      dn = domain.services.directory.GetObject(ldap_path(domain, name))->Get("distinguishedName").text();
    });
    if (!dn.empty())
      rows = query(domain, dn,
                   conjunction(conditions, "(distinguishedName=" + platform::escape_filter_value(dn) + ")"),
                   {"ADsPath"});
  }
  if (rows.empty()) {
    rows =
        query(domain, {}, conjunction(conditions, "(|(cn=" + value + ")(userPrincipalName=" + value + "))"),
              {"ADsPath"});
  }
  if (rows.size() > 1)
    throw Refused("More than one " + std::string(kind) + " is called \"" + std::string(name) + "\".");
  return rows.empty() ? std::string() : rows.front()[0].text();
}

std::string locate(const Domain& domain, std::string_view kind, std::string_view conditions,
                   std::string_view name, const std::function<std::vector<Json>()>& all) {
  std::string path = look_up(domain, kind, conditions, name);
  if (path.empty())
    throw Refused(no_such_text(kind, name, names_of(all())));
  return path;
}

/// Binds an account of a WinNT domain.
ObjectPtr bind_winnt(const Domain& domain, std::string_view kind, std::string_view name,
                     std::string_view object_class, const std::function<std::vector<Json>()>& all) {
  try {
    if (name.find_first_of("/,") != base::npos)
      throw Refused(no_such_text(kind, name, {}));
    return domain.services.directory.GetObject(winnt_path(domain, name) + "," + std::string(object_class));
  } catch (const base::RuntimeError& failure) {
    if (failure.number() == platform::ads_error::kAccessDenied)
      throw;
    throw Refused(no_such_text(kind, name, names_of(all())));
  }
}

std::string hex_digits(const base::Bytes& bytes) {
  return Value(bytes).text();
}

/// The day here on which an account ends; nothing for never.
Json expiry(const Domain& domain, std::optional<base::Date> ends) {
  return ends ? Json(directory::sortable_expiry(domain.services.clock, *ends)) : Json(nullptr);
}

Json sorted_names(std::vector<std::string> names) {
  std::sort(names.begin(), names.end(),
            [](const std::string& a, const std::string& b) { return base::upper(a) < base::upper(b); });
  return names;
}

/// The name of the user's primary group, which is in the same domain.
std::string primary_group_in_ad(const Domain& domain, const ObjectPtr& user) {
  const std::int32_t rid = get_number(user, "primaryGroupID");
  const Value sid = get(user, "objectSid");
  const base::Bytes own = sid.is_empty() ? base::Bytes{} : sid.bytes();
  if (const std::string above = ads::without_rid(std::string(own.begin(), own.end())); !above.empty()) {
    const std::string group = ads::append_rid(above, static_cast<std::uint32_t>(rid));
    const std::vector<Row> rows =
        query(domain, {}, conjunction(kGroups, "(objectSid=" + platform::escape_filter_bytes(group) + ")"),
              {"Name"});
    return rows.empty() ? std::string() : rows.front()[0].text();
  }
  // An entry of a lab that came without an identifier.
  for (const Row& row : query(domain, {}, conjunction(kGroups), {"Name", "primaryGroupToken"})) {
    if (!row[1].is_empty() && row[1].integer() == rid)
      return row[0].text();
  }
  return {};
}

std::string primary_group_in_nt(const Domain& domain, const ObjectPtr& user) {
  const std::int32_t rid = get_number(user, "PrimaryGroupID");
  for (const ObjectPtr& group : user->Groups()) {
    const Value sid =
        get(domain.services.directory.GetObject(winnt_path(domain, group->Name()) + ",group"), "objectSID");
    const base::Bytes& bytes = sid.bytes();
    std::uint32_t last = 0;
    for (std::size_t i = 1; i <= 4 && i <= bytes.size(); ++i)
      last = last << 8U | bytes[bytes.size() - i];
    if (last == static_cast<std::uint32_t>(rid))
      return group->Name();
  }
  return {};
}

Json user_row(std::string name, std::string full_name, std::string description, bool disabled,
              std::string dn) {
  return {{"name", std::move(name)},
          {"fullName", std::move(full_name)},
          {"description", std::move(description)},
          {"disabled", disabled},
          {"dn", std::move(dn)}};
}

Json group_row(std::string name, std::int32_t type, bool builtin, std::string description, std::string dn,
               bool active_directory) {
  std::string scope = "local";
  if ((type & platform::group_type::kGlobal) != 0)
    scope = "global";
  else if ((type & platform::group_type::kUniversal) != 0)
    scope = "universal";
  else if (active_directory && (type & platform::group_type::kLocal) != 0)
    scope = builtin ? "builtin local" : "domain local";
  return {{"name", std::move(name)},
          {"kind", active_directory && type >= 0 ? "distribution" : "security"},
          {"scope", std::move(scope)},
          {"description", std::move(description)},
          {"dn", std::move(dn)}};
}

/// The name of a place for users as the directory spells it, whatever escapes and blanks `dn` has; empty when
/// there is none.
std::string spelled_ou(const Domain& domain, std::string_view dn) {
  constexpr std::array<std::string_view, 4> kPlaces = {"organizationalUnit", "container", "builtinDomain",
                                                       "domainDNS"};
  std::string spelled;
  base::Trap missing;
  missing([&] {
    const ObjectPtr place = domain.services.directory.GetObject(ldap_path(domain, dn));
    const std::string kind = place->Class();
    if (std::any_of(kPlaces.begin(), kPlaces.end(), [&](auto one) { return base::equals_fold(kind, one); }))
      spelled = platform::text_or_empty(*place, "distinguishedName");
    // A unit that a rehearsal would have made.
    if (spelled.empty() && base::equals_fold(kind, kPlaces.front()))
      spelled = dn_of_path(place->ADsPath());
  });
  return spelled;
}

/// The object of a user in the form that `locate_user` returns.
ObjectPtr bind_located(const Domain& domain, const std::string& located) {
  return domain.services.directory.GetObject(domain.active_directory ? ldap_path(domain, located)
                                                                     : winnt_path(domain, located) + ",user");
}

}  // namespace

std::string domain_dn(const Domain& domain) {
  std::string out;
  for (const std::string& label : base::split(domain.name, '.'))
    out += (out.empty() ? "DC=" : ",DC=") + label;
  return out;
}

std::vector<Json> list_users(const Domain& domain, std::string_view ou) {
  std::vector<Json> out;
  if (domain.active_directory) {
    const std::string base_dn = ou.empty() ? std::string() : locate_ou(domain, ou);
    for (const Row& row :
         query(domain, base_dn, conjunction(kUsers),
               {"sAMAccountName", "displayName", "description", "userAccountControl", "distinguishedName"})) {
      const bool disabled = !row[3].is_empty() && (row[3].integer() & platform::kFlagAccountDisabled) != 0;
      out.push_back(user_row(row[0].text(), row[1].text(), row[2].text(), disabled, row[4].text()));
    }
  } else {
    if (!ou.empty())
      throw Refused("A WinNT domain has no organizational units.");
    const ObjectPtr container = domain.services.directory.GetObject(winnt_path(domain, {}));
    directory::list_nt_users(container, [&](const platform::ListedUser& user) {
      const bool disabled = (user.flags & platform::kFlagAccountDisabled) != 0;
      out.push_back(user_row(user.name, user.full_name, user.description, disabled, {}));
      return true;
    });
  }
  sort_by_name(out);
  return out;
}

std::size_t count_users(const Domain& domain) {
  return domain.active_directory ? count(domain, conjunction(kUsers)) : winnt_children(domain, "User").size();
}

std::string locate_user(const Domain& domain, std::string_view name) {
  const auto all = [&] { return list_users(domain, {}); };
  if (domain.active_directory)
    return dn_of_path(locate(domain, "user", kUsers, name, all));
  return bind_winnt(domain, "user", name, "user", all)->Name();
}

std::optional<std::string> find_user(const Domain& domain, std::string_view name) {
  if (domain.active_directory) {
    const std::string path = look_up(domain, "user", kUsers, name);
    return path.empty() ? std::nullopt : std::optional(dn_of_path(path));
  }
  if (name.empty() || name.find_first_of("/,") != base::npos)
    return std::nullopt;
  base::Trap trap;
  std::optional<std::string> found;
  trap([&] { found = domain.services.directory.GetObject(winnt_path(domain, name) + ",user")->Name(); });
  if (trap.number() != 0 && trap.number() != platform::ads_error::kUserNotFound &&
      trap.number() != platform::ads_error::kNoSuchObject)
    throw base::RuntimeError(trap.number(), trap.description());
  return found;
}

ObjectPtr bind_user(const Domain& domain, std::string_view name) {
  return bind_located(domain, locate_user(domain, name));
}

Json describe_user(const Domain& domain, std::string_view name) {
  const std::string located = locate_user(domain, name);
  const bool ad = domain.active_directory;
  const ObjectPtr object = bind_located(domain, located);
  std::optional<base::RuntimeError> unread;
  const directory::UserDetails details = directory::read_account(domain, object, unread);
  if (unread)
    throw base::RuntimeError(*unread);
  const platform::User user(object);

  std::vector<std::string> groups;
  for (const ObjectPtr& group : user.Groups())
    groups.push_back(platform::plain_name(group->Name()));
  const std::string primary = ad ? primary_group_in_ad(domain, object) : primary_group_in_nt(domain, object);
  if (!primary.empty() && std::find(groups.begin(), groups.end(), primary) == groups.end())
    groups.push_back(primary);
  base::Bytes hours = user.LoginHours();
  if (hours.empty())
    hours.assign(platform::kLogonHoursSize, 255);

  return {{"name", details.name},
          {"dn", ad ? located : std::string()},
          {"samAccountName", ad ? details.PreW2K : details.name},
          {"userPrincipalName", ad ? get(object, "userPrincipalName").text() : std::string()},
          {"fullName", details.FullName},
          {"description", details.Description},
          {"homeDirectory", details.HomeDirectory},
          {"homeDrive", details.HomeDrive},
          {"profilePath", details.Profile},
          {"loginScript", details.LoginScript},
          {"disabled", details.disabled},
          {"locked", details.locked_out},
          {"passwordNeverExpires", details.never_expires},
          {"cannotChangePassword", details.cannot_change},
          {"mustChangePassword", details.must_change},
          {"expires", expiry(domain, details.ends)},
          {"primaryGroup", primary},
          {"groups", sorted_names(std::move(groups))},
          {"logonHours", hex_digits(hours)}};
}

std::vector<Json> list_groups(const Domain& domain) {
  std::vector<Json> out;
  if (domain.active_directory) {
    for (const Row& row :
         query(domain, {}, conjunction(kGroups), {"Name", "GroupType", "description", "distinguishedName"})) {
      const bool builtin = base::find_fold(row[3].text(), "builtin") != base::npos;
      out.push_back(group_row(row[0].text(), row[1].integer(), builtin, row[2].text(), row[3].text(), true));
    }
  } else {
    for (const ObjectPtr& group : winnt_children(domain, "Group")) {
      out.push_back(group_row(group->Name(), get_number(group, "groupType"), false,
                              get(group, "Description").text(), {}, false));
    }
  }
  sort_by_name(out);
  return out;
}

std::size_t count_groups(const Domain& domain) {
  return domain.active_directory ? count(domain, conjunction(kGroups))
                                 : winnt_children(domain, "Group").size();
}

std::string locate_group(const Domain& domain, std::string_view name) {
  const auto all = [&] { return list_groups(domain); };
  if (domain.active_directory)
    return dn_of_path(locate(domain, "group", kGroups, name, all));
  return bind_winnt(domain, "group", name, "group", all)->Name();
}

Json describe_group(const Domain& domain, std::string_view name) {
  const auto all = [&] { return list_groups(domain); };
  const bool ad = domain.active_directory;
  const ObjectPtr group =
      ad ? domain.services.directory.GetObject(locate(domain, "group", kGroups, name, all))
         : bind_winnt(domain, "group", name, "group", all);
  const std::string dn = ad ? dn_of_path(group->ADsPath()) : std::string();
  Json out =
      group_row(platform::plain_name(group->Name()), get_number(group, "groupType"),
                base::find_fold(dn, "builtin") != base::npos, get(group, "Description").text(), dn, ad);
  std::vector<std::string> members;
  for (const ObjectPtr& member : group->Members())
    members.push_back(platform::plain_name(member->Name()));
  if (ad) {
    const std::string token = std::to_string(get_number(group, "primaryGroupToken"));
    for (const Row& row : query(domain, {}, conjunction(kUsers, "(primaryGroupID=" + token + ")"), {"Name"}))
      members.push_back(row[0].text());
  }
  out["members"] = sorted_names(std::move(members));
  return out;
}

std::vector<std::string> list_ous(const Domain& domain) {
  std::vector<std::string> names;
  if (!domain.active_directory)
    return names;
  for (const Row& row : query(domain, {}, "(objectClass=organizationalUnit)", {"distinguishedName"}))
    names.push_back(row[0].text());
  return names;
}

std::string locate_ou(const Domain& domain, std::string_view dn) {
  if (!domain.active_directory)
    throw Refused("A WinNT domain has no organizational units.");
  if (std::string spelled = spelled_ou(domain, dn); !spelled.empty())
    return spelled;
  const auto rows = query(
      domain, {}, "(|(objectClass=organizationalUnit)(objectClass=container)(objectClass=builtinDomain))",
      {"distinguishedName"});
  std::vector<std::string> names = {domain_dn(domain)};
  for (const Row& row : rows)
    names.push_back(row[0].text());
  return find_name("organizational unit", dn, names);
}

std::string locate_unit(const Domain& domain, std::string_view dn) {
  std::string unit = locate_ou(domain, dn);
  if (base::starts_with_fold(unit, "DC=") || base::starts_with_fold(unit, "CN=Builtin,"))
    throw Refused(unit + " is not an organizational unit.");
  return unit;
}

}  // namespace twk::cli
