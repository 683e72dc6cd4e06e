#pragma once

#include <cstddef>
#include <string_view>

namespace twk::format {

/// Limits of the expansion of a text. A name that holds a tag, or a variable that holds its own, would never
/// end; at these limits the text stays as it is.
inline constexpr int kMostExpansions = 1000;
inline constexpr std::size_t kMostText = 1UL << 20U;

/// Byte position of an upper-case ASCII tag, including its percent sign, at or after `from`, without regard
/// to case; `npos` when there is none. Costs no copy of the text.
std::size_t find_tag(std::string_view text, std::string_view tag, std::size_t from = 0);

}  // namespace twk::format
