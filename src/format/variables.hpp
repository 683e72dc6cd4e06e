#pragma once

#include <string>
#include <string_view>

namespace twk::session {
struct Session;
}

namespace twk::format {

/// Expands the variables of the loaded template, row by row. A value may hold the tag of a later row; the
/// expansion of a value that holds its own tag stops at a limit.
std::string Replace_Variables(session::Session& session, std::string text);

}  // namespace twk::format
