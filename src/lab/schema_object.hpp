#pragma once

#include <string>

#include "ads/basic_object.hpp"

namespace twk::lab {

/// Binds "LDAP://Schema" (empty name), a class ("User") or an attribute ("sn"). The container gives classes
/// and properties by `GetObject("Class" or "Property", name)` and enumerates them; a class tells the names of
/// its attributes by `Get("OptionalProperties")`; a property has `Syntax` and `MultiValued`. Raises
/// kNoSuchObject.
platform::ObjectPtr bind_schema(std::string_view name);

}  // namespace twk::lab
