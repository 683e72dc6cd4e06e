#pragma once

#include <string>
#include <string_view>

namespace twk::platform {

/// The network look-ups of netapi32.
class Network {
 public:
  virtual ~Network() = default;

  /// The primary controller of a domain, given by its DNS or NetBIOS name, with two backslashes in front
  /// ("\\DC1"). An empty `server` means this machine. Raises NERR_DCNotFound (2453) when there is none.
  virtual std::string NetGetDCName(std::string_view server, std::string_view domain) = 0;
};

}  // namespace twk::platform
