#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace twk::session {
struct Session;
}

namespace twk::format {

/// A variable of the loaded template; names have no percent signs.
struct Variable {
  std::string name;
  std::string value;
};
std::vector<Variable> template_variables(const session::Session& session);

/// Expands the variables of the loaded template, row by row. A value may hold the tag of a later row; the
/// expansion of a value that holds its own tag stops at a limit.
std::string Replace_Variables(session::Session& session, std::string text);

}  // namespace twk::format
