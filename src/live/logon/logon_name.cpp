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

std::string kerberos_name(const LiveSettings& settings, std::string_view netbios) {
  const bool has_realm = settings.domain.find('.') != base::npos;
  if (!has_realm || settings.user.empty() || settings.user.find('=') != base::npos)
    return {};
  const auto [user, domain] = windows_logon(settings);
  if (domain.empty()) {
    const std::size_t at = user.rfind('@');
    return user.substr(0, at) + base::upper(std::string_view(user).substr(at));
  }
  const bool own = base::equals_fold(domain, settings.domain) || base::equals_fold(domain, netbios);
  return own ? user + "@" + base::upper(settings.domain) : std::string();
}

std::string bind_name(const LiveSettings& settings) {
  if (settings.user.find('=') != base::npos)
    return settings.user;
  const auto [user, domain] = windows_logon(settings);
  const bool is_dns_name = domain.find('.') != base::npos;
  return is_dns_name ? user + "@" + domain : WindowsLogon{user, domain}.text();
}

}  // namespace twk::live
