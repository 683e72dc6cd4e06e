#pragma once

#include <string>
#include <string_view>

/// The flat "%name%" substitution. Tags are found without regard to case.
namespace twk::format {

/// Every occurrence of `find` replaced, from left to right; inserted text is not searched again. The text is
/// unchanged when `find` is empty, or when the result would be out of all proportion.
std::string FRString(std::string_view text, std::string_view find, std::string_view replacement);

}  // namespace twk::format
