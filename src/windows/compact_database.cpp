#include "windows/compact_database.hpp"

#include "base/errors.hpp"
#include "session/form1.hpp"
#include "session/hourglass.hpp"
#include "session/log_tab.hpp"
#include "session/session.hpp"
#include "stores/compaction.hpp"
#include "stores/template_store.hpp"
#include "windows/load_domain.hpp"
#include "windows/template_tab.hpp"

namespace twk::windows {
namespace {

using platform::Answer;
using platform::Buttons;
using platform::Icon;
using session::Session;

constexpr std::string_view kTitle = "Compact Database";

bool asks_yes(Session& session, std::string_view question) {
  return session.platform.dialogs.MsgBox(question, Buttons::kYesNo, Icon::kQuestion, kTitle) == Answer::kYes;
}

/// A domain that was loaded without its groups does not show which of them exist.
bool is_to_prune(Session& session, Pruning pruning) {
  const bool wanted =
      pruning == Pruning::kRemoveGroups ||
      (pruning == Pruning::kAsk &&
       asks_yes(session,
                "Do you want to remove groups from the templates that no longer exist ? \r\n\r\n"
                "You should answer no if you manage mutliple Domains!!!"));
  if (!wanted || stores::groups_are_loaded(session))
    return wanted;
  session.platform.dialogs.MsgBox(
      "The groups of the domain are not loaded: no group is removed from a template.", Buttons::kOk,
      Icon::kExclamation, kTitle);
  return false;
}

bool report_failure(Session& session, const base::RuntimeError& failure) {
  session.log.close();
  session.form1.StatusBar1.panel1 = "Error Compacting Database";
  session.platform.dialogs.MsgBox("Error Compacting Database\r\n" + failure.description(), Buttons::kOk,
                                  Icon::kCritical, kTitle);
  return false;
}

}  // namespace

bool Compact_Database(Session& session) {
  return asks_yes(session, "This could take a few minutes. \r\nAre you sure you want to continue ?") &&
         compact_database(session, Pruning::kAsk);
}

bool compact_database(Session& session, Pruning pruning) {
  session::Form1& form = session.form1;
  form.StatusBar1.panel1 = "Compacting DataBases Please Wait....";
  const session::Hourglass hourglass(form);
  // Groups that a loaded template took from the domain's list are returned, and its record numbers are no
  // longer valid.
  Clear_TT(session);
  session.LastRecordNo = 0;
  bool done = false;
  if (!load_domain(session, session.DomainName)) {
    session.platform.dialogs.MsgBox(
        "Can't find " + session.DomainName + " Domain.\r\nWill not compact Database.", Buttons::kOk,
        Icon::kCritical, "Can't Find Domain Controller");
  } else {
    try {
      stores::compact_sites(session);
      stores::compact_templates(session, is_to_prune(session, pruning) ? &form.ListView5 : nullptr);
      session::LOG_TAB(session, session::kGreen, " Database Compacted");
      form.StatusBar1.panel1 = "Completed.";
      done = true;
    } catch (const base::RuntimeError& failure) {
      done = report_failure(session, failure);
    }
  }
  return done;
}

}  // namespace twk::windows
