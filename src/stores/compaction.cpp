#include "stores/compaction.hpp"

#include "base/text.hpp"
#include "directory/select_domain.hpp"
#include "session/hourglass.hpp"
#include "session/session.hpp"
#include "stores/record_file.hpp"
#include "stores/site_store.hpp"
#include "stores/template_store.hpp"
#include "stores/template_tab.hpp"

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

/// Replaces the records of the file by what `keep` gives for each, in one step. A file that is not there is
/// not made.
void replace_records(Session& session, std::string_view name, std::size_t record_size,
                     const std::function<std::string(std::string_view bytes)>& keep) {
  platform::Files& files = session.platform.files;
  const std::string path = database_path(session, name);
  if (!files.exists(path))
    return;
  RecordFile file = RecordFile::open(files, path, record_size);
  const RecordFile::NumbersHold held = file.hold_numbers();
  std::string kept;
  file.search([&](std::string_view bytes) {
    kept += keep(bytes);
    return false;
  });
  files.write(path, kept);
}

void compact_sites(Session& session) {
  replace_records(session, kSiteFile, kSiteRecordSize, [](std::string_view bytes) {
    return is_deleted(bytes) ? std::string() : std::string(bytes);
  });
}

/// A domain that was loaded without its groups says nothing about which of them exist.
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

void compact_templates(Session& session, bool prune) {
  session::ActivityLog& log = session.log;
  log.open(session);
  log.line(session::kAsterisks);
  log.line(session::date_and_time(session));
  log.line("Start Compact");
  replace_records(session, kTemplateFile, kTemplateRecordSize, [&](std::string_view bytes) {
    if (is_deleted(bytes)) {
      log.line(std::string(base::trim(listed_template_name(bytes))) + " Deleted.");
      log.line(" ");
      return std::string();
    }
    if (!prune)
      return std::string(bytes);
    session.ActiveTemplate = decode_template(bytes);
    Check_Template_Groups(session);
    return encode_template(session.ActiveTemplate);
  });
  log.line("Compact Finished.");
  log.close();
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
  // Groups that a loaded template took from the domain's list are given back, and the numbers of its records
  // do not hold any more.
  Template_Group_Sort(session);
  Clear_TT(session);
  session.LastRecordNo = 0;
  bool done = false;
  if (!directory::Select_Domain(session, session.DomainName)) {
    session.platform.dialogs.MsgBox(
        "Can't find " + session.DomainName + " Domain.\r\nWill not compact Database.", Buttons::kOk,
        Icon::kCritical, "Can't Find Domain Controller");
  } else {
    try {
      compact_sites(session);
      compact_templates(session, is_to_prune(session, pruning));
      session::LOG_TAB(session, session::kGreen, " Database Compacted");
      form.StatusBar1.panel1 = "Completed.";
      done = true;
    } catch (const base::RuntimeError& failure) {
      done = report_failure(session, failure);
    }
  }
  return done;
}

void Check_Template_Groups(Session& session) {
  TemplateRecord& record = session.ActiveTemplate;
  session.log.line("Checking template " + record.Name);
  std::array<std::string, kGroupSlots> kept;
  std::size_t count = 0;
  for (std::size_t slot = 0; slot < static_cast<std::size_t>(record.GroupCount); ++slot) {
    const std::string name(base::trim(record.Groups.at(slot)));
    if (session.form1.ListView5.find_text(name).empty()) {
      session.log.line("Global Group Removed : " + name);
    } else {
      kept.at(count++) = name;
    }
  }
  record.GroupCount = static_cast<std::int16_t>(count);
  record.Groups = kept;
  session.log.line(" ");
}

}  // namespace twk::stores
