#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "lifecycle/trees/own_tree.hpp"

namespace twk::session {
struct Session;
}

/// Operations on whole folders, as the runs and the popup use them.
namespace twk::lifecycle {

enum class FileWork { kMove = 1, kCopy = 2, kDelete = 3 };

/// What a caller wants of a copy besides.
struct CopyRules {
  bool replaces = true;          ///< else a file of the target that is another one fails the copy
  bool apart = false;            ///< source and target are known to be two folders, whatever their paths
  std::string_view except = {};  ///< a folder of the source that is left out, "Mail\\Old"; empty for none
  /// Told of each file and folder that was made, and what it was made after.
  std::function<void(const std::string& from, const std::string& to)> made = {};
};

/// Copies, moves or deletes a folder tree given by its network path; `from` of a copy or move ends in "\*.*",
/// and then what the folder holds goes, and the folder itself stays. True when all was done.
///
/// Asks, unless a run was started without prompts: before a deletion, and once before files of the target are
/// replaced. Runs through the message loop between files; a run that was cancelled meanwhile stops there. A
/// path that is not the owner's own tree is refused, a link is never followed, on neither side. A file that
/// stands in the target already, by its size and time, is left as it is, so that a copy that broke off goes
/// on. A move is a copy that is whole before the first file of the source goes. What failed first is told in
/// the log and on the status bar.
bool File_Operation(session::Session& session, std::string_view from, std::string_view to, FileWork work,
                    const Owner& owner = {}, const CopyRules& rules = {});

/// The button of `FileProgress`, the window that shows such work when no run is under way.
void FileProgress_CancelButton_Click(session::Session& session);

/// Searches a path for a word, in any case; beeps and logs the message when it is there.
bool Check_Path_Word(session::Session& session, std::string_view path, std::string_view word,
                     std::string_view message);

/// A path by which the folder of a share stays reachable once the share has gone: through the first share of
/// the server that stands for one of the five nearest folders above. Empty when there is none. Raises when
/// the share is not there.
std::string Locate_Share_Point(session::Session& session, const std::string& server,
                               const std::string& share);

/// Deletes a share of `server`. False, which is logged, for a share that stands for a whole drive: no account
/// can call that its own. Raises what the directory raises.
bool delete_share(session::Session& session, const std::string& server, const std::string& share);

}  // namespace twk::lifecycle
