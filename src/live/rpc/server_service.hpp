#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "live/rpc/rpc_pipe.hpp"
#include "platform/network.hpp"

namespace twk::live {

/// The shares of one server, through its server service, [MS-SRVS] 3.1.4. Each call raises what `RpcPipe`
/// raises, and the server's own number.
class ServerService {
 public:
  ServerService(std::shared_ptr<Credentials> credentials, std::string_view server)
      : pipe_(std::move(credentials), server, RpcInterface::kServerService) {}
  explicit ServerService(RpcPipe pipe) : pipe_(std::move(pipe)) {}

  void open() { pipe_.open(); }
  /// Raises kDuplicateShare, kUnknownDirectory, kInvalidName; kAccessDenied also when the server does not
  /// store the share's access list, which would then be open to everyone.
  void add(const platform::ShareInfo502& share);
  /// Makes nothing. Raises kAccessDenied, with the remedy, when the server would refuse to make a share or to
  /// store its access list.
  void require_rights();
  /// Raises kShareNotFound.
  platform::ShareInfo502 get(std::string_view name);
  std::vector<platform::ShareInfo502> all();
  /// Raises kShareNotFound.
  void remove(std::string_view name);
  /// Writes comment and number of users of an existing share. Raises kShareNotFound.
  void change(const platform::ShareInfo502& share);

 private:
  bool has(std::string_view name);
  /// Samba accepts the number of users only with a share's description that has no access list.
  void keep_limit(const platform::ShareInfo502& share, const platform::ShareInfo502& kept);
  /// Samba shows changes only on new connections, and a moment later. Waits two seconds at most.
  void wait_until(std::string_view name, bool there);
  void check(std::uint32_t number, std::string_view name) const;

  RpcPipe pipe_;
};

}  // namespace twk::live
