#include "live/account_sid.hpp"

namespace twk::live {
namespace {

AccountService& accounts_of(LiveDomain& domain) {
  return domain.rpc().accounts(domain.controller());
}

}  // namespace

std::optional<platform::Sid> find_account_sid(LiveDomain& domain, std::string_view name) {
  if (domain.has_directory()) {
    const auto entry = domain.find_account(name, {"objectSid"});
    const std::string bytes = entry ? entry->first("objectSid") : std::string();
    return platform::Sid::decode(base::Bytes(bytes.begin(), bytes.end()));
  }
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

}  // namespace twk::live
