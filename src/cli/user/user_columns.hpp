#pragma once

#include <functional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "cli/frame/directory_reader.hpp"

namespace twk::cli {

/// A column of `user list --columns`: a name of our own, such as "ou", or an attribute.
struct UserColumn {
  Column column;
  std::vector<std::string> attributes;  ///< what is read for it
  std::function<Json(const Domain& domain, std::span<const platform::Value> values)> cell;
};

/// The words between commas of a list; blanks around them do not count. Raises `UsageError` for none.
std::vector<std::string> names_in(std::string_view option, std::string_view list);
/// The column of that name, in any case. Raises `UsageError` with the near names when there is none.
UserColumn user_column(const Domain& domain, const std::string& name);
/// The name of an attribute as the directory spells it. Raises `UsageError` with the near names.
std::string attribute_named(const Domain& domain, const std::string& name);
/// One text, several as a list, none as nothing.
Json json_of(const std::vector<std::string>& texts);

}  // namespace twk::cli
