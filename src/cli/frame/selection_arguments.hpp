#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "cli/frame/context.hpp"
#include "cli/parser/command.hpp"

namespace twk::cli {

/// The users that a command for many users works on: any mix of these.
struct SelectionArguments {
  std::vector<std::string> names;          ///< of users
  std::vector<std::string> groups;         ///< meaning their members
  std::vector<std::string> ous;            ///< meaning their direct users
  std::vector<std::string> files;          ///< names of users, one a line; "-" is standard input
  bool recurse = false;                    ///< the units mean the users below them, too
  std::string filter;                      ///< which users of the units, or of the whole domain
  std::vector<std::string> excepted;       ///< names of users who are left out
  std::vector<std::string> except_groups;  ///< their members are left out

  /// True when one of the options says who is meant or left out; `names` and `files` aside.
  [[nodiscard]] bool has_options() const {
    return !groups.empty() || !ous.empty() || recurse || !filter.empty() || !excepted.empty() ||
           !except_groups.empty();
  }
};

/// NAME…, --group, --ou with --recurse and --filter, --from-file, --except and --except-group.
void add_selection_options(Command& command, SelectionArguments& arguments);

/// The result of resolving the names.
struct Found {
  std::size_t unknown = 0;  ///< unknown names
  bool whole = true;        ///< no file was without a name
};

/// Fills the selection of the multi-user window, each user, group and unit once, in the order names, groups,
/// units, files, and its terms. An unknown name is reported on standard error, with file and line if it comes
/// from a file, and does not stop the rest; neither does a file without names. In a file, blank lines and
/// those that begin with "#" are skipped. Raises `UsageError` when nobody is named or a filter is none,
/// `BadInput` for a file that cannot be read, `Refused` for an unknown name of those to leave out.
Found fill_selection(Context& context, session::Session& session, const SelectionArguments& arguments);

/// What a person may have meant whose selection is empty: the users below the units. Reported on standard
/// error.
void explain_empty(Context& context, const SelectionArguments& arguments);

}  // namespace twk::cli
