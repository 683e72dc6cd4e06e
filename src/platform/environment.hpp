#pragma once

#include <string>
#include <string_view>

namespace twk::platform {

class Environment {
 public:
  virtual ~Environment() = default;
  /// The variable's value; the empty text when there is none. "USERNAME" is the person's logon name even
  /// where the system uses another variable for it.
  virtual std::string variable(std::string_view name) = 0;
};

}  // namespace twk::platform
