#pragma once

#include <chrono>
#include <map>
#include <string>
#include <utility>

#include "live/domain/live_domain.hpp"
#include "platform/network.hpp"

namespace twk::live {

/// The network of a real domain: its servers' shares and its users' terminal-server settings, by remote calls
/// with the logon of the domain. Beside the seam's numbers a call may raise 1326, a wrong logon.
class LiveNetwork final : public platform::Network {
 public:
  explicit LiveNetwork(LiveDomain& domain) : domain_(domain) {}

  /// Without a server the domain's controller is asked, without a domain for its own. What was told is taken
  /// for true for a minute: an import asks for each user.
  std::string NetGetDCName(std::string_view server, std::string_view domain) override;

  /// A server may have its own number for a folder that is not there: Samba gives that of its share command.
  void NetShareAdd(std::string_view server, const platform::ShareInfo502& share) override;
  platform::ShareInfo502 NetShareGetInfo(std::string_view server, std::string_view name) override;
  std::vector<platform::ShareInfo502> NetShareEnum(std::string_view server) override;
  void NetShareDel(std::string_view server, std::string_view name) override;

  /// In a directory the attribute is written over LDAP, or by the account service where the server takes it
  /// there alone, as Samba does.
  void WTSSetUserConfig(std::string_view server, std::string_view user, platform::WtsConfigClass setting,
                        const platform::WtsConfigValue& value) override;
  platform::WtsConfigValue WTSQueryUserConfig(std::string_view server, std::string_view user,
                                              platform::WtsConfigClass setting) override;

 private:
  /// What one server told of one domain.
  struct Told {
    std::string controller;
    std::chrono::steady_clock::time_point at;
  };

  std::string ask_for_controller(std::string_view server, std::string_view domain);

  LiveDomain& domain_;
  std::map<std::pair<std::string, std::string>, Told> told_;
};

}  // namespace twk::live
