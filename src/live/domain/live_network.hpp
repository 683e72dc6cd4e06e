#pragma once

#include <chrono>
#include <map>
#include <string>
#include <utility>

#include "live/domain/live_domain.hpp"
#include "platform/foreseen_write.hpp"
#include "platform/network.hpp"

namespace twk::live {

/// The network of a real domain: its servers' shares and its users' terminal-server settings, by remote calls
/// with the logon of the domain. Besides the seam's numbers a call may raise 1326, a wrong logon.
class LiveNetwork final : public platform::Network, public platform::ForeseenUserConfig {
 public:
  explicit LiveNetwork(LiveDomain& domain) : domain_(domain) {}

  /// Without a server, asks the domain's controller; without a domain, asks about the server's own. An answer
  /// is kept for a minute, since an import asks for each user.
  std::string NetGetDCName(std::string_view server, std::string_view domain) override;

  /// A server may have its own number for a missing folder: Samba returns that of its share command.
  void NetShareAdd(std::string_view server, const platform::ShareInfo502& share) override;
  void require_share_rights(std::string_view server) override;
  platform::ShareInfo502 NetShareGetInfo(std::string_view server, std::string_view name) override;
  std::vector<platform::ShareInfo502> NetShareEnum(std::string_view server) override;
  void NetShareDel(std::string_view server, std::string_view name) override;

  /// In a directory the attribute is written over LDAP, or by the account service where the server accepts it
  /// only there, as Samba does.
  void WTSSetUserConfig(std::string_view server, std::string_view user, platform::WtsConfigClass setting,
                        const platform::WtsConfigValue& value) override;
  platform::WtsConfigValue WTSQueryUserConfig(std::string_view server, std::string_view user,
                                              platform::WtsConfigClass setting) override;
  void foresee_user_config(std::string_view server, std::string_view user, platform::WtsConfigClass setting,
                           const platform::WtsConfigValue& value) override;

 private:
  /// What one server said about one domain.
  struct Told {
    std::string controller;
    std::chrono::steady_clock::time_point at;
  };

  std::string ask_for_controller(std::string_view server, std::string_view domain);

  LiveDomain& domain_;
  std::map<std::pair<std::string, std::string>, Told> told_;
};

}  // namespace twk::live
