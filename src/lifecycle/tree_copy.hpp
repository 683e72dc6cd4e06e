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
  std::function<bool(const TreeProgress&)> going_on;
  /// Asked once, for the first file that is there already. False stops the work; without it one is a
  /// failure.
  std::function<bool(const std::string& path)> may_replace;
};

/// Looks through a folder without a change to it.
Tree read_tree(platform::Files& files, const std::string& top);

/// Copies all of a tree into the folder `target`, which exists. Nothing is copied when the tree holds a link,
/// or when `target` is the same folder by another name. False when it was stopped. What was copied until a
/// failure or a stop stays, each file whole.
bool copy_tree(platform::Files& files, const Tree& tree, const std::string& target, const TreeHooks& hooks);

/// Takes away what a tree held when it was read, but not its top. A file that changed since is kept and
/// fails; one that was added since is kept, with the folders above it.
void remove_copied(platform::Files& files, const Tree& tree);

/// Takes away all of a tree but its top, links themselves included. False when it was stopped.
bool remove_tree(platform::Files& files, const Tree& tree, const TreeHooks& hooks);

}  // namespace twk::lifecycle
