#include "live/rpc/live_rpc.hpp"

#include "ads/account_names.hpp"
#include "base/text.hpp"

namespace twk::live {
namespace {

template <typename Service>
Service& find(std::map<std::string, std::unique_ptr<Service>>& services,
              const std::shared_ptr<Credentials>& credentials, std::string_view server) {
  std::unique_ptr<Service>& service = services[base::upper(ads::without_backslashes(server))];
  if (service == nullptr)
    service = std::make_unique<Service>(credentials, server);
  return *service;
}

}  // namespace

ServerService& LiveRpc::shares(std::string_view server) {
  return find(shares_, credentials_, server);
}

LiveShares& LiveRpc::share_store(std::string_view server) {
  ServerService& service = shares(server);
  std::unique_ptr<LiveShares>& store = share_stores_[base::upper(ads::without_backslashes(server))];
  if (store == nullptr)
    store = std::make_unique<LiveShares>(service);
  return *store;
}

AccountService& LiveRpc::accounts(std::string_view server) {
  return find(accounts_, credentials_, server);
}

LogonService& LiveRpc::logon(std::string_view server) {
  return find(logons_, credentials_, server);
}

}  // namespace twk::live
