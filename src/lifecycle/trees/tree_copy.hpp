#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/files.hpp"

/// Copies and deletions of folder trees that stay within the tree: a link is never followed. A failure raises
/// the file service's error, with the first failed file in its text, and ends the work there.
namespace twk::lifecycle {

/// A file or folder of a tree.
struct TreeEntry {
  std::string path;  ///< below the top, "Mail\Note.txt"
  bool directory = false;
  bool link = false;
  std::uint64_t size = 0;
  std::int64_t modified = 0;
};

/// The contents of a folder at any depth, each folder before what is in it.
struct Tree {
  std::string top;
  std::vector<TreeEntry> entries;
  std::uint64_t files = 0;  ///< everything except folders
  std::uint64_t bytes = 0;
};

struct TreeProgress {
  std::uint64_t files = 0;
  std::uint64_t bytes = 0;
};

/// The caller's callbacks.
struct TreeHooks {
  /// Called after each file and within long ones. False stops the work.
  std::function<bool(const TreeProgress&)> going_on = {};
  /// Asked once, before anything is copied, with the first file that would be replaced. False stops the work;
  /// without it such a file is a failure.
  std::function<bool(const std::string& path)> may_replace = {};
  /// Called with each file and folder that was made, and its original.
  std::function<void(const std::string& from, const std::string& to)> made = {};
};

/// What happens to an entry of a copied tree.
enum class CopyStep : std::uint8_t {
  kMake,
  kLeave,   ///< the folder, or the same file (size and time), exists: an interrupted copy continues
  kReplace  ///< another file of that name exists
};

/// What a copy has to do, one step for each entry.
struct CopyPlan {
  std::vector<CopyStep> steps;
  std::string replaced;             ///< the first file of the target that would be replaced; empty for none
  std::vector<std::string> drafts;  ///< partial replacements left by a killed copy
};

/// Reads a folder without changing it.
Tree read_tree(platform::Files& files, const std::string& top);

/// Removes a folder with all its contents from what was read.
void leave_out(Tree& tree, std::string_view folder);

/// What copying a tree into the folder `target`, which need not exist yet, would do; nothing is changed.
/// Raises for a tree that cannot be copied as a whole: one that holds a link, or two names that are one
/// wherever case is folded; and for one blocked by what `target` contains: a link, a file instead of a
/// folder.
CopyPlan plan_copy(platform::Files& files, const Tree& tree, const std::string& target);

/// Raises when the two are one folder with two names: shares and servers may have several. The test makes a
/// new folder in the one and looks for it in the other; it is removed again, as is one that a killed program
/// left.
void require_other_folder(platform::Files& files, const std::string& source, const std::string& target);

/// Copies a whole tree into the existing folder `target`, by the plan. False when it was stopped. What
/// was copied until a failure or a stop stays, each file whole.
bool copy_tree(platform::Files& files, const Tree& tree, const std::string& target, const CopyPlan& plan,
               const TreeHooks& hooks);

/// Removes what a tree contained when it was read, but not its top. Raises, before anything is removed, when
/// a file has changed since or is not identical in `target`. What was added since is kept, with the folders
/// above it.
void remove_copied(platform::Files& files, const Tree& tree, const std::string& target);

/// Removes everything in a tree except its top, including links themselves. False when it was stopped.
bool remove_tree(platform::Files& files, const Tree& tree, const TreeHooks& hooks);

}  // namespace twk::lifecycle
