#pragma once

#include <string_view>

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
  /// Raises what `Add` and `Remove` would raise for want of a right.
  virtual void foresee_members() {}
  /// Raises what `MoveHere` would raise for want of a right.
  virtual void foresee_move(std::string_view source) { static_cast<void>(source); }
};

}  // namespace twk::platform
