#include "lab/domain/account_identity.hpp"

#include <algorithm>
#include <array>
#include <set>

#include "ads/account_names.hpp"
#include "base/text.hpp"
#include "lab/domain/membership.hpp"
#include "lab/store/errors.hpp"

namespace twk::lab {
namespace {

using platform::AccountSid;
using platform::Sid;
namespace security_error = platform::security_error;

std::optional<Sid> sid_of(const Entry& entry) {
  const auto bytes = entry.value("objectSid");
  return bytes ? Sid::decode(base::Bytes(bytes->begin(), bytes->end())) : std::nullopt;
}

std::string_view bytes_of(const Sid& sid) {
  return {reinterpret_cast<const char*>(sid.bytes().data()), sid.size()};  // NOLINT: bytes as bytes
}

const Entry* find_in_domain(const LabDomain& domain, std::string_view name) {
  if (const Entry* const entry = domain.store.find_account(name))
    return entry;
  return name.find('@') == base::npos ? nullptr : domain.store.find_principal(name);
}

std::optional<AccountSid> domain_account(const LabDomain& domain, const ads::AccountName& wanted) {
  if (!wanted.domain.empty() && !is_domain_name(domain, wanted.domain))
    return std::nullopt;
  const Entry* const entry = find_in_domain(domain, wanted.name);
  const auto sid = entry == nullptr ? std::nullopt : sid_of(*entry);
  if (!sid)
    return std::nullopt;
  return AccountSid{*sid, domain.config.netbios};
}

std::optional<AccountSid> server_account(const FileServer& server, const ads::AccountName& wanted) {
  if (!wanted.domain.empty() && !base::equals_fold(wanted.domain, server.name()))
    return std::nullopt;
  const auto sid = server.find_account(wanted.name);
  return sid ? std::optional(AccountSid{*sid, server.name()}) : std::nullopt;
}

/// The server, or null for the domain's controller. Raises kServerUnavailable.
FileServer* require_server(LabDomain& domain, std::string_view name) {
  if (is_domain_server(domain, name))
    return nullptr;
  FileServer* const server = domain.servers.find(name);
  if (server == nullptr)
    raise(security_error::kServerUnavailable, "The server " + std::string(name) + " does not answer");
  return server;
}

void add_groups(LabDomain& domain, const Entry& member, std::set<Sid>& identifiers) {
  std::vector<const Entry*> groups;
  if (const Entry* const group = primary_group(domain, member))
    groups.push_back(group);
  for (const std::string& dn : member.values("memberOf")) {
    if (const Entry* const group = domain.store.find(dn))
      groups.push_back(group);
  }
  for (const Entry* const group : groups) {
    const auto sid = sid_of(*group);
    if (sid && identifiers.insert(*sid).second)
      add_groups(domain, *group, identifiers);
  }
}

}  // namespace

AccountSid look_up_account(LabDomain& domain, std::string_view server_name, std::string_view account) {
  domain.store.refresh();
  const ads::AccountName wanted = ads::split_account_name(account);
  FileServer* const server = require_server(domain, ads::without_backslashes(server_name));
  std::optional<AccountSid> found = ads::well_known_account(wanted);
  if (!found && server != nullptr)
    found = server_account(*server, wanted);
  if (!found && (server == nullptr || server->is_domain_member()))
    found = domain_account(domain, wanted);
  if (!found) {
    raise(security_error::kNoneMapped,
          "No mapping between account names and security IDs was done: " + std::string(account));
  }
  return *std::move(found);
}

std::string account_text(LabDomain& domain, std::string_view server_name, const Sid& sid) {
  domain.store.refresh();
  if (const auto text = ads::well_known_text(sid))
    return *text;
  FileServer* const server = require_server(domain, ads::without_backslashes(server_name));
  if (server != nullptr) {
    if (const auto name = server->account_name(sid))
      return server->name() + "\\" + *name;
    if (!server->is_domain_member())
      return sid.text();
  }
  const Entry* const entry = domain.store.find_sid(bytes_of(sid));
  const auto name = entry == nullptr ? std::nullopt : entry->value("sAMAccountName");
  return name ? domain.config.netbios + "\\" + *name : sid.text();
}

std::vector<Sid> logon_identifiers(LabDomain& domain, const Sid& account) {
  domain.store.refresh();
  std::set<Sid> identifiers = {account, platform::well_known::everyone(),
                               platform::well_known::authenticated_users()};
  if (const Entry* const entry = domain.store.find_sid(bytes_of(account)))
    add_groups(domain, *entry, identifiers);
  return {identifiers.begin(), identifiers.end()};
}

}  // namespace twk::lab
