#include "live/logon/logon_name.hpp"

#include <string_view>

#include "base/text.hpp"

namespace twk::live {

WindowsLogon windows_logon(const LiveSettings& settings) {
  const std::string_view user = settings.user;
  const std::size_t backslash = user.find('\\');
  if (backslash != base::npos)
    return {std::string(user.substr(backslash + 1)), std::string(user.substr(0, backslash))};
  if (user.find('@') != base::npos)
    return {std::string(user), {}};
  return {std::string(user), settings.domain};
}

std::string bind_name(const LiveSettings& settings) {
  if (settings.user.find('=') != base::npos)
    return settings.user;
  const auto [user, domain] = windows_logon(settings);
  const bool is_dns_name = domain.find('.') != base::npos;
  return is_dns_name ? user + "@" + domain : WindowsLogon{user, domain}.text();
}

}  // namespace twk::live
