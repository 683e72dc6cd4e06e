#pragma once

#include <string>
#include <vector>

namespace twk::platform {

/// Directory objects that can name their attributes derive from it: those of LDAP.
class AttributeListing {
 public:
  virtual ~AttributeListing() = default;
  /// The attributes that have a stored value, in no particular order, as the directory spells them; none that
  /// it computes only when asked by name, and no secret one. Raises what a read raises.
  virtual std::vector<std::string> attribute_names() = 0;
};

}  // namespace twk::platform
