#pragma once

#include "lab/domain/lab_domain.hpp"
#include "lab/services/process_identity.hpp"
#include "platform/network.hpp"

namespace twk::lab {

/// Knows one domain and its controller, and the lab's file servers.
class LabNetwork final : public platform::Network {
 public:
  LabNetwork(LabDomain& domain, ProcessIdentity& identity) : domain_(domain), identity_(identity) {}
  /// The controller answers, whichever `server` is named; an empty domain is the lab's.
  std::string NetGetDCName(std::string_view server, std::string_view domain) override;

  void NetShareAdd(std::string_view server, const platform::ShareInfo502& share) override;
  platform::ShareInfo502 NetShareGetInfo(std::string_view server, std::string_view name) override;
  std::vector<platform::ShareInfo502> NetShareEnum(std::string_view server) override;
  void NetShareDel(std::string_view server, std::string_view name) override;

  void WTSSetUserConfig(std::string_view server, std::string_view user, platform::WtsConfigClass setting,
                        const platform::WtsConfigValue& value) override;
  platform::WtsConfigValue WTSQueryUserConfig(std::string_view server, std::string_view user,
                                              platform::WtsConfigClass setting) override;

 private:
  FileServer& require_server(std::string_view name);
  /// Only administrators may manage shares.
  void require_administrator();

  LabDomain& domain_;
  ProcessIdentity& identity_;
};

}  // namespace twk::lab
