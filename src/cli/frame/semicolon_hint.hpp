#pragma once

#include <string>
#include <vector>

namespace twk::cli {

/// Says, once, that a file of names has columns with semicolons between, as a spreadsheet program saves them.
/// No account name has a semicolon; a distinguished name, which may, counts as it is.
void hint_at_semicolons(const std::string& file, const std::vector<std::string>& lines);

}  // namespace twk::cli
