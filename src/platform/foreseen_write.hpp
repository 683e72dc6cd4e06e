#pragma once

#include <string_view>

namespace twk::platform {

/// What a directory object can say about its next write without making it. Objects that can, derive from it;
/// of others nothing is known before the write.
class ForeseenWrite {
 public:
  virtual ~ForeseenWrite() = default;
  /// Raises what `SetInfo` would raise for the values staged so far, as far as that is known without the
  /// write: names in use, attributes and values that the schema refuses. Nothing is changed.
  virtual void foresee_write() = 0;
  /// Raises what `SetPassword` would raise, also for an object that is not stored yet.
  virtual void foresee_password(std::string_view password) = 0;
};

}  // namespace twk::platform
