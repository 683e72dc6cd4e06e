#include "cli/user/user_columns.hpp"

#include <array>

#include "ads/dn.hpp"
#include "base/errors.hpp"
#include "base/text.hpp"
#include "cli/parser/near_matches.hpp"
#include "cli/terminal/failures.hpp"
#include "directory/account_expiry.hpp"
#include "directory/attribute_text.hpp"
#include "directory/domain_search.hpp"
#include "platform/adsi.hpp"
#include "platform/ldap_text.hpp"

namespace twk::cli {
namespace {

using platform::Value;
using Values = std::span<const Value>;

bool has_flag(const Value& flags, std::int32_t bit) {
  return (directory::number_of(flags) & bit) != 0;
}

Json text(const Domain&, Values values) {
  return values[0].text();
}

Json disabled(const Domain&, Values values) {
  return has_flag(values[0], platform::kFlagAccountDisabled);
}

Json password_never_expires(const Domain&, Values values) {
  return has_flag(values[0], platform::kFlagPasswordNeverExpires);
}

Json locked(const Domain&, Values values) {
  return directory::number_of(values[0]) > 0 && !platform::is_lapsed_lock(values[1]);
}

Json must_change(const Domain&, Values values) {
  return !values[0].is_empty() && directory::number_of(values[0]) == 0;
}

Json expires(const Domain& domain, Values values) {
  constexpr std::int64_t kNever = INT64_MAX;
  const std::int64_t ends = directory::number_of(values[0]);
  if (ends == 0 || ends == kNever)
    return nullptr;
  return directory::sortable_expiry(domain.services.clock, base::from_filetime(ends));
}

Json place(const Domain&, Values values) {
  return std::string(ads::parent_dn(values[0].text()));
}

Json groups(const Domain&, Values values) {
  Json names = Json::array();
  for (const Value& group : values[0].list())
    names.push_back(platform::plain_name(ads::first_rdn(group.text())));
  return names;
}

struct KnownColumn {
  const char* key;
  const char* title;
  std::vector<std::string> attributes;
  Json (*cell)(const Domain&, Values);
};

const std::vector<KnownColumn>& known_columns() {
  static const std::vector<KnownColumn> columns = {
      {"name", "Name", {"sAMAccountName"}, text},
      {"fullName", "Full name", {"displayName"}, text},
      {"description", "Description", {"description"}, text},
      {"disabled", "Disabled", {"userAccountControl"}, disabled},
      {"dn", "Distinguished name", {"distinguishedName"}, text},
      {"ou", "Place", {"distinguishedName"}, place},
      {"first", "First name", {"givenName"}, text},
      {"last", "Last name", {"sn"}, text},
      {"office", "Office", {"physicalDeliveryOfficeName"}, text},
      {"loginScript", "Logon script", {"scriptPath"}, text},
      {"locked", "Locked out", {"lockoutTime", "msDS-User-Account-Control-Computed"}, locked},
      {"passwordNeverExpires", "Password never expires", {"userAccountControl"}, password_never_expires},
      {"mustChangePassword", "Must change password", {"pwdLastSet"}, must_change},
      {"expires", "Expires", {"accountExpires"}, expires},
      {"groups", "Groups", {"memberOf"}, groups}};
  return columns;
}

/// The names that could have been meant.
std::vector<std::string> all_names(const Domain& domain) {
  std::vector<std::string> names;
  for (const KnownColumn& column : known_columns())
    names.emplace_back(column.key);
  if (!domain.active_directory)
    return names;
  const platform::ObjectPtr user = domain.services.directory.GetObject("LDAP://Schema/User");
  for (const char* const list : {"MandatoryProperties", "OptionalProperties"}) {
    for (const Value& name : user->Get(list).list())
      names.push_back(name.text());
  }
  return names;
}

}  // namespace

std::vector<std::string> names_in(std::string_view option, std::string_view list) {
  std::vector<std::string> names;
  for (const std::string& word : base::split(list, ',')) {
    if (const std::string_view name = base::trim(word); !name.empty())
      names.emplace_back(name);
  }
  if (names.empty())
    throw UsageError(std::string(option) + " takes names with commas between");
  return names;
}

std::string attribute_named(const Domain& domain, const std::string& name) {
  try {
    return directory::known_attribute(domain, name);
  } catch (const base::RuntimeError& failure) {
    if (failure.number() != platform::ads_error::kNoSuchAttribute)
      throw;
    throw UsageError(no_such_text("attribute", name, all_names(domain)));
  }
}

UserColumn user_column(const Domain& domain, const std::string& name) {
  for (const KnownColumn& known : known_columns()) {
    if (base::equals_fold(known.key, name))
      return {{known.key, known.title}, known.attributes, known.cell};
  }
  const std::string attribute = attribute_named(domain, name);
  return {{attribute, attribute}, {attribute}, [attribute](const Domain& where, Values values) {
            return json_of(directory::attribute_texts(where.services.clock, attribute, values[0]));
          }};
}

Json json_of(const std::vector<std::string>& texts) {
  if (texts.empty())
    return nullptr;
  return texts.size() == 1 ? Json(texts.front()) : Json(texts);
}

}  // namespace twk::cli
