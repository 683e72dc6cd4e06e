#pragma once

#include <functional>
#include <string_view>

#include "ads/basic_object.hpp"
#include "ads/schema.hpp"

namespace twk::ads {

/// Binds "LDAP://Schema" (empty name), a class ("User") or an attribute ("sn"). The container gives classes
/// and properties by `GetObject("Class" or "Property", name)` and enumerates them; a class tells the names of
/// its attributes by `Get("OptionalProperties")`; a property has `Syntax` and `MultiValued`. Raises
/// kNoSuchObject. `find` knows the attributes; what it gives must stay.
using FindAttribute = std::function<const AttributeSchema*(std::string_view)>;
platform::ObjectPtr bind_schema(std::string_view name, FindAttribute find);

}  // namespace twk::ads
