#include "lifecycle/rename/rename_shr_dir.hpp"

#include <algorithm>
#include <functional>

#include "base/error_words.hpp"
#include "base/errors.hpp"
#include "base/text.hpp"
#include "lifecycle/rename/rename_names.hpp"
#include "lifecycle/trees/folder_use.hpp"
#include "lifecycle/trees/own_tree.hpp"
#include "platform/adsi.hpp"
#include "session/log_tab.hpp"
#include "session/session.hpp"

namespace twk::lifecycle {
namespace {

using platform::ShareInfo502;
using session::Session;

/// The steps that undo those of a renaming, the last one first.
class Rollback {
 public:
  explicit Rollback(Session& session) : session_(session) {}

  /// `failure` is the message when the step fails.
  void add(std::string failure, std::function<void()> step) {
    steps_.push_back({std::move(failure), std::move(step)});
  }
  void run() {
    for (auto step = steps_.rbegin(); step != steps_.rend(); ++step) {
      base::Trap trap;
      if (!trap(step->back))
        session_.log.reason(step->failure + ": " + base::in_words(trap.number(), trap.description()) +
                            ". Start the same renaming again, which continues from here");
    }
  }

 private:
  struct Step {
    std::string failure;
    std::function<void()> back;
  };
  Session& session_;
  std::vector<Step> steps_;
};

std::optional<std::string> folder_of(Session& session, const std::string& server, const std::string& share) {
  std::optional<std::string> folder;
  base::Trap trap;
  trap([&] { folder = session.platform.network.NetShareGetInfo(server, share).shi502_path; });
  if (trap.number() != 0 && trap.number() != platform::network_error::kShareNotFound)
    base::raise(trap.number(), trap.description());
  return folder;
}

/// A share that now leads to another folder belongs to someone else, and stays.
void remove_share(Session& session, const std::string& server, const ShareInfo502& share) {
  const auto folder = folder_of(session, server, share.shi502_netname);
  if (folder && base::equals_fold(*folder, share.shi502_path))
    session.platform.network.NetShareDel(server, share.shi502_netname);
}

void make_share(Session& session, const std::string& server, const ShareInfo502& share) {
  const auto folder = folder_of(session, server, share.shi502_netname);
  if (!folder || !base::equals_fold(*folder, share.shi502_path))
    session.platform.network.NetShareAdd(server, share);
}

/// When only the spelling changes, the folder exists under either name.
void change_case(Session& session, const TreePath& from, const TreePath& halfway, const TreePath& to) {
  platform::Files& files = session.platform.files;
  if (!files.exists(halfway.text())) {
    if (files.status(from.text()).name == to.parts.back())
      return;
    files.rename(from.text(), halfway.text());
  }
  files.rename(halfway.text(), to.text());
}

void rename_folder(Session& session, const FolderRenaming& renaming, bool back) {
  const TreePath& from = back ? renaming.after : renaming.before;
  const TreePath& to = back ? renaming.before : renaming.after;
  if (renaming.is_change_of_case())
    return change_case(session, from, renaming.halfway(), to);
  platform::Files& files = session.platform.files;
  // An interrupted renaming may already have come this far.
  if (files.exists(from.text()) || !files.exists(to.text()))
    files.rename(from.text(), to.text());
}

void remove_old_share(Session& session, const std::string& server, const ShareChange& share, Rollback& back) {
  const std::string& name = share.before.shi502_netname;
  back.add(
      "The share " + name + " of " + share.before.shi502_path + " on " + server + " could not be made again",
      [&session, &server, &share] { make_share(session, server, share.before); });
  base::Trap trap;
  if (!trap([&] { remove_share(session, server, share.before); }))
    base::raise(trap.number(),
                "Could not remove Share: \\\\" + server + "\\" + name + ": " + trap.description());
}

void make_new_share(Session& session, const std::string& server, const ShareChange& share, Rollback& back) {
  const std::string& old_name = share.before.shi502_netname;
  const std::string& name = share.after.shi502_netname;
  back.add("The share " + name + " on " + server + " could not be removed again",
           [&session, &server, &share] { remove_share(session, server, share.after); });
  base::Trap trap;
  if (!trap([&] { make_share(session, server, share.after); })) {
    session.log.line("Failed to create New share: " + name + "  \\\\" + server + "\\" + old_name);
    session.log.line("Error Deleting/Creating Shares: " + old_name + " / " + name);
    base::raise(trap.number(), trap.description());
  }
  session.log.line("Created new share: " + name);
}

bool is_before(const PathChange& change, const std::string& path) {
  return path != change.after && base::equals_fold(path, change.before);
}

void write_paths(const platform::ObjectPtr& object, const FolderRenaming& renaming) {
  platform::User account(object);
  for (const PathChange& change : renaming.paths) {
    if (!is_before(change, path_of(object, change.is_home)))
      continue;
    if (change.is_home)
      account.put_HomeDirectory(change.after);
    else
      account.put_Profile(change.after);
  }
  account.SetInfo();
}

void tell_use(Session& session, const std::string& account, const FolderRenaming& renaming) {
  const auto use = folder_use(session);
  for (const ShareChange& share : renaming.shares) {
    use->forget_share(renaming.before.server, share.before.shi502_netname);
    use->add_share(renaming.before.server, share.after.shi502_netname, share.after.shi502_path);
  }
  for (const PathChange& change : renaming.paths)
    use->account_has(account, change.is_home ? "home" : "profile", change.after);
}

void run_renaming(Session& session, const RenamedUser& user, const FolderRenaming& renaming) {
  Rollback back(session);
  try {
    for (const ShareChange& share : renaming.shares)
      remove_old_share(session, renaming.before.server, share, back);
    back.add(renaming.after.text() + " could not get its name " + renaming.before.parts.back() + " again",
             [&] { rename_folder(session, renaming, true); });
    rename_folder(session, renaming, false);
    for (const ShareChange& share : renaming.shares)
      make_new_share(session, renaming.before.server, share, back);
    write_paths(user.object, renaming);
  } catch (const base::RuntimeError&) {
    back.run();
    throw;
  }
  tell_use(session, user.account, renaming);
}

struct FolderTexts {
  std::string_view renamed;
  std::string_view told_renamed;
  std::string_view failed;
  std::string_view told_failed;
  std::string_view missing;
  std::string_view told_missing;
  std::string_view told_other;
};

/// Reports the outcome for one folder; False when it should have been renamed but was not.
bool rename_one(Session& session, const PreparedRename& prepared, const PlannedFolder& folder,
                const FolderTexts& texts) {
  const std::string& name = prepared.user.new_name;
  switch (folder.fate) {
    case FolderFate::kNone:
    case FolderFate::kFollows:
      return true;
    case FolderFate::kMissing:
      session.log.line(texts.missing);
      session.log.reason(folder.why);
      session::LOG_TAB(session, session::kRed, texts.told_missing);
      return true;
    case FolderFate::kOtherName:
      session.log.reason(folder.why);
      session::LOG_TAB(session, session::kYellow, std::string(texts.told_other) + name);
      return true;
    case FolderFate::kRefused:
    case FolderFate::kRenamed:
      break;
  }
  if (Rename_ShrDir(session, prepared.user, folder)) {
    session.log.line(std::string(texts.renamed) + prepared.user.old_names.front() + " to " + name);
    session::LOG_TAB(session, session::kGreen, std::string(texts.told_renamed) + name);
    return true;
  }
  session.log.line(std::string(texts.failed) + folder.path);
  session::LOG_TAB(session, session::kRed, std::string(texts.told_failed) + name);
  return folder.fate == FolderFate::kRefused;
}

/// True when the account already has the new paths of this renaming, and the folder followed.
bool is_done(Session& session, const platform::ObjectPtr& object, const FolderRenaming& renaming) {
  if (renaming.paths.empty() ||
      (!renaming.is_change_of_case() && session.platform.files.exists(renaming.before.text())))
    return false;
  return std::none_of(renaming.paths.begin(), renaming.paths.end(), [&](const PathChange& change) {
    return is_before(change, path_of(object, change.is_home));
  });
}

std::vector<const FolderRenaming*> unfinished(Session& session, const RenameRecord& record,
                                              const platform::ObjectPtr& object) {
  std::vector<const FolderRenaming*> all;
  for (const auto* const renaming : {&record.home, &record.profile}) {
    if (*renaming && !is_done(session, object, **renaming))
      all.push_back(&**renaming);
  }
  return all;
}

/// True when the record mentions this path, in its old or new form.
bool knows_path(const RenameRecord& record, bool is_home, const std::string& path) {
  for (const auto* const renaming : {&record.home, &record.profile}) {
    if (!*renaming)
      continue;
    for (const PathChange& change : (*renaming)->paths) {
      if (change.is_home == is_home &&
          (base::equals_fold(path, change.before) || base::equals_fold(path, change.after)))
        return true;
    }
  }
  return false;
}

/// True when the account still has the paths mentioned in a recorded renaming.
bool applies(Session& session, const RenameRecord& record, const platform::ObjectPtr& object) {
  for (const FolderRenaming* const renaming : unfinished(session, record, object)) {
    for (const PathChange& change : renaming->paths) {
      if (!knows_path(record, change.is_home, path_of(object, change.is_home)))
        return false;
    }
  }
  return true;
}

/// True when the folder has its old name and is shared as before.
bool is_untouched(Session& session, const FolderRenaming& renaming) {
  const bool shared =
      std::all_of(renaming.shares.begin(), renaming.shares.end(), [&](const ShareChange& share) {
        return folder_of(session, renaming.before.server, share.before.shi502_netname).has_value();
      });
  return shared && session.platform.files.exists(renaming.before.text());
}

/// What is left to do is still the user's own.
void check_again(Session& session, const RenamedUser& user, const FolderRenaming& renaming) {
  TreePath where = renaming.before;
  for (const TreePath& other : {renaming.halfway(), renaming.after}) {
    if (!session.platform.files.exists(where.text()))
      where = other;
  }
  // Shares made before the interruption are the user's, although no path of the account says so yet.
  Owner owner{user.account, {}};
  for (const ShareChange& share : renaming.shares) {
    const std::string& name = share.after.shi502_netname;
    const auto use = folder_use(session);
    const auto shared = use->folder_of_share(where.server, name);
    if (shared && base::equals_fold(*shared, share.after.shi502_path))
      use->forget_share(where.server, name);
    owner.own_share = share.before.shi502_netname;
  }
  require_own_tree(session, where.text(), owner);
}

FoldersPlan plan_on_record(Session& session, const RenamedUser& user, const RenameRecord& record) {
  for (const FolderRenaming* const renaming : unfinished(session, record, user.object))
    check_again(session, user, *renaming);
  FoldersPlan plan;
  for (const bool is_home : {true, false}) {
    PlannedFolder& folder = is_home ? plan.home : plan.profile;
    const auto& renaming = is_home ? record.home : record.profile;
    const std::string path = path_of(user.object, is_home);
    if (renaming && !is_done(session, user.object, *renaming))
      folder = {FolderFate::kRenamed, path, {}, renaming};
    else if (renaming || knows_path(record, is_home, path))
      folder = {FolderFate::kFollows, path, {}, {}};
    else
      folder = plan_folder(session, user, is_home);
  }
  return plan;
}

FoldersPlan plan_of(Session& session, const RenamedUser& user, const std::optional<RenameRecord>& earlier) {
  const bool pending = earlier && !unfinished(session, *earlier, user.object).empty() &&
                       applies(session, *earlier, user.object);
  if (pending && earlier->new_name == user.new_name)
    return plan_on_record(session, user, *earlier);
  if (pending) {
    for (const FolderRenaming* const renaming : unfinished(session, *earlier, user.object)) {
      if (!is_untouched(session, *renaming))
        base::raise(base::error::kPathFileAccess, "The renaming of " + earlier->old_name + " to " +
                                                      earlier->new_name +
                                                      " was interrupted. Start it again before another one");
    }
  }
  return plan_folders(session, user);
}

/// Folders are renamed only with a record; without it the list of a removed share would be lost.
void put_on_record(Session& session, const PreparedRename& prepared) {
  if (prepared.keeps_record || prepared.record.names.empty())
    return;
  base::Trap trap;
  if (trap([&] {
        if (prepared.run_record != nullptr)
          prepared.run_record->begin(prepared.record);
        else
          write_rename_record(session, prepared.record);
      }))
    return;
  const std::string why =
      "The renaming cannot be recorded: " + base::in_words(trap.number(), trap.description());
  if (prepared.record.home || prepared.record.profile)
    base::raise(trap.number(), why);
  session.log.line(why);
}

}  // namespace

PreparedRename prepare_rename(Session& session, const RenameOrder& order) {
  PreparedRename prepared;
  prepared.user = {order.object, order.account, {order.old_name}, order.new_name};
  RenameRecord& record = prepared.record;
  record.identifier = record_identifier(order.object);
  if (order.run_record == nullptr)
    settle_run_record(session);
  const auto earlier = read_rename_record(session, record.identifier);
  record.account = order.new_account;
  record.names = order.names;
  if (earlier)
    record.names.insert(record.names.end(), earlier->names.begin(), earlier->names.end());
  if (order.folders) {
    if (const std::string why = why_no_folder_name(order.new_name); !why.empty())
      base::raise(base::error::kBadFileName, "No folder can be named \"" + order.new_name + "\": it " + why);
    if (earlier && !earlier->old_name.empty())
      prepared.user.old_names.insert(prepared.user.old_names.begin(), earlier->old_name);
    prepared.plan = plan_of(session, prepared.user, earlier);
    record.old_name = prepared.user.old_names.front();
    record.new_name = order.new_name;
    record.home = prepared.plan.home.renaming;
    record.profile = prepared.plan.profile.renaming;
  } else {
    prepared.keeps_record = earlier && !unfinished(session, *earlier, order.object).empty();
  }
  if (!order.folders && !earlier)
    prepared.run_record = order.run_record;
  put_on_record(session, prepared);
  return prepared;
}

void end_rename(Session& session, const PreparedRename& prepared) {
  if (prepared.run_record != nullptr)
    prepared.run_record->end();
  else if (!prepared.keeps_record)
    remove_rename_record(session, prepared.record.identifier);
}

bool Rename_ShrDir(Session& session, const RenamedUser& user, const PlannedFolder& folder) {
  if (!folder.renaming) {
    session.log.reason(folder.why);
    return folder.fate == FolderFate::kFollows;
  }
  try {
    run_renaming(session, user, *folder.renaming);
    return true;
  } catch (const base::RuntimeError& failure) {
    session.log.reason(base::in_words(failure.number(), failure.description()));
    return false;
  }
}

bool rename_folders_of(Session& session, const PreparedRename& prepared, const ProfileTexts& texts) {
  const bool home = rename_one(
      session, prepared, prepared.plan.home,
      {"Renamed Home Directory: ", " Home Directory and Share renamed for ",
       "Failed to Rename Home Directory: ", " Failed to Rename Home directory and share for ",
       "Failed to find Home direcotry: ", " Failed to find Home Dir", " Home Directory not renamed for "});
  // A profile that follows the home, or is renamed within it, waits for that.
  const auto& profile = prepared.plan.profile.renaming;
  const auto& outer = prepared.plan.home.renaming;
  if (!home && profile && outer && holds_folder(outer->after.text(), profile->before.text()))
    return false;
  return rename_one(session, prepared, prepared.plan.profile,
                    {texts.renamed, " Profile Directory and Share renamed for ", texts.failed,
                     " Failed to Rename Profile directory and share for ",
                     "Failed to find Profile Directory: ", " Failed to find profile Dir",
                     " Profile Directory not renamed for "}) &&
         home;
}

void tell_folders_stay(Session& session, std::string_view name_of_folders, const std::string& user) {
  session.log.reason("they are named after the " + std::string(name_of_folders) + ", which does not change");
  session::LOG_TAB(session, session::kYellow, " Directories and Shares not renamed for " + user);
}

}  // namespace twk::lifecycle
