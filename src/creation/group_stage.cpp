#include <algorithm>
#include <set>

#include "base/error_words.hpp"
#include "base/text.hpp"
#include "creation/account_stage.hpp"
#include "creation/account_texts.hpp"
#include "directory/operations.hpp"
#include "directory/tree/listed_objects.hpp"
#include "session/session.hpp"
#include "stores/template_store.hpp"

namespace twk::creation {
namespace {

using platform::ObjectPtr;
using session::Session;

constexpr std::string_view kEverybodysGroup = "DOMAIN USERS";
constexpr std::int32_t kLastColumn = 99;

/// By the name in a list, or a directory object's name.
bool is_everybodys(std::string_view name) {
  if (base::starts_with_fold(name, "CN="))
    name.remove_prefix(3);
  return base::equals_fold(name, kEverybodysGroup);
}

/// The path of a group: by its name in a WinNT domain, otherwise its key.
std::string group_path(const Session& session, std::string_view name, std::string_view key) {
  if (!session::is_active_directory(session))
    return directory::winnt_path(session, name);
  return std::string(base::trim(key));
}

/// Adds the account to one group, unless it is already a member: everyone's group is each account's primary
/// one, and a column may name a group that the template also names. A failure warns with the group's name and
/// returns False.
bool join(CreationRun& run, const std::string& path, std::string_view name) {
  Session& session = run.session;
  if (is_everybodys(name) || !run.joined_groups.insert(base::upper(path)).second)
    return true;
  base::Trap trap;
  trap([&] {
    session.CurrentGroup = bind_once(run, path);
    if (session::is_debug(session))
      log(run, "Adding user to: " + session.CurrentGroup->Name());
    // In a preview there is no account to add.
    if (!run.request.names_only)
      session.CurrentGroup->Add(account_path(run));
  });
  session.CurrentGroup.reset();
  if (trap.number() == 0) {
    run.view.made({MadeThing::Kind::kGroup, path, {}, {}, nullptr});
    return true;
  }
  warn(run, "Error adding user to group: " + std::string(name),
       base::in_words(trap.number(), trap.description()));
  return false;
}

/// A range of columns that a person chose should contain groups; when all columns are searched, most do not.
bool is_chosen_range(const CreationRun& run) {
  return !(base::val(run.ImportGroupsStart) <= 0 && base::val(run.ImportGroupsFinish) >= kLastColumn);
}

void join_named_group(CreationRun& run, const std::string& name) {
  Session& session = run.session;
  const std::vector<directory::ListedGroup> found = directory::find_groups(session, name);
  for (const directory::ListedGroup& group : found)
    join(run, group_path(session, group.name, group.key), group.name);
  if (!found.empty() || is_everybodys(name))
    return;
  const std::string text =
      (session::is_active_directory(session) ? "Group not found: " : "Group Not Found: ") + name;
  if (is_chosen_range(run))
    warn(run, text);
  else
    log(run, text);
}

void join_from_columns(CreationRun& run) {
  const session::ImportState& state = run.session.import;
  if (!state.Importing || base::trim(run.ImportGroupsFinish) == "0")
    return;
  const std::int32_t last = std::min({base::val(run.ImportGroupsFinish), std::int32_t{state.ImportFieldCount},
                                      static_cast<std::int32_t>(session::kMostImportFields)});
  for (std::int32_t column = std::max(0, base::val(run.ImportGroupsStart)); column <= last; ++column) {
    const std::string name(base::trim(state.ImportFields.at(static_cast<std::size_t>(column))));
    if (!name.empty())
      join_named_group(run, name);
  }
}

/// A group of the template that the domain no longer holds is in no list, and would be missed without a word.
void warn_of_lacking_groups(CreationRun& run, const std::vector<stores::TemplateGroup>& groups) {
  std::set<std::string> known;
  for (const stores::TemplateGroup& group : groups)
    known.insert(base::upper(group.name));
  const records::TemplateRecord& record = run.session.ActiveTemplate;
  for (std::size_t slot = 0; slot < static_cast<std::size_t>(record.GroupCount); ++slot) {
    const std::string_view name = base::trim(record.Groups.at(slot));
    if (!name.empty() && !known.contains(base::upper(name)))
      warn(run, "Group not found: " + std::string(name));
  }
}

void join_template_groups(CreationRun& run) {
  Session& session = run.session;
  const std::vector<stores::TemplateGroup> groups = stores::template_groups(session);
  warn_of_lacking_groups(run, groups);
  for (const stores::TemplateGroup& group : groups) {
    const bool joined = join(run, group_path(session, group.name, group.key), group.name);
    if (!joined && session::is_active_directory(session))
      log(run, account_path(run));
  }
}

void join_groups_of_copied_user(CreationRun& run) {
  Session& session = run.session;
  const NewUserRequest& request = run.request;
  const bool active_directory = session::is_active_directory(session);
  log(run, "Copy User groups from user: " + request.SelectedNodeText);
  std::vector<ObjectPtr> groups;
  base::Trap trap;
  trap([&] {
    groups = session.platform.directory
                 .GetObject(active_directory ? request.SelectedNodeKey
                                             : directory::winnt_path(session, request.SelectedNodeText))
                 ->Groups();
  });
  if (trap.number() != 0) {
    session.log.reason("Error Retrieving Group info for: " + request.SelectedNodeText,
                       base::in_words(trap.number(), trap.description()));
    return warn(run, "Groups will not be set");
  }
  for (const ObjectPtr& group : groups) {
    const std::string name = group->Name();
    join(run, group_path(session, name, group->ADsPath()), name);
  }
}

}  // namespace

void ApplyGroups(CreationRun& run) {
  log(run, "Adding User to Groups");
  join_from_columns(run);
  if (run.request.CopyUser) {
    join_groups_of_copied_user(run);
  } else {
    join_template_groups(run);
  }
}

void SetPrimaryGroup(CreationRun& run) {
  const std::string& name = run.user_template.PrimaryGroup;
  if (base::equals_fold(name, kEverybodysGroup))
    return;
  log(run, "Setting Primary Group: " + name + ".");
  std::int32_t id = 0;
  base::Trap trap;
  if (!trap([&] { id = directory::Group_RID_by_name(run.session, name); })) {
    log(run, "Could not Set Primary Group");
    return;
  }
  if (!trap([&] {
        run.CurrentUserObject->Put("PrimaryGroupID", id);
        run.CurrentUserObject->SetInfo();
      })) {
    run.RunWarning = 2;
    run.session.log.reason("Could not Set Primary Group - user may not be in group",
                           base::in_words(trap.number(), trap.description()));
  }
}

}  // namespace twk::creation
