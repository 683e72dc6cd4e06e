#include "live/domain/live_terminal_settings.hpp"

#include "ads/account_names.hpp"
#include "base/errors.hpp"
#include "base/text.hpp"
#include "live/domain/live_object.hpp"
#include "platform/user_parameters.hpp"

namespace twk::live {
namespace {

using platform::UserParameters;

constexpr const char* kAttribute = "userParameters";

[[noreturn]] void no_user(std::string_view name) {
  base::raise(platform::network_error::kUserNotFound, "The domain has no user " + std::string(name));
}

SamAccount require_user(AccountService& accounts, std::string_view name) {
  auto account = accounts.find(name);
  if (!account || account->kind != SamAccount::Kind::kUser)
    no_user(name);
  return *std::move(account);
}

/// The server whose directory to ask; empty for the controller, also by its short name: its connection
/// exists.
std::string_view directory_server(LiveDomain& domain, std::string_view server) {
  const std::string_view name = ads::without_backslashes(server);
  const std::string& controller = domain.controller();
  const bool own = base::equals_fold(name, controller) ||
                   base::equals_fold(name, std::string_view(controller).substr(0, controller.find('.')));
  return own ? std::string_view{} : name;
}

struct StoredParameters {
  std::string dn;
  base::Bytes bytes;
};

/// Read from that server's directory.
StoredParameters read_entry(LiveDomain& domain, std::string_view server, std::string_view user) {
  const auto entry = domain.find_account(user, {kAttribute, "objectClass"}, directory_server(domain, server));
  if (!entry || entry->first("objectClass").empty() || class_of(*entry) == "group")
    no_user(user);
  return {entry->dn, platform::user_parameters_bytes(entry->first(kAttribute))};
}

base::Bytes with_setting(const base::Bytes& before, platform::WtsConfigClass setting,
                         const platform::WtsConfigValue& value) {
  UserParameters parameters = UserParameters::decode(before);
  platform::set_wts_setting(parameters, setting, value);
  return parameters.encode();
}

/// Over LDAP, or by the account service where the server refuses that.
void write_entry(LiveDomain& domain, std::string_view server, std::string_view user, const std::string& dn,
                 const base::Bytes& bytes) {
  base::Trap trap;
  trap([&] {
    domain.ldap(directory_server(domain, server))
        .modify(dn, {{LdapChangeKind::kReplace, kAttribute, {platform::user_parameters_text(bytes)}}});
  });
  if (trap.number() == 0)
    return;
  if (trap.number() != platform::ads_error::kConstraint && trap.number() != platform::ads_error::kUnwilling)
    base::raise(trap.number(), trap.description());
  AccountService& accounts = domain.rpc().accounts(server);
  SamUserChange change;
  change.parameters = bytes;
  accounts.write_user(require_user(accounts, user).rid, change);
}

}  // namespace

platform::WtsConfigValue query_terminal_setting(LiveDomain& domain, std::string_view server,
                                                std::string_view user, platform::WtsConfigClass setting) {
  if (domain.has_directory()) {
    const StoredParameters stored = read_entry(domain, server, user);
    return platform::wts_setting(UserParameters::decode(stored.bytes), setting);
  }
  AccountService& accounts = domain.rpc().accounts(server);
  const SamUser stored = accounts.read_user(require_user(accounts, user).rid);
  return platform::wts_setting(UserParameters::decode(stored.parameters), setting);
}

void set_terminal_setting(LiveDomain& domain, std::string_view server, std::string_view user,
                          platform::WtsConfigClass setting, const platform::WtsConfigValue& value) {
  const auto changed = [&](const base::Bytes& before) { return with_setting(before, setting, value); };
  if (domain.has_directory()) {
    const StoredParameters stored = read_entry(domain, server, user);
    const base::Bytes after = changed(stored.bytes);
    if (after != stored.bytes)
      write_entry(domain, server, user, stored.dn, after);
    return;
  }
  AccountService& accounts = domain.rpc().accounts(server);
  const std::uint32_t rid = require_user(accounts, user).rid;
  const base::Bytes before = accounts.read_user(rid).parameters;
  SamUserChange change;
  change.parameters = changed(before);
  if (*change.parameters != before)
    accounts.write_user(rid, change);
}

void foresee_terminal_setting(LiveDomain& domain, std::string_view server, std::string_view user,
                              platform::WtsConfigClass setting, const platform::WtsConfigValue& value) {
  if (!domain.has_directory()) {
    static_cast<void>(query_terminal_setting(domain, server, user, setting));
    return;
  }
  const StoredParameters stored = read_entry(domain, server, user);
  if (with_setting(stored.bytes, setting, value) != stored.bytes)
    require_attribute_right(domain, stored.dn, kAttribute);
}

}  // namespace twk::live
