#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "ads/schema_entry.hpp"
#include "platform/value.hpp"

/// The part of the directory's schema that account administration meets.
namespace twk::ads {

/// None for an attribute that the schema does not know. Folds case.
const AttributeSchema* find_attribute(std::string_view name);
/// All attributes, sorted by name.
std::span<const AttributeSchema> all_attributes();

/// The name ADSI has for a syntax: "String", "Integer", "Boolean", "INTEGER8", "OctetString", "DN",
/// "UTCTime".
std::string_view syntax_name(Syntax syntax);

/// None for a class that a lab does not hold. Folds case.
const ClassSchema* find_class(std::string_view name);

/// A stored value as callers see it: a 32-bit integer, a Boolean, a date, bytes, decimal text of a 64-bit
/// integer, text. Bytes that are not UTF-8 stay bytes, whatever the syntax; `attribute` may be none.
platform::Value to_value(const AttributeSchema* attribute, const std::string& raw);
/// A single value as it is, several as a list, none as the empty value.
platform::Value to_value(const AttributeSchema* attribute, const std::vector<std::string>& raw);
/// The stored form. Raises kConstraint for a value that breaks the attribute's syntax or its length, or is
/// empty.
std::string to_raw(const AttributeSchema& attribute, const platform::Value& value);

}  // namespace twk::ads
