#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "cli/frame/context.hpp"
#include "cli/parser/command.hpp"

namespace twk::cli {

/// Whom a command for many users is about: any mix of these.
struct SelectionArguments {
  std::vector<std::string> names;   ///< of users
  std::vector<std::string> groups;  ///< whose members are meant
  std::vector<std::string> ous;     ///< whose direct users are meant
  std::vector<std::string> files;   ///< names of users, one a line; "-" is standard input
};

/// NAME…, --group, --ou and --from-file.
void add_selection_options(Command& command, SelectionArguments& arguments);

/// What the names came to.
struct Found {
  std::size_t unknown = 0;  ///< names that nobody has
  bool whole = true;        ///< no file was without a name
};

/// Fills the selection of the multi-user window, each user, group and unit once, in the order names, groups,
/// units, files. A name that nobody has is told on standard error, one of a file with file and line, and does
/// not stop the rest; neither does a file that names nobody. In a file, blank lines and those that begin with
/// "#" are passed over. Raises `UsageError` when nobody is named, `BadInput` for a file that cannot be read.
Found fill_selection(Context& context, session::Session& session, const SelectionArguments& arguments);

}  // namespace twk::cli
