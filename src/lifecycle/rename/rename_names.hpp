#pragma once

#include <string>
#include <string_view>

/// Names of folders and shares that contain a person's name.
namespace twk::lifecycle {

/// Why a server allows no folder of that name, as the rest of a sentence ("holds the character \"?\""); empty
/// for a valid name. Refused are the characters of paths and wildcards, control characters, a dot or
/// blank at the end, names of devices ("NUL", "com1.txt") and more than 255 characters.
std::string why_no_folder_name(std::string_view name);
/// The same for the name of a share.
std::string why_no_share_name(std::string_view name);

/// The text with the name replaced where it is a word, as `holds_word` finds it: "jo.v2" becomes
/// "ann.v2", "john" stays.
std::string replace_word(std::string_view text, std::string_view name, std::string_view new_name);

}  // namespace twk::lifecycle
