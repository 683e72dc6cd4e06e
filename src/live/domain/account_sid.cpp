#include "live/domain/account_sid.hpp"

namespace twk::live {
namespace {

AccountService& accounts_of(LiveDomain& domain) {
  return domain.rpc().accounts(domain.controller());
}

std::optional<platform::Sid> decode_sid(const std::string& bytes) {
  return platform::Sid::decode(base::Bytes(bytes.begin(), bytes.end()));
}

}  // namespace

std::optional<platform::Sid> find_account_sid(LiveDomain& domain, std::string_view name) {
  if (domain.has_directory())
    return domain.sid_of_account(name);
  const auto account = accounts_of(domain).find(name);
  return account ? std::optional(accounts_of(domain).sid_of(*account)) : std::nullopt;
}

std::optional<std::string> find_account_name(LiveDomain& domain, const platform::Sid& sid) {
  if (domain.has_directory()) {
    const auto entry = domain.find_sid(sid, {"sAMAccountName"});
    const std::string name = entry ? entry->first("sAMAccountName") : std::string();
    return name.empty() ? std::nullopt : std::optional(name);
  }
  auto account = accounts_of(domain).find(sid);
  return account ? std::optional(std::move(account->name)) : std::nullopt;
}

std::vector<platform::Sid> find_identifiers(LiveDomain& domain, const platform::Sid& sid) {
  if (!domain.has_directory()) {
    const auto account = accounts_of(domain).find(sid);
    return account ? accounts_of(domain).identifiers_of(*account) : std::vector<platform::Sid>{};
  }
  const auto entry = domain.find_sid(sid, {"1.1"});
  if (!entry)
    return {};
  std::vector<platform::Sid> identifiers = {sid};
  // Computed by the server, and returned for a single entry only, [MS-ADTS] 3.1.1.4.5.19.
  const LdapEntry groups = domain.ldap().read(entry->dn, {"tokenGroups"});
  if (const auto* const values = groups.find("tokenGroups")) {
    for (const std::string& bytes : *values) {
      if (const auto group = decode_sid(bytes))
        identifiers.push_back(*group);
    }
  }
  return identifiers;
}

}  // namespace twk::live
