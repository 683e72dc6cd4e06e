#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace twk::cli {

/// docs/command-line.md as it was when the program was built.
std::string_view command_line_documentation();

/// What the documentation says about a command, for a terminal of 79 columns: the examples that call it, then
/// the paragraphs about it. `group` is its first word, which names a section; `names` are the commands of the
/// group and `name` is one of them, empty for a group that is a command itself. A paragraph is about the
/// commands that it names, or else about those of the paragraph before it, or at the beginning of a section
/// about all. Empty when nothing is said.
std::string prose_of(std::string_view group, std::string_view name, const std::vector<std::string>& names);

}  // namespace twk::cli
