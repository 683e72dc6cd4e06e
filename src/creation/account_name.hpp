#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace twk::creation {

/// What a domain refuses in an account name: the characters < > ? / \ * [ ] { } ; : ' and the double quote,
/// outside Active Directory the comma, control characters (as "U+0009"), and a name of dots alone, which
/// would name a folder above. One entry for each occurrence; empty when the name is fine.
std::vector<std::string> invalid_characters(std::string_view name, bool active_directory);

/// A person's name with its first character in upper case and the rest as typed.
std::string capitalized(std::string_view name);

}  // namespace twk::creation
