#include "lifecycle/rename/rename_plan.hpp"

#include <algorithm>

#include "base/errors.hpp"
#include "base/text.hpp"
#include "creation/paths.hpp"
#include "lifecycle/rename/dir_shr_rename.hpp"
#include "lifecycle/rename/rename_names.hpp"
#include "lifecycle/trees/folder_use.hpp"
#include "lifecycle/trees/own_tree.hpp"
#include "platform/adsi.hpp"
#include "session/session.hpp"

namespace twk::lifecycle {
namespace {

using platform::ShareInfo502;
using session::Session;

/// A path of the account, and where it leads on the server.
struct AccountPath {
  bool is_home = false;
  std::string text;         ///< as the account has it
  TreePath path;            ///< the same in parts
  TreePath folder;          ///< by the share of the drive
  TreePath folder_now;      ///< the same before any renaming
  std::size_t settled = 0;  ///< number of parts of `folder` whose names are final

  /// The parts of `folder` that belong to the share.
  [[nodiscard]] std::size_t depth() const { return folder.parts.size() - path.parts.size(); }
};

AccountPath locate(Session& session, std::string_view text, bool is_home) {
  AccountPath found;
  found.is_home = is_home;
  found.text = text;
  found.path = parse_tree_path(text);
  found.folder = parse_tree_path(Admin_Path_Of(session, text, Has_Sub_Path(text)));
  found.folder_now = found.folder;
  return found;
}

/// The server's own spelling, "D:\Users\jo", with the parts of a path through the drive's share.
std::vector<std::string> parts_of_folder(std::string_view folder) {
  std::vector<std::string> parts;
  for (std::string& part : base::split(folder, '\\')) {
    if (!part.empty())
      parts.push_back(std::move(part));
  }
  if (!parts.empty())
    parts.erase(parts.begin());
  return parts;
}

bool lies_in(const TreePath& inner, const TreePath& outer) {
  return base::equals_fold(inner.server, outer.server) && base::equals_fold(inner.share, outer.share) &&
         inner.parts.size() >= outer.parts.size() &&
         std::equal(outer.parts.begin(), outer.parts.end(), inner.parts.begin(),
                    [](const std::string& a, const std::string& b) { return base::equals_fold(a, b); });
}

struct NamedPart {
  std::size_t place = 0;
  std::string name;  ///< the user's, from the given ones
};

std::optional<NamedPart> named_part(const AccountPath& path, const std::vector<std::string>& names) {
  for (const std::string& name : names) {
    for (std::size_t i = path.folder.parts.size(); i > path.settled; --i) {
      if (holds_word(path.folder.parts[i - 1], name))
        return NamedPart{i - 1, name};
    }
  }
  return std::nullopt;
}

/// The first parts of a path.
TreePath first_parts(TreePath path, std::size_t count) {
  path.parts.resize(count);
  return path;
}

TreePath beside(TreePath path, const std::string& name) {
  path.parts.back() = name;
  return path;
}

ShareInfo502 read_share(Session& session, const std::string& server, const std::string& name) {
  ShareInfo502 info;
  base::Trap trap;
  if (!trap([&] { info = session.platform.network.NetShareGetInfo(server, name); })) {
    base::raise(trap.number(),
                "The share " + name + " on " + server +
                    " could not be made again as it is, because its access list cannot be read: " +
                    trap.description());
  }
  info.shi502_current_uses = 0;
  return info;
}

bool is_taken(Session& session, const TreePath& path) {
  base::Trap trap;
  return trap([&] { static_cast<void>(session.platform.files.status(path.text())); });
}

/// Plans one folder after the other, each as it will be when the previous one has its new name.
class Planner {
 public:
  Planner(Session& session, const RenamedUser& user) : session_(session), user_(user) {}

  void add(const AccountPath& path) { paths_.push_back(path); }
  PlannedFolder plan(bool is_home);
  /// True when the path follows a planned folder.
  [[nodiscard]] bool follows(bool is_home) const;

 private:
  FolderRenaming renaming_of(const AccountPath& path, const NamedPart& part);
  void add_shares(FolderRenaming& renaming, const TreePath& now, const NamedPart& part);
  ShareInfo502 renamed_share(const ShareInfo502& before, const FolderRenaming& renaming,
                             const NamedPart& part);
  [[nodiscard]] bool is_of_account(const std::string& server, const std::string& share) const;
  void require_free(const FolderRenaming& renaming, const TreePath& now);
  void require_own(const FolderRenaming& renaming, const TreePath& now);
  void settle(FolderRenaming& renaming);

