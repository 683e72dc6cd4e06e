#include "lifecycle/trees/tree_copy.hpp"

#include <algorithm>
#include <unordered_map>

#include "base/errors.hpp"
#include "base/text.hpp"

namespace twk::lifecycle {
namespace {

using platform::FileEntry;
using platform::Files;

/// A tree deeper than any file system's paths is a loop.
constexpr std::size_t kDeepest = 1000;
constexpr std::string_view kProbe = "~twk-probe~";
/// A file service's temporary name for a replacement until it is complete.
constexpr std::string_view kDraft = ".twk-copy";
/// The finest time that every way of setting one preserves, and the coarsest that a file system stores.
constexpr std::int64_t kFineTime = 1'000;
constexpr std::int64_t kCoarseTime = 2'000'000'000;

std::string joined(std::string_view folder, std::string_view name) {
  return std::string(folder) + (folder.empty() ? "" : "\\") + std::string(name);
}

void read_folder(Files& files, Tree& tree, const std::string& folder, std::size_t depth) {
  const std::string path = folder.empty() ? tree.top : joined(tree.top, folder);
  if (depth > kDeepest)
    base::raise(base::error::kPathFileAccess, path + " is too deep");
  // Files first, so that a walk through the entries is in one folder at a time.
  std::vector<FileEntry> folders;
  for (FileEntry& entry : files.list(path)) {
    // A name from another system, which would mean another file as part of a path.
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

/// The folder that contains an entry; empty for the top.
std::string folder_of(std::string_view path) {
  const std::size_t slash = path.rfind('\\');
  return slash == base::npos ? std::string() : std::string(path.substr(0, slash));
}

/// Makes sure that what was read as a folder has not become a link meanwhile, which would lead out.
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
        base::raise(base::error::kPathFileAccess, path + " is no longer a folder");
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

/// Tried twice: it must not stay in someone's folder.
void remove_probe(Files& files, const std::string& probe) {
  base::Trap trap;
  if (!trap([&] { files.remove_directory(probe); }))
    files.remove_directory(probe);
}

void require_no_links(const Tree& tree) {
  const auto link = std::find_if(tree.entries.begin(), tree.entries.end(),
                                 [](const TreeEntry& entry) { return entry.link; });
  if (link != tree.entries.end()) {
    base::raise(base::error::kPathFileAccess,
                joined(tree.top, link->path) + " is a link, which is not copied");
  }
}

void require_names_apart(const Tree& tree) {
  std::unordered_map<std::string, const TreeEntry*> seen;
  for (const TreeEntry& entry : tree.entries) {
    const auto [other, fresh] = seen.try_emplace(base::upper(entry.path), &entry);
    if (!fresh) {
      base::raise(base::error::kFileExists, tree.top + " holds both " + other->second->path + " and " +
                                                entry.path +
                                                ", which are one name on a server: rename one of them");
    }
  }
}

bool is_near(std::int64_t a, std::int64_t b, std::int64_t tolerance) {
  return std::max(a, b) - std::min(a, b) <= tolerance;
}

/// The current entries of the folders of a tree, each folder read on first use. Follows a tree's entries
/// forwards or backwards, and so reads each folder once.
class PresentEntries {
 public:
  PresentEntries(Files& files, const std::string& top) : files_(files), top_(top) {}

  /// By its name in any case; none when it, or its folder, does not exist.
  const FileEntry* find(const std::string& path) {
    const std::string folder = folder_of(path);
    const auto& entries = entries_of(folder);
    const auto found = entries.find(base::upper(path.substr(folder.empty() ? 0 : folder.size() + 1)));
    return found == entries.end() ? nullptr : &found->second;
  }

 private:
  using Entries = std::unordered_map<std::string, FileEntry>;

  const Entries& entries_of(const std::string& folder) {
    while (!open_.empty() && !lies_in(folder, open_.back().first))
      open_.pop_back();
    if (open_.empty() || open_.back().first != folder)
      open_.emplace_back(folder, read(folder.empty() ? top_ : joined(top_, folder)));
    return open_.back().second;
  }

  static bool lies_in(std::string_view folder, std::string_view outer) {
    return outer.empty() || folder == outer ||
           (folder.size() > outer.size() && folder.starts_with(outer) && folder[outer.size()] == '\\');
  }

  Entries read(const std::string& path) {
    Entries entries;
    if (!files_.is_directory(path))
      return entries;
    for (FileEntry& entry : files_.list(path)) {
      std::string name = base::upper(entry.name);
      entries.emplace(std::move(name), std::move(entry));
    }
    return entries;
  }

  Files& files_;
  const std::string& top_;
  std::vector<std::pair<std::string, Entries>> open_;  ///< a folder and those above it
};

/// Finds out, entry by entry, what a copy has to do.
class Planner {
 public:
  Planner(Files& files, const Tree& tree, const std::string& target)
      : tree_(tree), target_(target), present_(files, target) {}

  CopyPlan run() {
    plan_.steps.reserve(tree_.entries.size());
    for (const TreeEntry& entry : tree_.entries)
      plan_.steps.push_back(entry.directory ? step_of_folder(entry) : step_of_file(entry));
    return std::move(plan_);
  }

 private:
  CopyStep step_of_folder(const TreeEntry& entry) {
    if (entry.path == kProbe && is_empty(entry))
      return CopyStep::kLeave;  // from a copy that was killed when this tree was its target
    const FileEntry* const there = find(entry.path);
    if (there == nullptr) {
      if (!is_fresh(entry.path))
        fresh_ = entry.path + '\\';
      return CopyStep::kMake;
    }
    if (!there->directory)
      bar(entry, there->link ? " is a link, which is not followed" : " exists and is not a folder");
    return CopyStep::kLeave;
  }

  CopyStep step_of_file(const TreeEntry& entry) {
    const FileEntry* const draft = find(entry.path + std::string(kDraft));
    if (draft != nullptr && !draft->directory && !holds(entry.path + std::string(kDraft)))
      plan_.drafts.push_back(joined(target_, entry.path + std::string(kDraft)));
    const FileEntry* const there = find(entry.path);
    if (there == nullptr)
      return CopyStep::kMake;
    if (there->directory || there->link)
      bar(entry, there->link ? " is a link, which is not followed" : " exists and is a folder");
    if (there->size == entry.size && is_near(there->modified, entry.modified, kFineTime))
      return CopyStep::kLeave;
    if (plan_.replaced.empty())
      plan_.replaced = joined(target_, entry.path);
    return CopyStep::kReplace;
  }

  [[noreturn]] void bar(const TreeEntry& entry, const char* why) {
    base::raise(base::error::kPathFileAccess, joined(target_, entry.path) + why);
  }

  /// True below a folder that is still to be made, where nothing can exist.
  [[nodiscard]] bool is_fresh(std::string_view path) const {
    return !fresh_.empty() && path.starts_with(fresh_);
  }
  const FileEntry* find(const std::string& path) { return is_fresh(path) ? nullptr : present_.find(path); }
  [[nodiscard]] bool is_empty(const TreeEntry& folder) const {
    const auto* const next = &folder + 1;
    return next == tree_.entries.data() + tree_.entries.size() || folder_of(next->path) != folder.path;
  }
  [[nodiscard]] bool holds(std::string_view path) const {
    return std::any_of(tree_.entries.begin(), tree_.entries.end(),
                       [&](const TreeEntry& entry) { return base::equals_fold(entry.path, path); });
  }

  const Tree& tree_;
  const std::string& target_;
  PresentEntries present_;
  CopyPlan plan_;
  std::string fresh_;
};

class Copier {
 public:
  Copier(Files& files, const Tree& tree, const std::string& target, const TreeHooks& hooks)
      : files_(files), tree_(tree), target_(target), hooks_(hooks), source_(files, tree.top) {}

  bool run(const CopyPlan& plan) {
    for (const std::string& draft : plan.drafts)
      files_.remove(draft);
    for (std::size_t i = 0; i < tree_.entries.size(); ++i) {
      const TreeEntry& entry = tree_.entries[i];
      if (plan.steps[i] != CopyStep::kLeave && !copy(entry, plan.steps[i] == CopyStep::kReplace))
        return false;
      if (!entry.directory && !count(entry))
        return false;
    }
    return true;
  }

 private:
  /// What was added since the plan was made is a failure, and never replaced.
  bool copy(const TreeEntry& entry, bool replace) {
    const std::string from = joined(tree_.top, entry.path);
    const std::string to = joined(target_, entry.path);
    if (entry.directory) {
      files_.make_directory(to);
    } else {
      source_.enter(folder_of(entry.path));
      const auto piece = [&](std::uint64_t done) { return tell({done_.files, done_.bytes + done}); };
      if (!files_.copy_file(from, to, replace, piece))
        return false;
    }
    if (hooks_.made)
      hooks_.made(from, to);
    return true;
  }

  bool count(const TreeEntry& entry) {
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
};

[[noreturn]] void raise_kept(const std::string& path, const std::string& why) {
  std::string text = path;
  text += why;
  text += ", and is kept";
  base::raise(base::error::kPathFileAccess, text);
}

/// Every file must be on both sides as it was read: the source unchanged since then, the copy
/// complete.
void require_copied(Files& files, const Tree& tree, const std::string& target) {
  PresentEntries source(files, tree.top);
  PresentEntries copies(files, target);
  for (const TreeEntry& entry : tree.entries) {
    const FileEntry* const now = source.find(entry.path);
    if (entry.directory || now == nullptr)
      continue;
    const std::string path = joined(tree.top, entry.path);
    if (now->link || now->directory || now->size != entry.size || now->modified != entry.modified)
      raise_kept(path, " changed after it was copied");
    const FileEntry* const copy = copies.find(entry.path);
    if (copy == nullptr || copy->link || copy->directory || copy->size != entry.size ||
        !is_near(copy->modified, entry.modified, kCoarseTime))
      raise_kept(path, " is not complete in " + target);
  }
}

}  // namespace

Tree read_tree(Files& files, const std::string& top) {
  Tree tree;
  tree.top = top;
  read_folder(files, tree, {}, 0);
  return tree;
}

void leave_out(Tree& tree, std::string_view folder) {
  const std::string top = base::upper(folder) + '\\';
  std::erase_if(tree.entries, [&](const TreeEntry& entry) {
    if (!(base::upper(entry.path) + '\\').starts_with(top))
      return false;
    if (!entry.directory) {
      --tree.files;
      tree.bytes -= entry.size;
    }
    return true;
  });
}

CopyPlan plan_copy(Files& files, const Tree& tree, const std::string& target) {
  require_no_links(tree);
  require_names_apart(tree);
  return Planner(files, tree, target).run();
}

void require_other_folder(Files& files, const std::string& source, const std::string& target) {
  const std::string probe = joined(target, kProbe);
  if (files.exists(probe))
    remove_probe(files, probe);
  files.make_directory(probe);
  const bool same = files.exists(joined(source, kProbe));
  remove_probe(files, probe);
  if (same)
    base::raise(base::error::kPathFileAccess, source + " and " + target + " are the same folder");
}

bool copy_tree(Files& files, const Tree& tree, const std::string& target, const CopyPlan& plan,
               const TreeHooks& hooks) {
  if (!plan.replaced.empty()) {
    if (!hooks.may_replace)
      base::raise(base::error::kFileExists, plan.replaced + " already exists and is a different file");
    if (!hooks.may_replace(plan.replaced))
      return false;
  }
  return Copier(files, tree, target, hooks).run(plan);
}

void remove_copied(Files& files, const Tree& tree, const std::string& target) {
  require_copied(files, tree, target);
  FolderGuard guard(files, tree.top);
  for (auto entry = tree.entries.rbegin(); entry != tree.entries.rend(); ++entry) {
    const std::string path = joined(tree.top, entry->path);
    guard.enter(folder_of(entry->path));
    base::Trap trap;
    trap([&] {
      if (!entry->directory)
        files.remove(path);
      else if (files.list(path).empty())
        files.remove_directory(path);
    });
    const bool gone =
        trap.number() == base::error::kFileNotFound || trap.number() == base::error::kPathNotFound;
    if (trap.number() != 0 && !gone)
      base::raise(trap.number(), trap.description());
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
