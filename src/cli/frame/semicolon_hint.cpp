#include "cli/frame/semicolon_hint.hpp"

#include <algorithm>

#include "cli/terminal/failures.hpp"

namespace twk::cli {

void hint_at_semicolons(const std::string& file, const std::vector<std::string>& lines) {
  const auto has_columns = [](const std::string& line) {
    return !line.starts_with('#') && line.find(';') != std::string::npos &&
           line.find('=') == std::string::npos;
  };
  if (std::ranges::any_of(lines, has_columns))
    complain(file +
             " has semicolons between columns, as spreadsheet programs save them, but here a line is one "
             "name: keep only the column of the account names");
}

}  // namespace twk::cli
