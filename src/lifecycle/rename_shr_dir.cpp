#include "lifecycle/rename_shr_dir.hpp"

#include <optional>
#include <vector>

#include "base/errors.hpp"
#include "base/text.hpp"
#include "creation/paths.hpp"
#include "format/variables.hpp"
#include "lifecycle/dir_shr_rename.hpp"
#include "lifecycle/own_tree.hpp"
#include "platform/adsi.hpp"
#include "resources/share502.hpp"
#include "session/session.hpp"

namespace twk::lifecycle {
namespace {

using session::Session;

/// What is renamed: the folders of a path on its server, from the one that carries the name on.
struct Renaming {
  TreePath path;                       ///< as the account has it
  TreePath folder;                     ///< the same by the administrative share
  std::size_t first = 0;               ///< the part of `folder` that is renamed
  std::vector<std::string> new_parts;  ///< of `folder`
  bool share_too = false;
  std::string new_share;
};

/// The folder that carries the name: as a word if there is one, else the last that holds it.
std::optional<std::size_t> named_part(const std::vector<std::string>& parts, std::string_view name) {
  std::optional<std::size_t> found;
  for (std::size_t i = 0; i < parts.size(); ++i) {
    if (holds_word(parts[i], name))
      return i;
    if (base::find_fold(parts[i], name) != base::npos)
      found = i;
  }
  return found;
}

bool is_own_share(const Renaming& plan, std::string_view OldName) {
  if (base::find_fold(plan.path.share, OldName) == base::npos)
    return false;
  const std::size_t depth = plan.folder.parts.size() - plan.path.parts.size();
  return holds_word(plan.path.share, OldName) ||
         (depth > 0 && holds_word(plan.folder.parts[depth - 1], OldName));
}

/// Raises, with a text for the log, when the path leads to no folder of that name.
Renaming plan_renaming(Session& session, std::string_view Path, std::string_view OldName,
                       std::string_view NewName) {
  Renaming plan;
  plan.path = parse_tree_path(Path);
  plan.folder = parse_tree_path(Admin_Path_Of(session, Path, Has_Sub_Path(Path)));
  if (OldName.empty() || base::find_fold(plan.path.server, OldName) != base::npos)
    base::raise(base::error::kPathNotFound, "The name is a part of the server's in " + std::string(Path));
  const auto part = named_part(plan.folder.parts, OldName);
  if (!part)
    base::raise(base::error::kPathNotFound,
                "No folder of " + plan.folder.text() + " bears the name " + std::string(OldName));
  plan.first = *part;
  plan.new_parts = plan.folder.parts;
  for (std::size_t i = plan.first; i < plan.new_parts.size(); ++i)
    plan.new_parts[i] = format::FRString(plan.new_parts[i], OldName, NewName);
  plan.share_too = is_own_share(plan, OldName);
  plan.new_share = plan.share_too ? format::FRString(plan.path.share, OldName, NewName) : plan.path.share;
  return plan;
}

std::string new_account_path(const Renaming& plan) {
  TreePath path = plan.path;
  path.share = plan.new_share;
  const std::size_t depth = plan.folder.parts.size() - plan.path.parts.size();
  path.parts.assign(plan.new_parts.begin() + static_cast<std::ptrdiff_t>(depth), plan.new_parts.end());
  return path.text();
}

/// "D:\Users\ann": where the share's folder is afterwards.
std::string new_share_folder(const Renaming& plan) {
  std::string folder = plan.folder.share.substr(0, 1) + ":";
  for (std::size_t i = 0; i + plan.path.parts.size() < plan.new_parts.size(); ++i)
    folder += "\\" + plan.new_parts[i];
  return folder;
}

/// The first `count` parts under their new names, but for the last, which has the old one where `old_last`.
std::string folder_path(const Renaming& plan, std::size_t count, bool old_last) {
  TreePath path = plan.folder;
  path.parts.assign(plan.new_parts.begin(), plan.new_parts.begin() + static_cast<std::ptrdiff_t>(count));
  if (old_last)
    path.parts.back() = plan.folder.parts[count - 1];
  return path.text();
}

/// From the outermost inwards.
void rename_folders(Session& session, const Renaming& plan) {
  for (std::size_t i = plan.first; i < plan.new_parts.size(); ++i) {
    if (plan.new_parts[i] != plan.folder.parts[i])
      session.platform.files.rename(folder_path(plan, i + 1, true), folder_path(plan, i + 1, false));
  }
}

/// The account's name as it is by now.
std::string account_of(const Session& session, const platform::ObjectPtr& user) {
  return session::is_active_directory(session) ? user->Get("samAccountName").text() : user->Name();
}

/// Sees to it that nobody else's folder is renamed, and that no other is in the way.
void check_folders(Session& session, const Renaming& plan, std::string_view account) {
  const std::string old_path = folder_path(plan, plan.first + 1, true);
  const std::string new_path = folder_path(plan, plan.first + 1, false);
  require_own_tree(session, old_path,
                   {.account = account,
                    .own_share = plan.share_too ? std::string_view(plan.path.share) : std::string_view()});
  if (!base::equals_fold(old_path, new_path) && session.platform.files.exists(new_path))
    base::raise(base::error::kFileExists, new_path + " is there already");
}

bool make_share(Session& session, const Renaming& plan, const std::string& folder, const std::string& share,
                std::string_view user) {
  return resources::CreateShare(session, plan.path.server, share, folder, "Users Home Share",
                                std::string(user)) != resources::ShareResult::kFailed;
}

/// A share that was removed for a renaming which then failed is made again.
void rename_below_share(Session& session, const Renaming& plan, std::string_view OldName) {
  const std::string folder = Share_Local_Path(session, plan.path.text());
  if (!Delete_Share_Of(session, plan.path.text()))
    base::raise(base::error::kPathFileAccess, "Could not remove Share: " + plan.path.text());
  try {
    rename_folders(session, plan);
  } catch (const base::RuntimeError&) {
    if (make_share(session, plan, folder, plan.path.share, OldName))
      session.log.line("Share " + plan.path.share + " is made again");
    throw;
  }
}

/// False when the new share could not be made, which is logged.
bool rename_with_share(Session& session, const Renaming& plan, std::string_view OldName,
                       std::string_view NewName) {
  rename_below_share(session, plan, OldName);
  if (!make_share(session, plan, new_share_folder(plan), plan.new_share, NewName)) {
    session.log.line("Failed to create New share: " + plan.new_share + "  " + plan.path.text());
    session.log.line("Error Deleting/Creating Shares: " + plan.path.share + " / " + plan.new_share);
    return false;
  }
  session.log.line("Created new share: " + plan.new_share);
  return true;
}

/// Paths that are never renamed, or name too little.
bool is_refused(Session& session, std::string_view Path, bool IsHome) {
  const std::string server = creation::Get_Server_Name(Path);
  const std::string share = creation::Get_Share_Name(Path);
  std::string why;
  if (!IsHome && base::upper(share) == "NETLOGON")
    why = "Unable Rename NETLOGON Share";
  else if (!IsHome && base::upper(server) == "%LOGONSERVER%")
    why = "Unable to Rename share from %LOGONSERVER%";
  else if (share.empty())
    why = "Could not get share for " + std::string(Path);
  else if (server.empty())
    why = "Could not get server for " + std::string(Path);
  if (!why.empty())
    session.log.line(why);
  return !why.empty();
}

void write_path(const platform::ObjectPtr& object, bool IsHome, const std::string& path) {
  platform::User user(object);
  if (IsHome)
    user.put_HomeDirectory(path);
  else
    user.put_Profile(path);
  user.SetInfo();
}

struct FolderTexts {
  std::string_view renamed;
  std::string_view told_renamed;
  std::string_view failed;
  std::string_view told_failed;
  std::string_view missing;
  std::string_view told_missing;
};

bool rename_folder_of(Session& session, const platform::ObjectPtr& user, const std::string& path,
                      std::string_view OldName, std::string_view NewName, bool IsHome,
                      const FolderTexts& texts) {
  const std::string new_name(NewName);
  if (!Dir_Exists(session, path)) {
    session.log.line(texts.missing);
    session::LOG_TAB(session, session::kRed, texts.told_missing);
    return false;
  }
  if (Rename_ShrDir(session, user, path, OldName, NewName, IsHome)) {
    session.log.line(std::string(texts.renamed) + std::string(OldName) + " to " + new_name);
    session::LOG_TAB(session, session::kGreen, std::string(texts.told_renamed) + new_name);
    return true;
  }
  session.log.line(std::string(texts.failed) + path);
  session::LOG_TAB(session, session::kRed, std::string(texts.told_failed) + new_name);
  return false;
}

/// A profile under the home's share has moved when it lies below the home; one beside it is renamed itself.
void rename_profile_under_home(Session& session, const platform::ObjectPtr& user, const std::string& path,
                               const std::optional<Renaming>& plan, std::string_view OldName,
                               std::string_view NewName) {
  base::Trap trap;
  if (!plan) {
    trap([&] { write_path(user, false, format::FRString(path, OldName, NewName)); });
  } else {
    trap([&] {
      const std::string moved = folder_path(*plan, plan->new_parts.size(), false);
      const bool beside =
          !session.platform.files.exists(moved) && session.platform.files.exists(plan->folder.text());
      if (beside) {
        check_folders(session, *plan, account_of(session, user));
        rename_folders(session, *plan);
      }
      write_path(user, false, new_account_path(*plan));
    });
  }
  if (trap.number() == 0)
    return;
  session.log.line(trap.description());
  session::LOG_TAB(session, session::kRed,
                   " Failed to Rename Profile directory and share for " + std::string(NewName));
}

}  // namespace

bool Rename_ShrDir(Session& session, const platform::ObjectPtr& user, std::string_view Path,
                   std::string_view OldName, std::string_view NewName, bool IsHome) {
  if (is_refused(session, Path, IsHome))
    return false;
  try {
    const Renaming plan = plan_renaming(session, Path, OldName, NewName);
    check_folders(session, plan, account_of(session, user));
    if (!plan.share_too)
      rename_folders(session, plan);
    else if (!rename_with_share(session, plan, OldName, NewName))
      return false;
    write_path(user, IsHome, new_account_path(plan));
    return true;
  } catch (const base::RuntimeError& failure) {
    session.log.line(failure.description());
    return false;
  }
}

void rename_folders_of(Session& session, const platform::ObjectPtr& user, std::string_view OldName,
                       std::string_view NewName, const ProfileTexts& texts) {
  const platform::User account(user);
  const std::string home(base::trim(account.HomeDirectory()));
  const std::string profile(base::trim(account.Profile()));
  const bool SameShare = Same_Share(profile, home);
  std::optional<Renaming> profile_plan;
  if (SameShare && !profile.empty()) {
    base::Trap unknown;
    unknown([&] { profile_plan = plan_renaming(session, profile, OldName, NewName); });
  }
  bool home_renamed = true;
  if (!home.empty()) {
    home_renamed = rename_folder_of(
        session, user, home, OldName, NewName, true,
        {"Renamed Home Directory: ", " Home Directory and Share renamed for ",
         "Failed to Rename Home Directory: ", " Failed to Rename Home directory and share for ",
         "Failed to find Home direcotry: ", " Failed to find Home Dir"});
  }
  if (profile.empty())
    return;
  // Below a home that was not renamed the profile is where it was.
  if (SameShare) {
    if (home_renamed)
      rename_profile_under_home(session, user, profile, profile_plan, OldName, NewName);
    return;
  }
  rename_folder_of(session, user, profile, OldName, NewName, false,
                   {texts.renamed, " Profile Directory and Share renamed for ", texts.failed,
                    " Failed to Rename Profile directory and share for ",
                    "Failed to find Profile Directory: ", " Failed to find profile Dir"});
}

}  // namespace twk::lifecycle
