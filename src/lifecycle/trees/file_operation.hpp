#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "lifecycle/trees/own_tree.hpp"

namespace twk::session {
struct Session;
}

/// Operations on whole folders, for the runs and the popup.
namespace twk::lifecycle {

enum class FileWork { kMove = 1, kCopy = 2, kDelete = 3 };

/// Further options of a copy.
struct CopyRules {
  bool replaces = true;          ///< otherwise a different file in the target fails the copy
  bool apart = false;            ///< source and target are known to be two folders, whatever their paths
  std::string_view except = {};  ///< a folder of the source that is left out, "Mail\\Old"; empty for none
  /// Called with each file and folder that was made, and its original.
  std::function<void(const std::string& from, const std::string& to)> made = {};
};

/// Copies, moves or deletes a folder tree given by its network path; `from` of a copy or move ends in "\*.*",
/// and then only the contents of the folder are copied or moved. True when everything was done.
///
/// Asks, unless a run has no prompts: before a deletion, and once before files of the target are replaced.
/// Runs the message loop between files; a run cancelled meanwhile stops there. A path that is not the owner's
/// own tree is refused; links are never followed, on either side. A file that is already in the target, by
/// its size and time, is left as it is, so that an interrupted copy can continue. A move is a copy that is
/// complete before the first file of the source is deleted. The first failure is reported in the log and on
/// the status bar.
bool File_Operation(session::Session& session, std::string_view from, std::string_view to, FileWork work,
                    const Owner& owner = {}, const CopyRules& rules = {});

/// Searches a path for a word, in any case; beeps and logs the message when found.
bool Check_Path_Word(session::Session& session, std::string_view path, std::string_view word,
                     std::string_view message);

/// A path to the folder of a share that works once the share is gone: through the server's first share of
/// one of the five nearest folders above. Empty when there is none. Raises when the share does not exist.
std::string Locate_Share_Point(session::Session& session, const std::string& server,
                               const std::string& share);

/// Deletes a share of `server`. False, which is logged, for the share of a whole drive: that belongs to no
/// account. Raises what the directory raises.
bool delete_share(session::Session& session, const std::string& server, const std::string& share);

}  // namespace twk::lifecycle
