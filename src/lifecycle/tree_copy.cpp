#include "lifecycle/tree_copy.hpp"

#include <algorithm>
#include <map>

#include "base/errors.hpp"
#include "base/text.hpp"

namespace twk::lifecycle {
namespace {

using platform::FileEntry;
using platform::Files;

/// A deeper tree than any file system lets paths be is a loop.
constexpr std::size_t kDeepest = 1000;
constexpr std::string_view kProbe = "~twk-probe~";

std::string joined(std::string_view folder, std::string_view name) {
  return std::string(folder) + (folder.empty() ? "" : "\\") + std::string(name);
}

void read_folder(Files& files, Tree& tree, const std::string& folder, std::size_t depth) {
  const std::string path = folder.empty() ? tree.top : joined(tree.top, folder);
  if (depth > kDeepest)
    base::raise(base::error::kPathFileAccess, path + " is too deep");
  // Files first, so that who goes through the entries is in one folder at a time.
  std::vector<FileEntry> folders;
  for (FileEntry& entry : files.list(path)) {
    // A name of another system, which as a part of a path would mean another file.
    if (entry.name.find('\\') != base::npos)
      base::raise(base::error::kBadFileName, path + " holds a name with a backslash: " + entry.name);
    if (entry.directory) {
      folders.push_back(std::move(entry));
      continue;
    }
    tree.entries.push_back({joined(folder, entry.name), false, entry.link, entry.size, entry.modified});
    ++tree.files;
    tree.bytes += entry.size;
  }
  for (const FileEntry& entry : folders) {
    tree.entries.push_back({joined(folder, entry.name), true, false, 0, entry.modified});
    read_folder(files, tree, joined(folder, entry.name), depth + 1);
  }
}

/// The folder that an entry stands in; empty for the top.
std::string folder_of(std::string_view path) {
  const std::size_t slash = path.rfind('\\');
  return slash == base::npos ? std::string() : std::string(path.substr(0, slash));
}

/// Sees to it that what was read as a folder has not become a link meanwhile, which would lead out.
class FolderGuard {
 public:
  FolderGuard(Files& files, const std::string& top) : files_(files), top_(top) {}

  void enter(const std::string& folder) {
    if (entered_ && folder == folder_)
      return;
    for (std::size_t end = 0; end != base::npos && !folder.empty();) {
      end = folder.find('\\', end == 0 ? 0 : end + 1);
      const std::string path = joined(top_, folder.substr(0, end));
      if (!files_.status(path).directory)
        base::raise(base::error::kPathFileAccess, path + " is a folder no longer");
    }
    folder_ = folder;
    entered_ = true;
  }

 private:
  Files& files_;
  const std::string& top_;
  std::string folder_;
  bool entered_ = false;
};

/// Names that two paths have for one folder are found out by looking for a new folder of the one in the
/// other: shares and servers go by many names.
void require_other_folder(Files& files, const std::string& source, const std::string& target) {
  const std::string probe = joined(target, kProbe);
  if (files.exists(probe))
    files.remove_directory(probe);
  files.make_directory(probe);
  const bool same = files.exists(joined(source, kProbe));
  files.remove_directory(probe);
  if (same)
    base::raise(base::error::kPathFileAccess, source + " and " + target + " are the same folder");
}

void require_no_links(const Tree& tree) {
  const auto link = std::find_if(tree.entries.begin(), tree.entries.end(),
                                 [](const TreeEntry& entry) { return entry.link; });
  if (link != tree.entries.end()) {
    base::raise(base::error::kPathFileAccess,
                joined(tree.top, link->path) + " is a link, which is not copied");
  }
}

class Copier {
 public:
  Copier(Files& files, const Tree& tree, const std::string& target, const TreeHooks& hooks)
      : files_(files), tree_(tree), target_(target), hooks_(hooks), source_(files, tree.top) {}

  bool run() {
    for (const TreeEntry& entry : tree_.entries) {
      if (!(entry.directory ? copy_folder(entry) : copy_file(entry)))
        return false;
    }
    return true;
  }