  Session& session_;
  const RenamedUser& user_;
  std::vector<AccountPath> paths_;
  std::vector<ShareChange> shares_;  ///< of the renamings so far
};

PlannedFolder Planner::plan(bool is_home) {
  const auto path = std::find_if(paths_.begin(), paths_.end(),
                                 [&](const AccountPath& one) { return one.is_home == is_home; });
  PlannedFolder planned;
  planned.path = path->text;
  const auto part = named_part(*path, user_.old_names);
  if (!part) {
    planned.fate = path->settled > 0 ? FolderFate::kFollows : FolderFate::kOtherName;
    planned.why = "No folder of " + path->folder.text() + " has the name " + user_.old_names.front();
    return planned;
  }
  FolderRenaming renaming = renaming_of(*path, *part);
  planned.fate = FolderFate::kFollows;
  if (renaming.after.parts.back() == renaming.before.parts.back())
    return planned;
  const TreePath now = first_parts(path->folder_now, part->place + 1);
  add_shares(renaming, now, *part);
  require_own(renaming, now);
  require_free(renaming, now);
  settle(renaming);
  planned.fate = FolderFate::kRenamed;
  planned.renaming = std::move(renaming);
  return planned;
}

bool Planner::follows(bool is_home) const {
  return std::any_of(paths_.begin(), paths_.end(),
                     [&](const AccountPath& path) { return path.is_home == is_home && path.settled > 0; });
}

FolderRenaming Planner::renaming_of(const AccountPath& path, const NamedPart& part) {
  FolderRenaming renaming;
  renaming.before = first_parts(path.folder, part.place + 1);
  const std::string name = replace_word(renaming.before.parts.back(), part.name, user_.new_name);
  if (const std::string why = why_no_folder_name(name); !why.empty())
    base::raise(base::error::kBadFileName, "No folder can be named \"" + name + "\": it " + why);
  renaming.after = beside(renaming.before, name);
  return renaming;
}

void Planner::add_shares(FolderRenaming& renaming, const TreePath& now, const NamedPart& part) {
  for (const SharedFolder& shared : folder_use(session_)->shares_within(now, {})) {
    const auto known = std::find_if(shares_.begin(), shares_.end(), [&](const ShareChange& one) {
      return base::equals_fold(one.before.shi502_netname, shared.share);
    });
    ShareChange change;
    change.before = known != shares_.end() ? known->after : read_share(session_, now.server, shared.share);
    change.after = renamed_share(change.before, renaming, part);
    renaming.shares.push_back(std::move(change));
  }
}

/// Only a share that the account's own paths go through is renamed.
ShareInfo502 Planner::renamed_share(const ShareInfo502& before, const FolderRenaming& renaming,
                                    const NamedPart& part) {
  ShareInfo502 after = before;
  std::vector<std::string> parts = parts_of_folder(before.shi502_path);
  parts.at(renaming.after.parts.size() - 1) = renaming.after.parts.back();
  after.shi502_path = before.shi502_path.substr(0, 2);
  for (const std::string& one : parts)
    after.shi502_path += "\\" + one;
  if (is_of_account(renaming.before.server, before.shi502_netname))
    after.shi502_netname = replace_word(before.shi502_netname, part.name, user_.new_name);
  if (const std::string why = why_no_share_name(after.shi502_netname); !why.empty())
    base::raise(base::error::kBadFileName,
                "No share can be named \"" + after.shi502_netname + "\": it " + why);
  return after;
}

bool Planner::is_of_account(const std::string& server, const std::string& share) const {
  return std::any_of(paths_.begin(), paths_.end(), [&](const AccountPath& path) {
    return base::equals_fold(path.path.server, server) && base::equals_fold(path.path.share, share);
  });
}

/// `now` is the folder before any renaming.
void Planner::require_own(const FolderRenaming& renaming, const TreePath& now) {
  Owner owner;
  owner.account = user_.account;
  for (const AccountPath& path : paths_) {
    if (lies_in(first_parts(path.folder_now, path.depth()), now))
      owner.own_share = path.path.share;
  }
  require_own_tree(session_, now.text(), owner);
  for (const ShareChange& share : renaming.shares)
    require_own_share(session_, now.server, share.before.shi502_netname, owner);
}

void Planner::require_free(const FolderRenaming& renaming, const TreePath& now) {
  const TreePath target = beside(
      now, renaming.is_change_of_case() ? renaming.halfway().parts.back() : renaming.after.parts.back());
  if (is_taken(session_, target))
    base::raise(base::error::kFileExists, target.text() + " already exists");
  if (!renaming.is_change_of_case()) {
    const auto claims = folder_use(session_)->claims_within(target, user_.account);
    if (!claims.empty())
      base::raise(base::error::kFileExists, target.text() + " is the " + claims.front().what + " of " +
                                                claims.front().account + " (" + claims.front().path + ")");
  }
  for (const ShareChange& share : renaming.shares) {
    const std::string& name = share.after.shi502_netname;
    if (!base::equals_fold(share.before.shi502_netname, name) &&
        folder_use(session_)->folder_of_share(now.server, name))
      base::raise(platform::network_error::kDuplicateShare,
                  "The server " + now.server + " has a share " + name + " already");
  }
}

/// Updates the account's paths for what is planned next.
void Planner::settle(FolderRenaming& renaming) {
  const std::size_t place = renaming.before.parts.size() - 1;
  for (AccountPath& path : paths_) {
    if (!lies_in(path.folder, renaming.before))
      continue;
    const std::size_t depth = path.depth();
    path.folder.parts[place] = renaming.after.parts.back();
    path.settled = place + 1;
    if (place >= depth)
      path.path.parts[place - depth] = renaming.after.parts.back();
    for (const ShareChange& share : renaming.shares) {
      if (base::equals_fold(share.before.shi502_netname, path.path.share))
        path.path.share = share.after.shi502_netname;
    }
    std::string text = path.path.text();
    if (text != path.text)
      renaming.paths.push_back({path.is_home, std::exchange(path.text, std::move(text)), path.text});
  }
  shares_.insert(shares_.end(), renaming.shares.begin(), renaming.shares.end());
}

/// Why a path is left alone by rule; empty when it is not.
std::string why_refused(std::string_view path, bool is_home) {
  const std::string server = creation::Get_Server_Name(path);
  const std::string share = creation::Get_Share_Name(path);
  if (!is_home && base::upper(share) == "NETLOGON")
    return "Unable Rename NETLOGON Share";
  if (!is_home && base::upper(server) == "%LOGONSERVER%")
    return "Unable to Rename share from %LOGONSERVER%";
  if (share.empty())
    return "Could not get share for " + std::string(path);
  if (server.empty())
    return "Could not get server for " + std::string(path);
  return {};
}

/// What can be said about a path without planning; kRenamed when it needs planning.
PlannedFolder look_at(Session& session, std::string path, bool is_home) {
  PlannedFolder planned;
  planned.path = std::move(path);
  if (planned.path.empty())
    return planned;
  planned.fate = FolderFate::kRenamed;
  if (planned.why = why_refused(planned.path, is_home); !planned.why.empty()) {
    planned.fate = FolderFate::kRefused;
  } else if (!Dir_Exists(session, planned.path)) {
    planned.fate = FolderFate::kMissing;
    planned.why = planned.path + " is not there";
  }
  return planned;
}

/// Plans those of the two that can be. A path that does not lead to a folder yet still follows the other one.
void plan_all(Session& session, const RenamedUser& user, std::initializer_list<PlannedFolder*> folders,
              const PlannedFolder* home) {
  Planner planner(session, user);
  for (const PlannedFolder* const folder : folders) {
    base::Trap nowhere(folder->fate == FolderFate::kRenamed);
    if (folder->fate == FolderFate::kRenamed || folder->fate == FolderFate::kMissing)
      nowhere([&] { planner.add(locate(session, folder->path, folder == home)); });
  }
  for (PlannedFolder* const folder : folders) {
    if (folder->fate == FolderFate::kRenamed)
      *folder = planner.plan(folder == home);
  }
  for (PlannedFolder* const folder : folders) {
    if (folder->fate == FolderFate::kMissing && planner.follows(folder == home))
      folder->fate = FolderFate::kFollows;
  }
}

}  // namespace

bool FolderRenaming::is_change_of_case() const {
  return base::equals_fold(before.parts.back(), after.parts.back());
}

TreePath FolderRenaming::halfway() const {
  return beside(after, after.parts.back() + "~renamed");
}

std::string path_of(const platform::ObjectPtr& user, bool is_home) {
  const platform::User account(user);
  return std::string(base::trim(is_home ? account.HomeDirectory() : account.Profile()));
}

FoldersPlan plan_folders(Session& session, const RenamedUser& user) {
  FoldersPlan plan{look_at(session, path_of(user.object, true), true),
                   look_at(session, path_of(user.object, false), false)};
  plan_all(session, user, {&plan.home, &plan.profile}, &plan.home);
  return plan;
}

PlannedFolder plan_folder(Session& session, const RenamedUser& user, bool is_home) {
  PlannedFolder planned = look_at(session, path_of(user.object, is_home), is_home);
  plan_all(session, user, {&planned}, is_home ? &planned : nullptr);
  return planned;
}

}  // namespace twk::lifecycle
