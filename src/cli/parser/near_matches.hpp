#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace twk::cli {

/// At most three of the names, those that differ least from `name`, nearest first; one that contains `name`
/// is near, and names that have little in common with it are left out. Case is ignored.
std::vector<std::string> near_matches(std::string_view name, const std::vector<std::string>& names);

/// "There is no site "Lodnon". Near: "London".", for people.
std::string no_such_text(std::string_view kind, std::string_view name, const std::vector<std::string>& names);

/// The name that equals `name`, ignoring case and blanks around it, as spelled in the list, including
/// padding. Otherwise raises `Refused` with the near ones.
std::string find_name(std::string_view kind, std::string_view name, const std::vector<std::string>& names);

}  // namespace twk::cli
