#pragma once

#include <string>
#include <string_view>

/// The bytes of text files that people and their programs wrote.
namespace twk::base {

/// Without the byte-order mark of UTF-8 in front.
std::string_view without_mark(std::string_view bytes);
/// As UTF-8 without a mark: what does not read as UTF-8 is code page 1252.
std::string decoded(std::string_view bytes);

}  // namespace twk::base
