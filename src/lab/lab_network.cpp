#include "lab/lab_network.hpp"

#include "lab/errors.hpp"

namespace twk::lab {

namespace {

[[noreturn]] void not_yet() {
  raise(ads_error::kNotImplementedByProvider, "The lab does not do that");
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
void LabNetwork::WTSSetUserConfig(std::string_view, std::string_view, platform::WtsConfigClass,
                                  const platform::WtsConfigValue&) {
  not_yet();
}
platform::WtsConfigValue LabNetwork::WTSQueryUserConfig(std::string_view, std::string_view,
                                                        platform::WtsConfigClass) {
  not_yet();
}

}  // namespace twk::lab
