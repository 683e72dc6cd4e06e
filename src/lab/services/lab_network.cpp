#include "lab/services/lab_network.hpp"

#include <utility>

#include "lab/services/terminal_settings.hpp"
#include "lab/store/errors.hpp"

namespace twk::lab {

namespace {

using platform::ShareInfo502;
namespace network_error = platform::network_error;

void require_controller(const LabDomain& domain, std::string_view server) {
  const std::string_view name = server.starts_with("\\\\") ? server.substr(2) : server;
  if (!is_domain_server(domain, name)) {
    raise(platform::network_error::kBadNetPath, "No domain controller answers as " + std::string(server));
  }
}

ShareInfo502 to_info(const FileShare& share) {
  ShareInfo502 info;
  info.shi502_netname = share.name;
  info.shi502_type = share.administrative ? platform::kAdministrativeShare : 0;
  info.shi502_remark = share.comment;
  info.shi502_max_uses = share.max_users;
  info.shi502_path = share.path;
  info.shi502_security_descriptor = share.descriptor;
  return info;
}

/// The network calls' numbers for those that the share objects raise.
std::uint32_t network_number(std::uint32_t number) {
  switch (number) {
    case kShareExists:
      return network_error::kDuplicateShare;
    case kShareNotFound:
      return network_error::kShareNotFound;
    case ads_error::kConstraint:
      return network_error::kInvalidName;
    case ads_error::kUnwilling:
      return platform::security_error::kAccessDenied;
    case base::error::kPathNotFound:
      return network_error::kUnknownDirectory;
    default:
      return number;
  }
}

template <typename Call>
void as_network_call(Call&& call) {
  try {
    std::forward<Call>(call)();
  } catch (const base::RuntimeError& failure) {
    raise(network_number(failure.number()), failure.description());
  }
}

}  // namespace

std::string LabNetwork::NetGetDCName(std::string_view /*server*/, std::string_view domain) {
  if (!domain.empty() && !is_domain_name(domain_, domain)) {
    raise(network_error::kControllerNotFound, "There is no domain controller for " + std::string(domain));
  }
  return "\\\\" + domain_.config.controller;
}

FileServer& LabNetwork::require_server(std::string_view name) {
  FileServer* const server = domain_.servers.find(name);
  if (server == nullptr)
    raise(network_error::kBadNetPath, "The network path was not found: " + std::string(name));
  return *server;
}

void LabNetwork::require_administrator() {
  if (!identity_.is_administrator())
    raise(platform::security_error::kAccessDenied, "Access is denied: only administrators may make shares");
}

void LabNetwork::NetShareAdd(std::string_view server, const ShareInfo502& info) {
  FileServer& found = require_server(server);
  require_administrator();
  FileShare share;
  share.name = info.shi502_netname;
  share.path = info.shi502_path;
  share.comment = info.shi502_remark;
  share.max_users = info.shi502_max_uses;
  share.descriptor = info.shi502_security_descriptor;
  as_network_call([&] { found.shares().store(share, false); });
}

ShareInfo502 LabNetwork::NetShareGetInfo(std::string_view server, std::string_view name) {
  const auto share = require_server(server).shares().find(name);
  if (!share)
    raise(network_error::kShareNotFound, "The server has no share " + std::string(name));
  return to_info(*share);
}

std::vector<ShareInfo502> LabNetwork::NetShareEnum(std::string_view server) {
  std::vector<ShareInfo502> all;
  for (const FileShare& share : require_server(server).shares().all())
    all.push_back(to_info(share));
  return all;
}

void LabNetwork::NetShareDel(std::string_view server, std::string_view name) {
  FileServer& found = require_server(server);
  require_administrator();
  as_network_call([&] { found.shares().remove(name); });
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
