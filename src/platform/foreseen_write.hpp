#pragma once

#include <string_view>

#include "platform/network.hpp"

namespace twk::platform {

/// What a directory object can say about its next write without making it. Objects that can, derive from it;
/// of others nothing is known before the write.
class ForeseenWrite {
 public:
  virtual ~ForeseenWrite() = default;
  /// Raises what `SetInfo` would raise for the values staged so far, as far as that is known without the
  /// write: names in use, attributes and values that the schema refuses, rights that are missing. Nothing is
  /// changed.
  virtual void foresee_write() = 0;
  /// Raises what `SetPassword` would raise, also for an object that is not stored yet.
  virtual void foresee_password(std::string_view password) = 0;
  /// Raises what `SetPassword` would raise for want of a right, whatever the password.
  virtual void foresee_reset() {}
  /// Raises what `Delete` of this object would raise for want of a right.
  virtual void foresee_deletion() {}
  /// Raises what `Add` and `Remove` would raise for want of a right.
  virtual void foresee_members() {}
  /// Raises what `MoveHere` would raise for want of a right.
  virtual void foresee_move(std::string_view source) { static_cast<void>(source); }
};

/// The same of a network, which of its writes needs rights in the directory.
class ForeseenUserConfig {
 public:
  virtual ~ForeseenUserConfig() = default;
  /// Raises what `WTSSetUserConfig` would raise, as far as that is known without the write.
  virtual void foresee_user_config(std::string_view server, std::string_view user, WtsConfigClass setting,
                                   const WtsConfigValue& value) = 0;
};

}  // namespace twk::platform
