#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "ads/basic_object.hpp"
#include "ads/schema.hpp"

namespace twk::ads {

/// Looks up attributes by name; what it returns must stay valid.
using FindAttribute = std::function<const AttributeSchema*(std::string_view)>;

/// The names of the attributes that objects of a class must and may have.
struct ClassProperties {
  std::vector<std::string> mandatory;
  std::vector<std::string> optional;
};
using FindProperties = std::function<ClassProperties(const ClassSchema&)>;

/// The same from the well-known attributes: every class may have any, except users, for whom only some make
/// sense.
ClassProperties known_properties(const ClassSchema& schema);

/// Binds "LDAP://Schema" (empty name), a class ("User") or an attribute ("sn"). The container returns classes
/// and properties by `GetObject("Class" or "Property", name)` and enumerates them; a class returns the names
/// of its attributes for `Get("MandatoryProperties")` and `Get("OptionalProperties")`, which ask
/// `properties`; a property has `Syntax` and `MultiValued`. Raises kNoSuchObject.
platform::ObjectPtr bind_schema(std::string_view name, FindAttribute find,
                                FindProperties properties = known_properties);

}  // namespace twk::ads
