#pragma once

#include <string>
#include <string_view>

#include "base/errors.hpp"

namespace twk::platform {

class Environment {
 public:
  virtual ~Environment() = default;
  /// The variable's value; the empty text when there is none. "USERNAME" is the person's logon name even
  /// where the system uses another variable for it.
  virtual std::string variable(std::string_view name) = 0;
  /// The text in the letters a to z, as people write it who lack its own: "Mueller" of "Müller", "Lukasz" of
  /// "Łukasz", "Giannes" of "Γιάννης". Raises 126 where the workstation has no tables for that.
  virtual std::string plain_letters(std::string_view /*text*/) {
    base::raise(126, "There are no tables of plain letters here");
  }
};

}  // namespace twk::platform
