#include "live/net_api.hpp"

#include <algorithm>
#include <array>

#include "base/errors.hpp"
#include "base/text.hpp"
#include "live/rpc_pipe.hpp"
#include "live/samba_headers.hpp"
#include "platform/network.hpp"

namespace twk::live {
namespace {

namespace network_error = platform::network_error;

/// Numbers that the calls give for a server that is not there or was lost, [MS-ERREF] 2.2.
bool is_lost(std::uint32_t number) {
  constexpr std::array kUnreachable = {51U, 52U,  53U,   54U,   55U,   59U,   64U,
                                       67U, 121U, 1203U, 1225U, 1231U, 1722U, 1726U};
  return std::find(kUnreachable.begin(), kUnreachable.end(), number) != kUnreachable.end();
}

[[noreturn]] void fail(std::uint32_t number, const std::string& what) {
  base::raise(number, what + ": error " + base::to_text(static_cast<std::int64_t>(number)));
}

}  // namespace

void NetApi::log_on() {
  libnetapi_ctx* context = nullptr;
  const NET_API_STATUS status = libnetapi_init(&context);
  if (status != 0)
    fail(status, "libnetapi does not start");
  if (settings_.logon == LiveSettings::Logon::kTicket) {
    libnetapi_set_use_kerberos(context);
    return;
  }
  const WindowsLogon logon = windows_logon(settings_);
  libnetapi_set_username(context, logon.user.c_str());
  libnetapi_set_password(context, settings_.password.c_str());
  libnetapi_set_workgroup(context, logon.domain.c_str());
}

std::string NetApi::get_dc_name(const std::string& server, const std::string& domain) {
  const WithoutPipeSignal quiet;
  log_on();
  const auto ask = [&](std::uint8_t*& buffer) {
    return NetGetDCName(server.c_str(), domain.empty() ? nullptr : domain.c_str(), &buffer);
  };
  require_listening(server, settings_.timeout_seconds);
  std::uint8_t* buffer = nullptr;
  NET_API_STATUS status = ask(buffer);
  if (is_lost(status))
    status = ask(buffer);
  if (is_lost(status))
    fail(network_error::kBadNetPath, "The network path was not found: " + server);
  if (status == platform::security_error::kAccessDenied)
    fail(status, "The logon to " + server + " failed");
  if (status != 0 || buffer == nullptr)
    base::raise(network_error::kControllerNotFound, "There is no domain controller for " + domain);
  std::string name = reinterpret_cast<const char*>(buffer);
  NetApiBufferFree(buffer);
  return name;
}

void NetApi::set_password(const std::string& server, const std::string& user, const std::string& password) {
  const WithoutPipeSignal quiet;
  log_on();
  require_listening(server, settings_.timeout_seconds);
  USER_INFO_1003 info{.usri1003_password = password.c_str()};
  std::uint32_t wrong_parameter = 0;
  const auto ask = [&] {
    return NetUserSetInfo(server.c_str(), user.c_str(), 1003, reinterpret_cast<std::uint8_t*>(&info),
                          &wrong_parameter);
  };
  NET_API_STATUS status = ask();
  // The same password once more does no harm.
  if (is_lost(status))
    status = ask();
  if (is_lost(status))
    fail(network_error::kBadNetPath, "The network path was not found: " + server);
  if (status != 0)
    fail(status, "The password of " + user + " was not set");
}

}  // namespace twk::live
