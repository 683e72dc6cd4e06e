#pragma once

#include <string>
#include <string_view>

namespace twk::session {
struct ImportState;
struct Session;
}  // namespace twk::session

/// The flat "%name%" substitution. Tags are found without regard to case.
namespace twk::format {

/// Every occurrence of `find` replaced, from left to right; what was put in is not looked at again. The text
/// as it is when `find` is empty, or when the result would be out of all proportion.
std::string FRString(std::string_view text, std::string_view find, std::string_view replacement);

/// Expands the variables of the loaded template, row by row. A value may hold the tag of a later row; the
/// expansion of a value that holds its own tag stops at a limit.
std::string Replace_Variables(session::Session& session, std::string text);

/// "%IMPORTn%" replaced by field n of the current import line, for each field that the line has.
std::string replace_import_fields(const session::Session& session, std::string text);
/// The same for the fields 1 to `last`, whether the line has them or not.
std::string replace_import_fields(const session::ImportState& state, std::string text, std::size_t last);

}  // namespace twk::format
