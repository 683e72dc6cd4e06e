#pragma once

#include <string>
#include <string_view>

namespace twk::session {
struct Session;
}

/// The flat "%name%" substitution. Tags are found without regard to case.
namespace twk::format {

/// Every occurrence of `find` replaced, from left to right; what was put in is not looked at again. The text
/// as it is when `find` is empty, or when the result would be out of all proportion.
std::string FRString(std::string_view text, std::string_view find, std::string_view replacement);

/// Expands the variables of the loaded template, row by row. A value may hold the tag of a later row; the
/// expansion of a value that holds its own tag stops at a limit.
std::string Replace_Variables(session::Session& session, std::string text);

}  // namespace twk::format
