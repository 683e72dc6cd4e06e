#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "cli/frame/context.hpp"
#include "cli/parser/command.hpp"

namespace twk::cli {

/// The users that a command for many users works on: any mix of these.
struct SelectionArguments {
  std::vector<std::string> names;   ///< of users
  std::vector<std::string> groups;  ///< meaning their members
  std::vector<std::string> ous;     ///< meaning their direct users
  std::vector<std::string> files;   ///< names of users, one a line; "-" is standard input
};

/// NAME…, --group, --ou and --from-file.
void add_selection_options(Command& command, SelectionArguments& arguments);

/// The result of resolving the names.
struct Found {
  std::size_t unknown = 0;  ///< unknown names
  bool whole = true;        ///< no file was without a name
};

/// Fills the selection of the multi-user window, each user, group and unit once, in the order names, groups,
/// units, files. An unknown name is reported on standard error, with file and line if it comes from a file,
/// and does not stop the rest; neither does a file without names. In a file, blank lines and those that begin
/// with "#" are skipped. Raises `UsageError` when nobody is named, `BadInput` for a file that cannot be read.
Found fill_selection(Context& context, session::Session& session, const SelectionArguments& arguments);

}  // namespace twk::cli
