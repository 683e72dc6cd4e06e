#include "directory/user_difference.hpp"

#include <algorithm>
#include <array>
#include <map>
#include <set>

#include "base/text.hpp"
#include "directory/attribute_text.hpp"
#include "directory/domain_search.hpp"
#include "platform/ldap_text.hpp"

namespace twk::directory {
namespace {

using platform::ObjectPtr;

constexpr std::array<std::string_view, 24> kOwn = {"badPasswordTime",
                                                   "badPwdCount",
                                                   "cn",
                                                   "distinguishedName",
                                                   "dSCorePropagationData",
                                                   "lastLogoff",
                                                   "lastLogon",
                                                   "lastLogonTimestamp",
                                                   "lockoutTime",
                                                   "logonCount",
                                                   "memberOf",
                                                   "name",
                                                   "objectGUID",
                                                   "objectSid",
                                                   "pwdLastSet",
                                                   "sAMAccountName",
                                                   "userPrincipalName",
                                                   "uSNChanged",
                                                   "uSNCreated",
                                                   "whenChanged",
                                                   "whenCreated",
                                                   "LastLogin",
                                                   "BadPasswordAttempts",
                                                   "PasswordExpired"};

bool is_own(std::string_view attribute) {
  return std::any_of(kOwn.begin(), kOwn.end(),
                     [&](std::string_view one) { return base::equals_fold(one, attribute); });
}

std::string joined(const std::vector<std::string>& values) {
  std::string text;
  for (const std::string& value : values)
    text += (text.empty() ? "" : "; ") + value;
  return text;
}

/// The attributes by their folded names.
std::map<std::string, ReadAttribute> attributes_of(const AccountDomain& domain, const ObjectPtr& account,
                                                   bool with_own) {
  std::map<std::string, ReadAttribute> out;
  for (ReadAttribute& one : all_attributes(domain, account)) {
    if (with_own || !is_own(one.name))
      out.emplace(base::upper(one.name), std::move(one));
  }
  return out;
}

std::set<std::string> groups_of(const ObjectPtr& account) {
  std::set<std::string> names;
  for (const ObjectPtr& group : account->Groups())
    names.insert(platform::plain_name(group->Name()));
  return names;
}

void add_groups(const ObjectPtr& first, const ObjectPtr& second, std::vector<Difference>& out) {
  const std::set<std::string> a = groups_of(first);
  const std::set<std::string> b = groups_of(second);
  std::vector<std::string> different;
  std::set_symmetric_difference(a.begin(), a.end(), b.begin(), b.end(), std::back_inserter(different));
  for (const std::string& group : different)
    out.push_back({"group", a.contains(group) ? group : "", b.contains(group) ? group : ""});
}

}  // namespace

std::vector<Difference> user_differences(const AccountDomain& domain, const ObjectPtr& first,
                                         const ObjectPtr& second, bool with_own) {
  std::vector<Difference> out;
  if (domain.active_directory && !base::equals_fold(first->Parent(), second->Parent())) {
    const std::size_t prefix = ldap_path(domain, {}).size() + 1;
    out.push_back({"ou", first->Parent().substr(prefix), second->Parent().substr(prefix)});
  }
  add_groups(first, second, out);
  const auto a = attributes_of(domain, first, with_own);
  const auto b = attributes_of(domain, second, with_own);
  std::map<std::string, Difference> attributes;
  for (const auto& [key, one] : a) {
    const auto other = b.find(key);
    Difference difference{one.name, joined(one.values), other == b.end() ? "" : joined(other->second.values)};
    if (difference.first != difference.second)
      attributes.emplace(key, std::move(difference));
  }
  for (const auto& [key, one] : b) {
    if (!a.contains(key))
      attributes.emplace(key, Difference{one.name, "", joined(one.values)});
  }
  for (auto& [key, difference] : attributes)
    out.push_back(std::move(difference));
  return out;
}

}  // namespace twk::directory
