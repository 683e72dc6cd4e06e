#include "windows/account/details_tab.hpp"

#include <utility>

#include "base/text.hpp"
#include "controls/tree_view.hpp"
#include "directory/user_details.hpp"
#include "session/loaded_domain.hpp"
#include "windows/account/run_history.hpp"
#include "windows/state/desktop.hpp"
#include "windows/state/details_changes.hpp"
#include "windows/state/form1.hpp"
#include "windows/state/hourglass.hpp"

namespace twk::windows {
namespace {

using controls::ListView;
using directory::UserDetails;

/// Characters of a common name that the tab shows.
constexpr std::size_t kLongestName = 100;

constexpr std::array<std::pair<controls::TextBox Form1::*, std::string UserDetails::*>, 14> kFields = {{
    {&Form1::UM_Full_Name, &UserDetails::FullName},
    {&Form1::UM_Description, &UserDetails::Description},
    {&Form1::UM_First, &UserDetails::FirstName},
    {&Form1::UM_Last, &UserDetails::LastName},
    {&Form1::UM_Initails, &UserDetails::Initials},
    {&Form1::UM_Office, &UserDetails::Office},
    {&Form1::UM_MailAddress, &UserDetails::Mail},
    {&Form1::UM_Logon_Name, &UserDetails::LogonName},
    {&Form1::UM_W2KDomain_Name, &UserDetails::LogonSuffix},
    {&Form1::UM_PreW2K, &UserDetails::PreW2K},
    {&Form1::UM_Profile_Dir, &UserDetails::Profile},
    {&Form1::UM_Home_Dir, &UserDetails::HomeDirectory},
    {&Form1::UM_Logon_Script, &UserDetails::LoginScript},
    {&Form1::AccExpires, &UserDetails::Expires},
}};

constexpr std::array<std::pair<controls::CheckBox Form1::*, bool UserDetails::*>, 5> kFlags = {{
    {&Form1::chkMustChange, &UserDetails::must_change},
    {&Form1::chkCantChange, &UserDetails::cannot_change},
    {&Form1::chkAcctLockedOut, &UserDetails::locked_out},
    {&Form1::chkPwdNever, &UserDetails::never_expires},
    {&Form1::chkAcctDisabled, &UserDetails::disabled},
}};

bool is_user(const controls::TreeNode& node) {
  return node.image == "USER";
}

bool shows_account(const Form1& form) {
  return !form.USERID.text.get().empty();
}

void show_details(Form1& form, const UserDetails& details) {
  form.USERID.text = std::string(base::left(details.name, kLongestName));
  for (const auto& [box, field] : kFields)
    (form.*box).text = details.*field;
  form.UM_Drive_Letter.text = details.HomeDrive;
  for (std::size_t i = 0; i < details.Custom.size(); ++i)
    form.Custom_Value.at(i).text = details.Custom.at(i);
  for (const auto& [box, flag] : kFlags)
    (form.*box).value = details.*flag ? 1 : 0;
}

UserDetails details_of_tab(const Form1& form) {
  UserDetails details;
  details.key = form.USERID_W2K.text;
  details.name = form.USERID.text;
  for (const auto& [box, field] : kFields)
    details.*field = (form.*box).text;
  details.HomeDrive = form.UM_Drive_Letter.text;
  for (std::size_t i = 0; i < details.Custom.size(); ++i)
    details.Custom.at(i) = form.Custom_Value.at(i).text;
  for (const auto& [box, flag] : kFlags)
    details.*flag = (form.*box).on();
  return details;
}

directory::UserChange change_of_tab(const Desktop& session) {
  const DetailsChanges& changes = session.details;
  directory::UserChange change{.details = details_of_tab(session.form1),
                               .changed = {.Account = changes.Account,
                                           .Profile = changes.Profile,
                                           .General = changes.General,
                                           .Flags = changes.Flags},
                               .must_change_before = changes.must_change(),
                               .was_locked_out = session.form1.chkAcctLockedOut.enabled};
  for (std::size_t i = 0; i < change.changed.Custom.size(); ++i)
    change.changed.Custom.at(i) =
        changes.Custom_Changed.at(i) && session.form1.Custom_Value.at(i).visible.get();
  return change;
}

/// A row of the log tab by which the change can be taken back. `now` is the list that the groups moved to.
void log_groups(Desktop& session, batch::AccountChange::Kind kind, const std::vector<std::string>& groups,
                const ListView& now) {
  if (groups.empty())
    return;
  std::vector<batch::AccountChange> changes;
  std::string names;
  for (const std::string& group : groups) {
    changes.push_back(membership(session, kind, session.form1.USERID_W2K.text, group));
    names += (names.empty() ? "" : ", ") + now.find_key(group)->text;
  }
  const bool joined = kind == batch::AccountChange::Kind::kJoined;
  log_run(session, session::kGreen,
          session.form1.USERID.text.get() + (joined ? " added to " : " removed from ") + names,
          std::move(changes));
}

void choose_list(Desktop& session, ListView& other, bool adds) {
  Form1& form = session.form1;
  if (other.selected() != nullptr)
    other.select(nullptr);
  form.UM_ADD_GROUP.enabled = shows_account(form) && adds;
  form.UM_REMOVE_GROUP.enabled = shows_account(form) && !adds;
}

}  // namespace

bool show_user_details(Desktop& session, const controls::TreeNode& node) {
  Form1& form = session.form1;
  if (!is_user(node)) {
    Clear_UM(session);
    return false;
  }
  const std::string key = session::is_active_directory(session) ? node.key : node.text;
  form.USERID_W2K.text = key;
  Clear_UM(session);
  const Hourglass hourglass(form);
  form.SSTab1 = tab::kDetails;
  session.status.panel1 = "Retrieving User data...";
  const auto details = directory::read_user_details(session, key);
  form.UM_ADD_GROUP.enabled = false;
  form.UM_REMOVE_GROUP.enabled = false;
  if (!details) {
    Clear_UM(session);  // also the groups that were read
    return false;
  }
  show_details(form, *details);
  form.chkAcctLockedOut.enabled = details->locked_out;
  session.details.clear();
  session.status.panel1 = "Ready.";
  return true;
}

void node_chosen(Desktop& session, const controls::TreeNode& node) {
  if (!is_user(node))
    Clear_UM(session);
}

void Clear_UM(Desktop& session) {
  directory::return_own_groups(session);
  UserDetails none;
  none.LogonSuffix = "@" + session.DomainName;
  show_details(session.form1, none);
}

void Userman_Save_Click(Desktop& session) {
  // Saving an empty tab would clear the account shown before.
  if (!shows_account(session.form1))
    return;
  const Hourglass hourglass(session.form1);
  const directory::SaveOutcome outcome = directory::save_user_details(session, change_of_tab(session));
  if (outcome.saved && outcome.refused.empty())
    session.details.clear();
}

void UM_ADD_GROUP_Click(Desktop& session) {
  if (!shows_account(session.form1))
    return;
  const Hourglass hourglass(session.form1);
  log_groups(session, batch::AccountChange::Kind::kJoined,
             directory::add_to_selected_groups(session, details_of_tab(session.form1)),
             session.domain.own_groups);
}

void UM_REMOVE_GROUP_Click(Desktop& session) {
  if (!shows_account(session.form1))
    return;
  const Hourglass hourglass(session.form1);
  log_groups(session, batch::AccountChange::Kind::kLeft,
             directory::remove_from_selected_groups(session, details_of_tab(session.form1)),
             session.domain.other_groups);
}

void ListView3_Click(Desktop& session) {
  choose_list(session, session.domain.own_groups, true);
}

void ListView4_Click(Desktop& session) {
  choose_list(session, session.domain.other_groups, false);
}

void ListView3_DblClick(Desktop& session) {
  UM_ADD_GROUP_Click(session);
}

void ListView4_DblClick(Desktop& session) {
  UM_REMOVE_GROUP_Click(session);
}

}  // namespace twk::windows
