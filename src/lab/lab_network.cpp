#include "lab/lab_network.hpp"

#include "lab/errors.hpp"
#include "lab/terminal_settings.hpp"

namespace twk::lab {

namespace {

[[noreturn]] void not_yet() {
  raise(ads_error::kNotImplementedByProvider, "The lab does not do that");
}

void require_controller(const LabDomain& domain, std::string_view server) {
  const std::string_view name = server.starts_with("\\\\") ? server.substr(2) : server;
  if (!is_domain_server(domain, name)) {
    raise(platform::network_error::kBadNetPath, "No domain controller answers as " + std::string(server));
  }
}

}  // namespace

std::string LabNetwork::NetGetDCName(std::string_view /*server*/, std::string_view domain) {
  if (!domain.empty() && !is_domain_name(domain_, domain)) {
    raise(platform::network_error::kControllerNotFound,
          "There is no domain controller for " + std::string(domain));
  }
  return "\\\\" + domain_.config.controller;
}

void LabNetwork::NetShareAdd(std::string_view, const platform::ShareInfo502&) {
  not_yet();
}
platform::ShareInfo502 LabNetwork::NetShareGetInfo(std::string_view, std::string_view) {
  not_yet();
}
std::vector<platform::ShareInfo502> LabNetwork::NetShareEnum(std::string_view) {
  not_yet();
}
void LabNetwork::NetShareDel(std::string_view, std::string_view) {
  not_yet();
}
void LabNetwork::WTSSetUserConfig(std::string_view server, std::string_view user,
                                  platform::WtsConfigClass setting, const platform::WtsConfigValue& value) {
  require_controller(domain_, server);
  set_terminal_setting(domain_, user, setting, value);
}
platform::WtsConfigValue LabNetwork::WTSQueryUserConfig(std::string_view server, std::string_view user,
                                                        platform::WtsConfigClass setting) {
  require_controller(domain_, server);
  return query_terminal_setting(domain_, user, setting);
}

}  // namespace twk::lab
