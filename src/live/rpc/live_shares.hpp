#pragma once

#include "ads/share_object.hpp"
#include "live/rpc/server_service.hpp"

namespace twk::live {

/// The shares of a real server, for the share objects. The server's numbers become those of the directory:
/// 0x80070000 and the number of [MS-ERREF] 2.2.
class LiveShares final : public ads::ShareStore {
 public:
  explicit LiveShares(ServerService& service) : service_(service) {}

  std::vector<ads::FileShare> all() override;
  std::optional<ads::FileShare> find(std::string_view name) override;
  /// Changes comment and number of users of an existing share. Raises kUnwilling for another folder.
  void store(const ads::FileShare& share, bool replace) override;
  void remove(std::string_view name) override;

 private:
  ServerService& service_;
};

}  // namespace twk::live
