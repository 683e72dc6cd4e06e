#include "live/live_rpc.hpp"

#include "base/text.hpp"

namespace twk::live {
namespace {

template <typename Service>
Service& find(std::map<std::string, std::unique_ptr<Service>>& services, const LiveSettings& settings,
              std::string_view server) {
  std::unique_ptr<Service>& service = services[base::upper(without_backslashes(server))];
  if (service == nullptr)
    service = std::make_unique<Service>(settings, server);
  return *service;
}

}  // namespace

LiveRpc::LiveRpc(LiveSettings settings) : settings_(std::move(settings)), net_api_(settings_) {}

ServerService& LiveRpc::shares(std::string_view server) {
  return find(shares_, settings_, server);
}

LiveShares& LiveRpc::share_store(std::string_view server) {
  ServerService& service = shares(server);
  std::unique_ptr<LiveShares>& store = share_stores_[base::upper(without_backslashes(server))];
  if (store == nullptr)
    store = std::make_unique<LiveShares>(service);
  return *store;
}

AccountService& LiveRpc::accounts(std::string_view server) {
  return find(accounts_, settings_, server);
}

}  // namespace twk::live
