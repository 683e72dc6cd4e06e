#include "live/domain/live_network.hpp"

#include "ads/account_names.hpp"
#include "base/errors.hpp"
#include "live/domain/live_terminal_settings.hpp"
#include "platform/directory.hpp"

namespace twk::live {
namespace {

namespace network_error = platform::network_error;

/// A pipe that broke twice means a server that is gone.
template <typename Call>
auto as_network_call(Call&& call) {
  try {
    return std::forward<Call>(call)();
  } catch (const base::RuntimeError& failure) {
    const bool lost = failure.number() == kRpcLost || failure.number() == platform::ads_error::kServerDown;
    base::raise(lost ? network_error::kBadNetPath : failure.number(), failure.description());
  }
}

}  // namespace

std::string LiveNetwork::NetGetDCName(std::string_view server, std::string_view domain) {
  constexpr std::chrono::minutes kTakenForTrue{1};
  const auto now = std::chrono::steady_clock::now();
  Told& told = told_[{std::string(server), std::string(domain)}];
  if (told.controller.empty() || now - told.at > kTakenForTrue)
    told = {ask_for_controller(server, domain), now};
  return told.controller;
}

std::string LiveNetwork::ask_for_controller(std::string_view server, std::string_view domain) {
  return as_network_call([&] {
    const bool own = domain.empty() || domain_.is_domain_name(domain);
    if (own && server.empty() && domain_.has_directory()) {
      if (const std::string primary = domain_.primary_controller(); !primary.empty())
        return "\\\\" + primary;
    }
    LogonService& logon =
        domain_.rpc().logon(server.empty() ? std::string_view(domain_.controller()) : server);
    base::Trap trap;
    std::string name;
    if (trap([&] { name = logon.get_dc_name(own ? std::string_view(domain_.netbios()) : domain); }))
      return name;
    // A Samba controller of an NT4-style domain looks for itself by NetBIOS alone, and may not hear itself.
    if (own && !domain_.has_directory() && trap.number() == network_error::kControllerNotFound)
      return "\\\\" + std::string(ads::without_backslashes(server.empty() ? domain_.controller() : server));
    base::raise(trap.number(), trap.description());
  });
}

void LiveNetwork::NetShareAdd(std::string_view server, const platform::ShareInfo502& share) {
  as_network_call([&] { domain_.rpc().shares(server).add(share); });
}

void LiveNetwork::require_share_rights(std::string_view server) {
  as_network_call([&] { domain_.rpc().shares(server).require_rights(); });
}

platform::ShareInfo502 LiveNetwork::NetShareGetInfo(std::string_view server, std::string_view name) {
  return as_network_call([&] { return domain_.rpc().shares(server).get(name); });
}

std::vector<platform::ShareInfo502> LiveNetwork::NetShareEnum(std::string_view server) {
  return as_network_call([&] { return domain_.rpc().shares(server).all(); });
}

void LiveNetwork::NetShareDel(std::string_view server, std::string_view name) {
  as_network_call([&] { domain_.rpc().shares(server).remove(name); });
}

void LiveNetwork::WTSSetUserConfig(std::string_view server, std::string_view user,
                                   platform::WtsConfigClass setting, const platform::WtsConfigValue& value) {
  as_network_call([&] { set_terminal_setting(domain_, server, user, setting, value); });
}

platform::WtsConfigValue LiveNetwork::WTSQueryUserConfig(std::string_view server, std::string_view user,
                                                         platform::WtsConfigClass setting) {
  return as_network_call([&] { return query_terminal_setting(domain_, server, user, setting); });
}

void LiveNetwork::foresee_user_config(std::string_view server, std::string_view user,
                                      platform::WtsConfigClass setting,
                                      const platform::WtsConfigValue& value) {
  as_network_call([&] { foresee_terminal_setting(domain_, server, user, setting, value); });
}

}  // namespace twk::live
