#include "live/live_network.hpp"

#include "base/errors.hpp"
#include "live/live_terminal_settings.hpp"
#include "platform/directory.hpp"

namespace twk::live {
namespace {

namespace network_error = platform::network_error;

/// A pipe that broke twice is a server that is not there.
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
  return as_network_call([&] {
    const std::string_view name = without_backslashes(server);
    const bool own = domain.empty() || domain_.is_domain_name(domain);
    return domain_.rpc().net_api().get_dc_name(name.empty() ? domain_.controller() : std::string(name),
                                               own ? domain_.netbios() : std::string(domain));
  });
}

void LiveNetwork::NetShareAdd(std::string_view server, const platform::ShareInfo502& share) {
  as_network_call([&] { domain_.rpc().shares(server).add(share); });
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

}  // namespace twk::live
