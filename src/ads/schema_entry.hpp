#pragma once

#include <cstdint>
#include <string_view>

namespace twk::ads {

enum class Syntax { kString, kInteger, kBoolean, kInteger8, kOctetString, kDn, kTime, kSid };

struct AttributeSchema {
  std::string_view name;
  Syntax syntax = Syntax::kString;
  bool multi_valued = false;
  bool system_only = false;   ///< set by the directory, never written by a caller
  std::uint16_t longest = 0;  ///< characters or bytes of a value; 0 for no limit
};

struct ClassSchema {
  std::string_view name;      ///< "organizationalUnit"
  std::string_view category;  ///< "Organizational-Unit"
  std::string_view rdn_type;  ///< "OU"
  std::string_view chain;     ///< its superior classes, from "top" down, then itself, with blanks between
};

}  // namespace twk::ads
