#include "ads/account_names.hpp"

#include <vector>

#include "base/text.hpp"

namespace twk::ads {
namespace {

using platform::AccountSid;
using platform::Sid;

constexpr std::string_view kNtAuthority = "NT AUTHORITY";
constexpr std::string_view kBuiltin = "BUILTIN";

struct WellKnown {
  std::string_view name;
  std::string_view domain;
  Sid sid;
};

/// Names that every server knows, [MS-DTYP] 2.4.2.4.
const std::vector<WellKnown>& well_known_accounts() {
  static const std::vector<WellKnown> accounts = {
      {"Everyone", "", platform::well_known::everyone()},
      {"CREATOR OWNER", "", platform::well_known::creator_owner()},
      {"CREATOR GROUP", "", platform::well_known::creator_group()},
      {"SYSTEM", kNtAuthority, platform::well_known::local_system()},
      {"Authenticated Users", kNtAuthority, platform::well_known::authenticated_users()},
      {"NETWORK", kNtAuthority, Sid(5, {2})},
      {"INTERACTIVE", kNtAuthority, Sid(5, {4})},
      {"Administrators", kBuiltin, platform::well_known::administrators()},
      {"Users", kBuiltin, platform::well_known::users()},
      {"Guests", kBuiltin, Sid(5, {32, 546})},
      {"Power Users", kBuiltin, Sid(5, {32, 547})},
      {"Backup Operators", kBuiltin, Sid(5, {32, 551})}};
  return accounts;
}

}  // namespace

AccountName split_account_name(std::string_view account) {
  const std::size_t slash = account.find('\\');
  if (slash == base::npos)
    return {{}, account};
  return {account.substr(0, slash), account.substr(slash + 1)};
}

std::string_view without_backslashes(std::string_view server) {
  if (server.starts_with("\\\\"))
    server.remove_prefix(2);
  return server;
}

std::optional<AccountSid> well_known_account(const AccountName& wanted) {
  for (const WellKnown& account : well_known_accounts()) {
    const bool domain_fits = wanted.domain.empty() || base::equals_fold(wanted.domain, account.domain);
    if (domain_fits && base::equals_fold(wanted.name, account.name))
      return AccountSid{account.sid, std::string(account.domain)};
  }
  return std::nullopt;
}

std::optional<std::string> well_known_text(const Sid& sid) {
  for (const WellKnown& account : well_known_accounts()) {
    if (account.sid == sid)
      return account.domain.empty() ? std::string(account.name)
                                    : std::string(account.domain) + "\\" + std::string(account.name);
  }
  return std::nullopt;
}

}  // namespace twk::ads
