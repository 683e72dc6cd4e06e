#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace twk::cli {

/// At most three of the names, those that differ least from `name`, nearest first; one that holds `name` is
/// near, and names that have little in common with it are left out. Case does not count.
std::vector<std::string> near_matches(std::string_view name, const std::vector<std::string>& names);

/// "There is no site "Lodnon". Near: "London".", for people.
std::string no_such_text(std::string_view kind, std::string_view name, const std::vector<std::string>& names);

/// The one of the names that equals `name`, blanks around them and case left out, as it stands in the list,
/// padding included. Raises `Refused` with the near ones for none.
std::string find_name(std::string_view kind, std::string_view name, const std::vector<std::string>& names);

}  // namespace twk::cli
