#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/files.hpp"

/// Copies and deletions of folder trees that stay within the tree: a link is never followed. A failure raises
/// what the file service raises, with the first file that failed in its text, and ends the work there.
namespace twk::lifecycle {

/// A file or folder of a tree.
struct TreeEntry {
  std::string path;  ///< below the top, "Mail\Note.txt"
  bool directory = false;
  bool link = false;
  std::uint64_t size = 0;
  std::int64_t modified = 0;
};

/// What a folder holds at any depth, each folder in front of what is in it.
struct Tree {
  std::string top;
  std::vector<TreeEntry> entries;
  std::uint64_t files = 0;  ///< all but folders
  std::uint64_t bytes = 0;
};

struct TreeProgress {
  std::uint64_t files = 0;
  std::uint64_t bytes = 0;
};

/// How the caller takes part in the work.
struct TreeHooks {
  /// Called after each file and within long ones. False stops the work.
  std::function<bool(const TreeProgress&)> going_on = {};
  /// Asked once, before anything is copied, with the first file that another one is to take the place of.
  /// False stops the work; without it such a file is a failure.
  std::function<bool(const std::string& path)> may_replace = {};
  /// Told of each file and folder that was made, and what it was made after.
  std::function<void(const std::string& from, const std::string& to)> made = {};
};

/// What becomes of an entry of a tree that is copied.
enum class CopyStep : std::uint8_t {
  kMake,
  kLeave,   ///< the folder, or the very file (its size and time), is there: a copy that broke off goes on
  kReplace  ///< another file of that name is there
};

/// What a copy has to do, a step an entry.
struct CopyPlan {
  std::vector<CopyStep> steps;
  std::string replaced;             ///< the first file of the target that would be replaced; empty for none
  std::vector<std::string> drafts;  ///< halves of replacements that a killed copy left behind
};

/// Looks through a folder without a change to it.
Tree read_tree(platform::Files& files, const std::string& top);

/// Takes a folder with all that is in it out of what was read.
void leave_out(Tree& tree, std::string_view folder);

/// What copying a tree into the folder `target`, which need not exist yet, would do; nothing is changed.
/// Raises for a tree that cannot be copied as a whole: one that holds a link, or two names that are one
/// wherever case is folded; and for one whose way is barred by what `target` holds: a link, a file for a
/// folder.
CopyPlan plan_copy(platform::Files& files, const Tree& tree, const std::string& target);

/// Raises when the two are one folder by two names: shares and servers go by many. That is found out by
/// looking for a new folder of the one in the other, which is taken away again, as is one that a killed
/// program left.
void require_other_folder(platform::Files& files, const std::string& source, const std::string& target);

/// Copies all of a tree into the folder `target`, which exists, by the plan. False when it was stopped. What
/// was copied until a failure or a stop stays, each file whole.
bool copy_tree(platform::Files& files, const Tree& tree, const std::string& target, const CopyPlan& plan,
               const TreeHooks& hooks);

/// Takes away what a tree held when it was read, but not its top. Raises, before anything is taken away, when
/// a file has changed since or is not in `target` just so. What was added since is kept, with the folders
/// above it.
void remove_copied(platform::Files& files, const Tree& tree, const std::string& target);

/// Takes away all of a tree but its top, links themselves included. False when it was stopped.
bool remove_tree(platform::Files& files, const Tree& tree, const TreeHooks& hooks);

}  // namespace twk::lifecycle
