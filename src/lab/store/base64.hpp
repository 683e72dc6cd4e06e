#pragma once

#include <optional>
#include <string>
#include <string_view>

/// Base64, RFC 4648, with padding and without line breaks.
namespace twk::lab {

/// Appends the digits of `bytes`.
void append_base64(std::string& out, std::string_view bytes);
/// Appends the bytes of digits. False, and nothing appended, for text that is not Base64. Blanks at the end
/// are ignored.
bool append_decoded(std::string& out, std::string_view text);
/// The bytes; empty for text that is not Base64. Blanks at the end are ignored.
std::optional<std::string> decode_base64(std::string_view text);

}  // namespace twk::lab
