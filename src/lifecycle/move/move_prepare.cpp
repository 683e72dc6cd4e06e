#include "base/errors.hpp"
#include "base/text.hpp"
#include "creation/paths.hpp"
#include "format/replace.hpp"
#include "lifecycle/account/account_log.hpp"
#include "lifecycle/move/move_run.hpp"
#include "lifecycle/rename/dir_shr_rename.hpp"
#include "lifecycle/trees/folder_use.hpp"
#include "resources/account_lookup.hpp"
#include "resources/directory_permissions.hpp"
#include "resources/share502.hpp"

namespace twk::lifecycle {
namespace {

using platform::Answer;
using session::Session;

bool is_yes(Session& session, const std::string& text, std::string_view title) {
  return session.run.terms.silent ||
         session.platform.dialogs.MsgBox(text, platform::Buttons::kYesNo, platform::Icon::kQuestion, title) ==
             Answer::kYes;
}

struct OldFolderTexts {
  std::string_view log;
  std::string_view question;
};

MoveStep check_old_folder(MoveRun& run, const std::string& path, const OldFolderTexts& texts) {
  Session& session = run.session;
  if (path.empty() || Dir_Exists(session, path))
    return MoveStep::kGoOn;
  session.log.line(texts.log);
  if (is_yes(session, path + "\r\n" + std::string(texts.question) + "\r\nDo you want to continue ?",
             "Warning..."))
    return MoveStep::kGoOn;
  session.log.line("Move Cancelled");
  session.run.view().step("Move Cancelled");
  return MoveStep::kDeclined;
}

std::string expand(const MoveRun& run, std::string_view text) {
  return format::FRString(format::FRString(base::trim(text), "%Server%", run.server), "%UserName%", run.key);
}

/// A share point that a template has without the backslash at its end gets it here.
std::string reachable(const MoveRun& run, const std::string& local, std::string_view share_point) {
  std::string point = format::FRString(share_point, "%UserName%", run.key);
  while (point.ends_with('\\'))
    point.pop_back();
  if (!share_point.empty())
    point += '\\';
  return creation::reachable_path(run.server, local, point);
}

void resolve(MoveRun& run, MovedFolder& folder, const std::string& local, const std::string& account_path,
             const std::string& share_name, std::string_view share_point) {
  if (!local.empty()) {
    folder.new_local = expand(run, local);
    folder.new_admin = reachable(run, folder.new_local, share_point);
    folder.wanted = true;
  }
  folder.new_unc = expand(run, account_path);
  folder.new_share = format::FRString(share_name, "%UserName%", run.key);
}

struct NewFolderTexts {
  std::string_view question;
  std::string_view exists;
  std::string_view cancelled;
  std::string_view failure;
  std::string_view status;
  std::string_view made;
};

constexpr NewFolderTexts kNewHome{"Home Dir ",
                                  "Home Directory ",
                                  "User move cancelled.",
                                  "Error Creating Home dir :",
                                  "Error Home Profile Directory.",
                                  "Created New Home Dir: "};
constexpr NewFolderTexts kNewProfile{"Profile Dir ",
                                     "Profile Directory ",
                                     "User cancelled move.",
                                     "Error Creating Profile dir :",
                                     "Error creating Profile Directory.",
                                     "Created New Profile Dir :"};

MoveStep make_new_folder(MoveRun& run, MovedFolder& folder, const NewFolderTexts& texts) {
  Session& session = run.session;
  if (!folder.wanted)
    return MoveStep::kGoOn;
  const std::string& path = folder.new_admin;
  folder.was_there = Dir_Exists(session, path);
  if (!folder.was_there) {
    prepare_failure(session, texts.status, std::string(texts.failure) + path);
    session.platform.files.make_directory(path);
    session.log.line(std::string(texts.made) + path);
    return MoveStep::kGoOn;
  }
  if (is_yes(session, std::string(texts.question) + path + " Already Exist \r\nContinue ?",
             "Error Creating Dir"))
    return MoveStep::kGoOn;
  session.run.view().step("Process Cancelled...");
  session.log.line(std::string(texts.exists) + path + " Already Exist ");
  session.log.line(texts.cancelled);
  return MoveStep::kDeclined;
}

struct ShareTexts {
  std::string_view remark;
  std::string_view made;
  std::string_view failed;
};

/// A share that already leads to the new folder was made by an interrupted move.
resources::ShareResult make_share(MoveRun& run, const MovedFolder& folder, const ShareTexts& texts) {
  Session& session = run.session;
  const auto use = folder_use(session);
  if (use->folder_of_share(run.server, folder.new_share)) {
    session.log.line("The share already exists: " + folder.new_share);
    return resources::share_list_of_table(session, run.key).result;
  }
  const resources::ShareResult result = resources::CreateShare(
      session, run.server, folder.new_share, folder.new_local, std::string(texts.remark), run.key);
  if (result != resources::ShareResult::kFailed)
    use->add_share(run.server, folder.new_share, made_places(run, folder).front());
  return result;
}

MoveStep make_new_share(MoveRun& run, MovedFolder& folder, const ShareTexts& texts) {
  if (folder.new_share.empty())
    return MoveStep::kGoOn;
  const resources::ShareResult result = make_share(run, folder, texts);
  folder.share_result = static_cast<std::int16_t>(result);
  if (result == resources::ShareResult::kMade) {
    run.session.log.line(std::string(texts.made) + folder.new_share);
    return MoveStep::kGoOn;
  }
  warn(run, std::string(texts.failed) + folder.new_share);
  const bool goes_on =
      result != resources::ShareResult::kFailed ||
      wants_new_paths(run, "The share " + folder.new_share + " could not be made on " + run.server);
  return goes_on ? MoveStep::kGoOn : MoveStep::kFailed;
}

void set_permissions(MoveRun& run, const MovedFolder& folder) {
  if (!folder.wanted)
    return;
  std::string server = resources::server_for_accounts(run.session);
  std::int16_t warning = 1;
  if (!resources::Set_Permissions(run.session, server, folder.new_admin, run.key, warning)) {
    run.session.log.line("Security Failed for " + folder.new_admin);
    // A table without rows prescribes nothing; one that cannot be read has already been reported.
    run.warned |= !run.session.log.reasons().empty();
  } else if (warning != 1) {
    warn(run, "Not all permissions were set on " + folder.new_admin);
  }
}

}  // namespace

MoveStep check_old_folders(MoveRun& run) {
  const MoveStep home = check_old_folder(
      run, run.home.old_path, {"Cannot Find Users Home Directory", "Cannot find Users Existing Home Dir"});
  if (home != MoveStep::kGoOn)
    return home;
  return check_old_folder(run, run.profile.old_path,
                          {"Cannot find users profile Directory", "Cannot find Users Existing Profile Dir"});
}

void resolve_new_folders(MoveRun& run) {
  const creation::TemplateValues& target = run.target;
  resolve(run, run.profile, target.ProfileDir, target.ProfilePath, target.ProfileShare,
          target.ProfileSharePoint);
  resolve(run, run.home, target.HomeDir, target.HomePath, target.HomeShare, target.HomeSharePoint);
}

MoveStep make_new_folders(MoveRun& run) {
  run.session.run.view().step("Creating Dirs...");
  const MoveStep home = make_new_folder(run, run.home, kNewHome);
  return home != MoveStep::kGoOn ? home : make_new_folder(run, run.profile, kNewProfile);
}

MoveStep make_new_shares(MoveRun& run) {
  prepare_failure(run.session, "Error1.", "Error1 ");
  const MoveStep profile =
      make_new_share(run, run.profile,
                     {"Users Profile Share", "Creating Profile Share: ", "Error Creating Profile Share: "});
  if (profile != MoveStep::kGoOn)
    return profile;
  return make_new_share(run, run.home,
                        {"Users Home Share", "Creating Home Share: ", "Error Creating Home Share: "});
}

void set_new_permissions(MoveRun& run) {
  run.session.run.view().step("Setting Dir Permisions");
  set_permissions(run, run.home);
  set_permissions(run, run.profile);
}

}  // namespace twk::lifecycle
