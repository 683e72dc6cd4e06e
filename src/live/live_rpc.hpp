#pragma once

#include <map>
#include <memory>
#include <string>
#include <string_view>

#include "live/account_service.hpp"
#include "live/live_shares.hpp"
#include "live/net_api.hpp"
#include "live/server_service.hpp"

namespace twk::live {

/// The remote services of a domain's servers, each opened when it is first asked for and kept.
class LiveRpc {
 public:
  explicit LiveRpc(LiveSettings settings);

  /// A server's name folds case and may have two backslashes in front.
  ServerService& shares(std::string_view server);
  LiveShares& share_store(std::string_view server);
  AccountService& accounts(std::string_view server);
  NetApi& net_api() { return net_api_; }

 private:
  LiveSettings settings_;
  NetApi net_api_;
  std::map<std::string, std::unique_ptr<ServerService>> shares_;
  std::map<std::string, std::unique_ptr<LiveShares>> share_stores_;
  std::map<std::string, std::unique_ptr<AccountService>> accounts_;
};

}  // namespace twk::live
