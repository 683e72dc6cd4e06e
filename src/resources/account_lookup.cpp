#include "resources/account_lookup.hpp"

#include "base/errors.hpp"
#include "base/text.hpp"
#include "session/session.hpp"

namespace twk::resources {

std::string server_for_accounts(session::Session& session) {
  if (session::is_active_directory(session))
    return {};
  std::string controller;
  base::Trap trap;
  trap([&] { controller = session.platform.network.NetGetDCName("", session.NTDomainName); });
  return controller.starts_with("\\\\") ? controller.substr(2) : controller;
}

std::string fallback_server(const session::Session& session) {
  if (session::is_active_directory(session))
    return session.DnsServerName;
  constexpr std::size_t kBehindSlashes = 3;
  return std::string(base::mid(session.platform.environment.variable("LOGONSERVER"), kBehindSlashes));
}

}  // namespace twk::resources
