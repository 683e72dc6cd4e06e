#pragma once

#include <string>
#include <string_view>

/// Escapes for text that reaches a filter or a name.
namespace twk::platform {

/// RFC 4515: "*", "(", ")", "\" and NUL as "\" and two hexadecimal digits.
std::string escape_filter_value(std::string_view text);
/// RFC 4514: ",", "+", """, "\", "<", ">", ";" behind a backslash, likewise a "#" or blank in front and a
/// blank at the end, and "=", which may stand as it is but which not every server takes so; control
/// characters as "\" and two hexadecimal digits.
std::string escape_dn_value(std::string_view text);
/// The value behind the escapes.
std::string unescape_dn_value(std::string_view text);

}  // namespace twk::platform
