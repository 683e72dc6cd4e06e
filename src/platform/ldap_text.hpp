#pragma once

#include <string>
#include <string_view>

/// Escapes for text that reaches a filter or a name.
namespace twk::platform {

/// RFC 4515: "*", "(", ")", "\" and NUL as "\" and two hexadecimal digits.
std::string escape_filter_value(std::string_view text);
/// "\01\05…": every byte as RFC 4515 escapes it.
std::string escape_filter_bytes(std::string_view bytes);
/// RFC 4514: ",", "+", """, "\", "<", ">", ";" after a backslash, likewise a leading "#" or blank, a trailing
/// blank, and "=", which need not be escaped but which not every server accepts unescaped; control characters
/// as "\" and two hexadecimal digits.
std::string escape_dn_value(std::string_view text);
/// The value without the escapes.
std::string unescape_dn_value(std::string_view text);
/// "Smith, Jo" of the relative name "CN=Smith\, Jo"; the name of a WinNT object, which has no type, as it is.
std::string plain_name(std::string_view relative_name);

}  // namespace twk::platform
