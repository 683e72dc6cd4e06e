#pragma once

#include <string>
#include <string_view>
#include <utility>

#include "live/rpc/rpc_pipe.hpp"

namespace twk::live {

/// What a controller knows about domains, through its logon service, [MS-NRPC] 3.5.4.3.
class LogonService {
 public:
  LogonService(std::shared_ptr<Credentials> credentials, std::string_view server)
      : pipe_(std::move(credentials), server, RpcInterface::kLogon) {}
  explicit LogonService(RpcPipe pipe) : pipe_(std::move(pipe)) {}

  /// "\\\\DC1": the primary controller of a domain, by its NetBIOS name; of the server's own when that is
  /// empty. Raises kControllerNotFound, and what `RpcPipe` raises.
  std::string get_dc_name(std::string_view domain);

 private:
  RpcPipe pipe_;
};

}  // namespace twk::live
