#pragma once

#include "base/errors.hpp"
#include "platform/network.hpp"

namespace twk::test {

/// A network that makes no shares when the test says so.
class FailingNetwork final : public platform::Network {
 public:
  explicit FailingNetwork(platform::Network& real) : real_(real) {}

  std::string refused_share;     ///< `NetShareAdd` of this one raises 5
  std::string server_of_others;  ///< this server says beforehand that it would refuse shares

  std::string NetGetDCName(std::string_view server, std::string_view domain) override {
    return real_.NetGetDCName(server, domain);
  }
  void NetShareAdd(std::string_view server, const platform::ShareInfo502& share) override {
    if (share.shi502_netname == refused_share)
      base::raise(5, "Access is denied");
    real_.NetShareAdd(server, share);
  }
  void require_share_rights(std::string_view server) override {
    if (server == server_of_others)
      base::raise(5, "The shares of " + server_of_others + " are others' business");
  }
  platform::ShareInfo502 NetShareGetInfo(std::string_view server, std::string_view name) override {
    return real_.NetShareGetInfo(server, name);
  }
  std::vector<platform::ShareInfo502> NetShareEnum(std::string_view server) override {
    return real_.NetShareEnum(server);
  }
  void NetShareDel(std::string_view server, std::string_view name) override {
    real_.NetShareDel(server, name);
  }
  void WTSSetUserConfig(std::string_view server, std::string_view user, platform::WtsConfigClass setting,
                        const platform::WtsConfigValue& value) override {
    real_.WTSSetUserConfig(server, user, setting, value);
  }
  platform::WtsConfigValue WTSQueryUserConfig(std::string_view server, std::string_view user,
                                              platform::WtsConfigClass setting) override {
    return real_.WTSQueryUserConfig(server, user, setting);
  }

 private:
  platform::Network& real_;
};

}  // namespace twk::test
