#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace twk::base {

class RuntimeError;

/// What the number of a failure means, and what a person can do about it: "access is denied; use an account
/// that has the right, or have it given". An HRESULT that wraps a system number means the same as that
/// number. Empty for an unknown number.
std::string_view words_of_error(std::uint32_t number);

/// A failure for a person: what the failed call said, followed by the words for its number in brackets.
/// Without either, the number itself.
std::string in_words(std::uint32_t number, std::string_view description);
std::string in_words(const RuntimeError& failure);

}  // namespace twk::base
