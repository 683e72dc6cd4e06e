#include "directory/user_details.hpp"

#include "base/error_words.hpp"
#include "base/errors.hpp"
#include "base/text.hpp"
#include "controls/tree_view.hpp"
#include "directory/account_expiry.hpp"
#include "directory/ad_user.hpp"
#include "directory/load_options.hpp"
#include "directory/nt_user.hpp"
#include "session/form1.hpp"
#include "session/hourglass.hpp"
#include "session/loaded_domain.hpp"
#include "session/session.hpp"

namespace twk::directory {
namespace {

using controls::ListView;
using session::Hourglass;
using session::Session;

bool is_user(const controls::TreeNode& node) {
  return node.image == "USER";
}

bool read_user(Session& session, const std::string& key) {
  if (!session::is_active_directory(session))
    return Read_NT_User(session, key);
  base::Trap trap;
  bool read = false;
  trap([&] { read = Read_AD_User(session, key); });
  if (trap.number() != 0)
    session.status.panel1 = "Error reading user: " + trap.description();
  return read;
}

/// Changes the memberships of the selected rows, from the last to the first, and moves these rows.
void change_groups(Session& session, ListView& from, ListView& to,
                   bool (*change)(Session& session, std::size_t row)) {
  session::Form1& form = session.form1;
  if (form.USERID.text.get().empty())
    return;
  const Hourglass hourglass(form);
  for (std::size_t place = from.size(); place-- > 0;) {
    const controls::ListRow& row = from.at(place);
    if (!row.selected)
      continue;
    base::Trap trap;
    bool changed = false;
    trap([&] { changed = change(session, place); });
    session.CurrentGroup.reset();
    if (changed)
      controls::move_row(from, row, to);
    else
      session.status.panel1 =
          "Error changing group " + row.text + ": " + base::in_words(trap.number(), trap.description());
  }
}

void choose_list(Session& session, ListView& other, bool adds) {
  session::Form1& form = session.form1;
  if (other.selected() != nullptr)
    other.select(nullptr);
  const bool shown = !form.USERID.text.get().empty();
  form.UM_ADD_GROUP.enabled = shown && adds;
  form.UM_REMOVE_GROUP.enabled = shown && !adds;
}

void return_groups(session::LoadedDomain& domain) {
  // A row that is in the other list already raises; it is gone from this one then, as it should be.
  base::Trap trap;
  while (!domain.own_groups.empty())
    trap([&] {
      controls::move_row(domain.own_groups, domain.own_groups.at(domain.own_groups.size() - 1),
                         domain.other_groups);
    });
}

}  // namespace

bool show_user_details(Session& session, const controls::TreeNode& node) {
  session::Form1& form = session.form1;
  if (!is_user(node)) {
    Clear_UM(session);
    return false;
  }
  const std::string key = session::is_active_directory(session) ? node.key : node.text;
  form.USERID_W2K.text = key;
  Clear_UM(session);
  const Hourglass hourglass(form);
  form.SSTab1 = session::tab::kDetails;
  session.status.panel1 = "Retrieving User data...";
  const bool read = read_user(session, key);
  session.CurrentUser.reset();
  form.UM_ADD_GROUP.enabled = false;
  form.UM_REMOVE_GROUP.enabled = false;
  if (read)
    session.status.panel1 = "Ready.";
  else
    Clear_UM(session);  // a partly read account must not be saved
  return read;
}

void node_chosen(Session& session, const controls::TreeNode& node) {
  if (!is_user(node))
    Clear_UM(session);
}

void Clear_UM(Session& session) {
  session::Form1& form = session.form1;
  if (!read_load_options(session).SkipGroups)
    return_groups(session.domain);
  for (controls::CheckBox* box : {&form.chkMustChange, &form.chkCantChange, &form.chkAcctLockedOut,
                                  &form.chkPwdNever, &form.chkAcctDisabled}) {
    box->value = 0;
  }
  for (controls::TextBox* field :
       {&form.USERID, &form.UM_Full_Name, &form.UM_Description, &form.UM_First, &form.UM_Last,
        &form.UM_Initails, &form.UM_Office, &form.UM_MailAddress, &form.UM_Logon_Name, &form.UM_PreW2K,
        &form.UM_Profile_Dir, &form.UM_Home_Dir, &form.UM_Logon_Script, &form.AccExpires}) {
    field->text = std::string();
  }
  for (controls::TextBox& field : form.Custom_Value)
    field.text = std::string();
  form.UM_Drive_Letter.text = std::string();
  form.UM_W2KDomain_Name.text = "@" + session.DomainName;
  session.domain.own_groups.clear();
}

void Userman_Save_Click(Session& session) {
  session::Form1& form = session.form1;
  // Saving an empty tab would clear the account shown before.
  if (form.USERID.text.get().empty())
    return;
  const Hourglass hourglass(form);
  session.details.refused.clear();
  const bool saved = session::is_active_directory(session) ? Save_AD_User(session) : Save_NT_User(session);
  session.CurrentUser.reset();
  if (!saved)
    return;
  std::string status = "Saved...";
  const char* separator = " but not ";
  for (const std::string& refused : session.details.refused) {
    status += separator + refused;
    separator = "; ";
  }
  session.status.panel1 = std::move(status);
  if (session.details.refused.empty())
    session.details.clear();
}

void UM_ADD_GROUP_Click(Session& session) {
  change_groups(session, session.domain.other_groups, session.domain.own_groups,
                session::is_active_directory(session) ? Add_AD_User_Group : Add_NT_User_Group);
}

void UM_REMOVE_GROUP_Click(Session& session) {
  change_groups(session, session.domain.own_groups, session.domain.other_groups,
                session::is_active_directory(session) ? Remove_AD_User_Group : Remove_NT_User_Group);
}

void ListView3_Click(Session& session) {
  choose_list(session, session.domain.own_groups, true);
}

void ListView4_Click(Session& session) {
  choose_list(session, session.domain.other_groups, false);
}

void ListView3_DblClick(Session& session) {
  UM_ADD_GROUP_Click(session);
}

void ListView4_DblClick(Session& session) {
  UM_REMOVE_GROUP_Click(session);
}

}  // namespace twk::directory
