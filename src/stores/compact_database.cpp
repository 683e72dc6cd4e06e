#include "stores/compact_database.hpp"

#include "base/errors.hpp"
#include "directory/loading/select_domain.hpp"
#include "session/loaded_domain.hpp"
#include "session/log_tab.hpp"
#include "session/session.hpp"
#include "stores/compaction.hpp"
#include "stores/template_store.hpp"

namespace twk::stores {
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
  if (!wanted || groups_are_loaded(session))
    return wanted;
  session.platform.dialogs.MsgBox(
      "The groups of the domain are not loaded: no group is removed from a template.", Buttons::kOk,
      Icon::kExclamation, kTitle);
  return false;
}

bool report_failure(Session& session, const base::RuntimeError& failure) {
  session.log.close();
  session.status.panel1 = "Error Compacting Database";
  session.platform.dialogs.MsgBox("Error Compacting Database\r\n" + failure.description(), Buttons::kOk,
                                  Icon::kCritical, kTitle);
  return false;
}

}  // namespace

bool agrees_to_compact(Session& session) {
  return asks_yes(session, "This could take a few minutes. \r\nAre you sure you want to continue ?");
}

bool compact_database(Session& session, Pruning pruning) {
  session.status.panel1 = std::string("Compacting DataBases Please Wait....");
  // Groups that a loaded template took from the domain's list are returned, and its record numbers are no
  // longer valid.
  release_template(session);
  session.LastRecordNo = 0;
  if (!directory::Select_Domain(session, session.DomainName)) {
    session.platform.dialogs.MsgBox(
        "Can't find " + session.DomainName + " Domain.\r\nWill not compact Database.", Buttons::kOk,
        Icon::kCritical, "Can't Find Domain Controller");
    return false;
  }
  try {
    compact_sites(session);
    compact_templates(session, is_to_prune(session, pruning) ? &session.domain.template_choice : nullptr);
    session::LOG_TAB(session, session::kGreen, " Database Compacted");
    session.status.panel1 = std::string("Completed.");
    return true;
  } catch (const base::RuntimeError& failure) {
    return report_failure(session, failure);
  }
}

}  // namespace twk::stores
