#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

#include "batch/run_controls.hpp"

namespace twk::controls {
struct TreeNode;
}

/// The renaming of the users of a file: a spreadsheet whose first line holds headings, each further line a
/// user under "User" and the new names under "Logon", "UPN", "Full name", "First name", "Last name" and
/// "Display name". An empty field leaves that name as it is.
namespace twk::batch {

/// What a line came to.
struct RenamedLine {
  std::int32_t number = 0;
  bool unknown = false;  ///< nobody has that name
  UserOutcome result;    ///< the user as the line names it
};

struct RenameFileOrder {
  bool folders = false;  ///< shares and folders too
  session::RunTerms terms;
  /// The node of the user whom a line names; null when there is none. Raises for a name that fits several.
  std::function<controls::TreeNode*(const std::string& name)> find;
  std::function<void(const RenamedLine& line)> done;
};

/// Renames the users one after the other; one who fails does not stop the rest. The whole file is read first.
/// Raises 13 and `CsvError` for a file without the column of users or one of new names, with a heading that
/// is neither, or that cannot be read to its end; what the directory raises when no server answers.
void rename_from_file(session::Session& session, std::string_view bytes, const RenameFileOrder& order,
                      session::RunView& view);

}  // namespace twk::batch