 private:
  bool copy_folder(const TreeEntry& entry) {
    const std::string path = joined(target_, entry.path);
    if (files_.exists(path)) {
      const FileEntry there = files_.status(path);
      if (!there.directory) {
        base::raise(base::error::kPathFileAccess,
                    path + (there.link ? " is a link, which is not followed" : " is there and no folder"));
      }
    } else {
      files_.make_directory(path);
    }
    return true;
  }

  bool copy_file(const TreeEntry& entry) {
    const std::string from = joined(tree_.top, entry.path);
    const std::string to = joined(target_, entry.path);
    const auto piece = [&](std::uint64_t done) { return tell({done_.files, done_.bytes + done}); };
    source_.enter(folder_of(entry.path));
    bool whole = false;
    // Nothing is there as a rule; what is there is found by trying.
    base::Trap trap;
    trap([&] { whole = files_.copy_file(from, to, may_replace_, piece); });
    if (trap.number() == base::error::kFileExists && !may_replace_ && hooks_.may_replace) {
      may_replace_ = hooks_.may_replace(to);
      whole = may_replace_ && files_.copy_file(from, to, true, piece);
    } else if (trap.number() != 0) {
      base::raise(trap.number(), trap.description());
    }
    if (!whole)
      return false;
    ++done_.files;
    done_.bytes += entry.size;
    return tell(done_);
  }

  bool tell(const TreeProgress& progress) { return !hooks_.going_on || hooks_.going_on(progress); }

  Files& files_;
  const Tree& tree_;
  const std::string& target_;
  const TreeHooks& hooks_;
  FolderGuard source_;
  TreeProgress done_;
  bool may_replace_ = false;
};

/// The entries of the folders of a tree as they are now, a folder read when it is first asked for.
class PresentEntries {
 public:
  PresentEntries(Files& files, const std::string& top) : files_(files), top_(top) {}

  /// None when it is not there any more.
  const FileEntry* find(const std::string& path) {
    const std::string folder = folder_of(path);
    if (!read_ || folder != folder_) {
      entries_.clear();
      for (FileEntry& entry : files_.list(folder.empty() ? top_ : joined(top_, folder)))
        entries_.emplace(entry.name, std::move(entry));
      folder_ = folder;
      read_ = true;
    }
    const auto found = entries_.find(path.substr(folder.empty() ? 0 : folder.size() + 1));
    return found == entries_.end() ? nullptr : &found->second;
  }

 private:
  Files& files_;
  const std::string& top_;
  std::string folder_;
  bool read_ = false;
  std::map<std::string, FileEntry> entries_;
};

}  // namespace

Tree read_tree(Files& files, const std::string& top) {
  Tree tree;
  tree.top = top;
  read_folder(files, tree, {}, 0);
  return tree;
}

bool copy_tree(Files& files, const Tree& tree, const std::string& target, const TreeHooks& hooks) {
  require_no_links(tree);
  require_other_folder(files, tree.top, target);
  return Copier(files, tree, target, hooks).run();
}

void remove_copied(Files& files, const Tree& tree) {
  PresentEntries present(files, tree.top);
  FolderGuard guard(files, tree.top);
  for (auto entry = tree.entries.rbegin(); entry != tree.entries.rend(); ++entry) {
    const std::string path = joined(tree.top, entry->path);
    guard.enter(folder_of(entry->path));
    if (entry->directory) {
      if (files.list(path).empty())
        files.remove_directory(path);
      continue;
    }
    const FileEntry* const now = present.find(entry->path);
    if (now == nullptr)
      continue;
    if (now->link || now->directory || now->size != entry->size || now->modified != entry->modified)
      base::raise(base::error::kPathFileAccess, path + " changed after it was copied, and is kept");
    files.remove(path);
  }
}

bool remove_tree(Files& files, const Tree& tree, const TreeHooks& hooks) {
  TreeProgress done;
  FolderGuard guard(files, tree.top);
  for (auto entry = tree.entries.rbegin(); entry != tree.entries.rend(); ++entry) {
    const std::string path = joined(tree.top, entry->path);
    guard.enter(folder_of(entry->path));
    if (entry->directory) {
      files.remove_directory(path);
      continue;
    }
    files.remove(path);
    ++done.files;
    done.bytes += entry->size;
    if (hooks.going_on && !hooks.going_on(done))
      return false;
  }
  return true;
}

}  // namespace twk::lifecycle
