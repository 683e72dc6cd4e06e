#pragma once

namespace twk::base {

/// Whether a code point is one of those from `first` to `last`.
constexpr bool between(char32_t code, char32_t first, char32_t last) {
  return code >= first && code <= last;
}

}  // namespace twk::base
