#include "windows/unit_commands.hpp"

#include "base/error_words.hpp"
#include "base/errors.hpp"
#include "base/text.hpp"
#include "directory/names.hpp"
#include "directory/refusal.hpp"
#include "directory/tree/follow_unit.hpp"
#include "directory/units.hpp"
#include "session/log_tab.hpp"
#include "session/run_scope.hpp"
#include "windows/account/account_view.hpp"
#include "windows/account/unsaved.hpp"
#include "windows/import.hpp"
#include "windows/main_window.hpp"
#include "windows/state/desktop.hpp"
#include "windows/state/form1.hpp"
#include "windows/state/hourglass.hpp"
#include "windows/tree/find_user.hpp"
#include "windows/tree/unit_chooser.hpp"

namespace twk::windows {
namespace {

using platform::Answer;
using platform::Buttons;
using platform::Icon;

/// Its distinguished name; empty for anything but an OU.
std::string selected_unit(Desktop& session) {
  const controls::TreeNode* const node = session.form1.TreeView1.selected();
  return node != nullptr && node->image == "OU" && base::starts_with_fold(node->key, "OU=") ? node->key
                                                                                            : std::string();
}

/// The details tab may show a user of the unit: what was changed there is asked for first, since the user's
/// path changes.
bool may_change(Desktop& session, const std::string& unit) {
  return !unit.empty() && may_leave_details(session);
}

void tell(Desktop& session, const std::string& text) {
  session::LOG_TAB(session, session::kGreen, text);
  session.status.panel1 = text + ".";
}

std::string about_managed_unit(const Desktop& session, const std::string& unit) {
  return !session.ManagedOU.empty() && directory::lies_in_unit(session.ManagedOU, unit)
             ? ". The managed OU is in it: choose it again with Options, Manage OU"
             : "";
}

/// A new name or place of the unit.
void change_unit(Desktop& session, const std::string& title, const std::string& unit,
                 const std::function<std::string()>& step) {
  const std::string managed = about_managed_unit(session, unit);
  std::string now;
  base::Trap trap;
  {
    const Hourglass hourglass(session.form1);
    if (trap([&] { now = step(); }))
      directory::follow_unit(session, unit, now);
  }
  if (trap.number() != 0)
    directory::tell_refusal(session, title, "Cannot change the OU " + directory::unit_in_words(unit), trap);
  else
    tell(session, unit + " is now " + now + managed);
}

std::string what_stays(const directory::UnitContents& contents) {
  return contents.users == 0
             ? ""
             : "\r\n\r\nHomes, profiles and mailboxes of the users stay: to delete them, too, "
               "delete the users first.";
}

void delete_all(Desktop& session, const std::string& unit, const directory::UnitContents& contents) {
  AccountView view(session);
  const session::RunScope scope(session, view);
  const std::size_t all = contents.all() + 1;
  std::size_t seen = 0;
  view.begin_files();
  directory::UnitDeletion deletion;
  base::Trap trap;
  trap([&] {
    deletion = directory::delete_unit_tree(session, unit, [&](const std::string& dn) {
      view.files("Deleting " + dn, static_cast<int>(++seen * 100 / (all + 1)));
      return session.run.goes_on();
    });
  });
  view.end_files();
  if (trap.number() != 0)
    deletion.reason = base::in_words(trap.number(), trap.description());
  if (deletion.reason.empty()) {
    directory::forget_unit(session, unit);
    return tell(session, "Deleted " + unit + (contents.all() == 0 ? "" : " and " + contents.in_words()));
  }
  directory::tell_refusal(session, "Delete OU",
                          unit + " was not deleted: " + deletion.reason + ". " +
                              std::to_string(deletion.deleted) + " of " + std::to_string(all) +
                              " objects are gone; Refresh shows what is left.");
}

}  // namespace

void New_Here_Click(Desktop& session) {
  Toolbar1_ButtonClick(session, "NewUser");
}

void Import_Here_Click(Desktop& session) {
  Import_Command(session);
}

void Find_Here_Click(Desktop& session) {
  const controls::TreeNode* const node = session.form1.TreeView1.selected();
  if (node != nullptr && node->image == "OU")
    find_user_in(session, node->key);
}

void Rename_OU_Click(Desktop& session) {
  constexpr const char* kTitle = "Rename OU";
  const std::string unit = selected_unit(session);
  if (!may_change(session, unit))
    return;
  const std::string name(base::trim(
      session.platform.dialogs.InputBox("New name of the OU " + directory::unit_in_words(unit), kTitle)));
  if (name.empty())
    return;
  if (const std::string fault = directory::unit_name_fault(name); !fault.empty())
    return directory::tell_refusal(session, kTitle, fault);
  change_unit(session, kTitle, unit, [&] { return directory::rename_unit(session, unit, name); });
}

void Move_OU_Click(Desktop& session) {
  constexpr const char* kTitle = "Move OU";
  const std::string unit = selected_unit(session);
  if (!may_change(session, unit))
    return;
  UnitQuestion question{kTitle, "Move " + directory::unit_in_words(unit) + " with everything in it to:"};
  question.with_domain = true;
  question.fits = [&](const std::string& dn) {
    return !directory::lies_in_unit(dn, unit) && !base::equals_fold(dn, directory::name_above(unit));
  };
  if (const auto target = choose_unit(session, question))
    change_unit(session, kTitle, unit, [&] { return directory::move_unit(session, unit, *target); });
}

void Delete_OU_Click(Desktop& session) {
  const std::string unit = selected_unit(session);
  if (!may_change(session, unit))
    return;
  directory::UnitContents contents;
  base::Trap trap;
  {
    const Hourglass hourglass(session.form1);
    trap([&] { contents = directory::count_below_unit(session, unit); });
  }
  if (trap.number() != 0)
    return directory::tell_refusal(session, "Delete OU", "Cannot read what is in " + unit, trap);
  const std::string question = directory::deletion_question(unit, contents) + what_stays(contents);
  if (session.platform.dialogs.MsgBox(question, Buttons::kYesNo, Icon::kExclamation, "Delete OU") ==
      Answer::kYes)
    delete_all(session, unit, contents);
}

}  // namespace twk::windows
