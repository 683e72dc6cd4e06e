#pragma once

#include <string>
#include <string_view>

/// The flat "%name%" substitution. Tags are found without regard to case.
namespace twk::format {

/// Every occurrence of `find` replaced, from left to right; what was put in is not looked at again. The text
/// as it is when `find` is empty, or when the result would be out of all proportion.
std::string FRString(std::string_view text, std::string_view find, std::string_view replacement);

}  // namespace twk::format
