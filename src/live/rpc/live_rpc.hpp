#pragma once

#include <map>
#include <memory>
#include <string>
#include <string_view>

#include "live/rpc/account_service.hpp"
#include "live/rpc/live_shares.hpp"
#include "live/rpc/logon_service.hpp"
#include "live/rpc/server_service.hpp"

namespace twk::live {

/// The remote services of a domain's servers, each opened on first use and kept.
class LiveRpc {
 public:
  explicit LiveRpc(std::shared_ptr<Credentials> credentials) : credentials_(std::move(credentials)) {}

  /// A server's name folds case and may begin with two backslashes.
  ServerService& shares(std::string_view server);
  LiveShares& share_store(std::string_view server);
  AccountService& accounts(std::string_view server);
  LogonService& logon(std::string_view server);

 private:
  std::shared_ptr<Credentials> credentials_;
  std::map<std::string, std::unique_ptr<ServerService>> shares_;
  std::map<std::string, std::unique_ptr<LiveShares>> share_stores_;
  std::map<std::string, std::unique_ptr<AccountService>> accounts_;
  std::map<std::string, std::unique_ptr<LogonService>> logons_;
};

}  // namespace twk::live
