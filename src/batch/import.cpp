#include "batch/import.hpp"

#include <algorithm>

#include "base/errors.hpp"
#include "base/text.hpp"
#include "batch/csv_layout.hpp"
#include "batch/import_file.hpp"
#include "batch/import_options.hpp"
#include "creation/create_user.hpp"
#include "session/form1.hpp"
#include "session/log_tab.hpp"
#include "session/session.hpp"
#include "session/windows.hpp"
#include "stores/database_files.hpp"
#include "stores/site_store.hpp"
#include "stores/template_store.hpp"

namespace twk::batch {
namespace {

using session::ImportState;
using session::Session;
using stores::database_path;

/// How the run over the lines ended.
enum class End { kEndOfFile, kStopped, kErrorHalt, kWarningHalt };

std::string title(std::string_view path) {
  const std::size_t slash = path.find_last_of("\\/");
  return std::string(slash == base::npos ? path : path.substr(slash + 1));
}

void error_line(Session& session, std::string_view text) {
  session::write_run_file(session, session.import.error_file, text);
}

void open_error_file(Session& session) {
  session.import.error_path = database_path(session, "Import.err");
  session.import.error_file.open(session.platform.files, session.import.error_path, true);
  error_line(session, session::kAsterisks);
  error_line(session, session::date_and_time(session));
  error_line(session, kNotCreated);
  error_line(session, session::kAsterisks);
}

/// A unique name, even for a run within the same second.
std::string free_summary_path(const Session& session, const std::string& name) {
  std::string path = database_path(session, name + ".csv");
  for (int next = 2; session.platform.files.exists(path); ++next)
    path = database_path(session, name + " (" + base::to_text(next) + ").csv");
  return path;
}

void open_summary(Session& session) {
  const base::Date now = session.platform.clock.now();
  ImportState& state = session.import;
  state.summary_path = free_summary_path(
      session, "Import Summary - " + base::format_compact_date(now) + base::format_compact_time(now));
  state.summary_file.open(session.platform.files, state.summary_path, false);
  session::write_run_file(session, state.summary_file, "Full Name,WinNT logon,W2K logon,ERRORS");
}

/// True when these are the bytes of "Import.err", which the run is about to empty. They are kept next to
/// it, so that a killed run loses no line.
bool keep_error_file(Session& session, const std::string& bytes) {
  platform::Files& files = session.platform.files;
  const std::string path = database_path(session, "Import.err");
  if (bytes.empty() || !files.exists(path) || files.read(path) != bytes)
    return false;
  files.write(path + ".old", bytes);
  return true;
}

/// The lines that the run did not reach were not created either.
void keep_rest(Session& session, ImportLines& lines) {
  while (lines.next())
    error_line(session, lines.line());
}

void fill_names(Session& session) {
  const ImportState& state = session.import;
  const auto field = [&state](std::int16_t index) {
    return std::string(base::trim(state.ImportFields.at(static_cast<std::size_t>(index))));
  };
  const bool standard = state.ImportDefaultLayout;
  session.form1.strFirst.text = field(standard ? std::int16_t{1} : state.ImportFirstField);
  session.form1.StrMiddle.text = field(standard ? std::int16_t{2} : state.ImportMiddleField);
  session.form1.strLast.text = field(standard ? std::int16_t{3} : state.ImportLastField);
}

/// True when the template or the site cannot be loaded: every following line would fail for the same reason.
bool has_lost_records(Session& session) {
  base::Trap trap;
  return !trap([&] {
    stores::require_template(session, session.form1.nutemplate.text.get());
    stores::require_site(session, session.form1.NUsitename.text.get());
  });
}

void tell_row(Session& session, std::int32_t line) {
  if (session.import.row_done)
    session.import.row_done({line, session.LastCreation});
}

/// Puts a line into the fields and the names of the New User tab.
void take_line(Session& session, std::string_view line) {
  split_import_line(session.import, line);
  session.form1.USERID.text = std::string();
  session.form1.UserID_Box.text = std::string();
  fill_names(session);
}

void refuse_short_line(Session& session) {
  const std::string& line = session.import.ImportLine;
  error_line(session, line);
  session.LastCreation = {line, "", "The line has fewer than two fields", {}};
}

End run_lines(Session& session, std::string_view path, ImportLines& lines) {
  session::Form1& form = session.form1;
  ImportState& state = session.import;
  while (lines.next()) {
    take_line(session, lines.line());
    if (state.ImportFieldCount < 2) {
      refuse_short_line(session);
      tell_row(session, lines.number());
      continue;
    }
    if (state.ImportStopped) {
      lines.put_back();
      return End::kStopped;
    }
    creation::CreateUser_Click(session);
    form.Import_Text.caption =
        "Number of Users Imported from " + title(path) + "= " + base::to_text(state.ImportAddedCount);
    tell_row(session, lines.number());
    const bool refused = session.LastCreation.light == session::kRed;
    if ((state.ImportHalt && form.STOP_ON_RED[0].on()) || (refused && has_lost_records(session)))
      return End::kErrorHalt;
    if (state.ImportHaltWarning && form.STOP_ON_RED[1].on())
      return End::kWarningHalt;
    session.platform.dialogs.DoEvents();
  }
  return End::kEndOfFile;
}

/// True for an end that is not a halt.
bool tell_end(Session& session, End end, std::string_view path) {
  switch (end) {
    case End::kEndOfFile:
      session::LOG_TAB(session, session::kGreen,
                       "Number of Users Imported from " + title(path) + " = " +
                           base::to_text(session.import.ImportAddedCount));
      return true;
    case End::kStopped:
      session::LOG_TAB(session, session::kGreen, " Import Halted by User");
      return true;
    case End::kErrorHalt:
      session.platform.dialogs.beep();
      session::LOG_TAB(session, session::kRed, " Import Halted because errors were detected");
      error_line(session, kErrorHalt);
      return false;
    case End::kWarningHalt:
      session.platform.dialogs.beep();
      session::LOG_TAB(session, session::kYellow, " Import Halted because WARNINGS were detected");
      error_line(session, kWarningHalt);
      return false;
  }
  return false;
}

/// What is wrong with the selection; empty when it is fine.
std::string selection_fault(Session& session) {
  const session::Form1& form = session.form1;
  const controls::TreeNode* const node = form.TreeView1.selected();
  const std::string_view kind = node == nullptr ? std::string_view{} : std::string_view(node->image);
  const bool active_directory = session::is_active_directory(session);
  const bool copy = form.Copy_User.on();
  const bool good = !active_directory || copy || kind == "OU";
  const bool named =
      !base::trim(form.nutemplate.text.get()).empty() && !base::trim(form.NUsitename.text.get()).empty();
  if (named && good && !(copy && kind != "USER"))
    return {};
  if (!active_directory)
    return "To Import Users you must select a Template and a Site.";
  const std::string text = "To Import Users you must select a Template and a Site\r\n";
  if (copy && kind != "USER") {
    return text +
           "and select an User from the treeview.\r\nor turn off 'copy user' function, and select an OU";
  }
  return text + "and select an OU from the treeview.";
}

void clear_new_user_tab(session::Form1& form) {
  for (controls::TextBox* field : {&form.strFirst, &form.StrMiddle, &form.strLast})
    field->text = std::string();
  for (controls::Label* label : {&form.Createdirs, &form.Sharedirs, &form.Security, &form.UserAccount,
                                 &form.MailAccount, &form.run, &form.progress}) {
    label->caption = std::string();
  }
  form.ProgressBar1.value = 0;
  form.StatusBar1.panel1 = "Ready.";
}

void log_block(Session& session, std::string_view text, bool with_user) {
  session.log.open();
  session.log.line(session::kAsterisks);
  session.log.line(session::date_and_time(session));
  if (with_user)
    session.log.line("User:" + session.platform.environment.variable("USERNAME"));
  session.log.line(text);
  session.log.close();
}

/// Forgets what an earlier run left.
void begin_run(ImportState& state) {
  state.Importing = true;
  state.ImportStopped = false;
  state.ImportAddedCount = 0;
  state.ImportHalt = false;
  state.foreseen_names.clear();
  state.told_groups.clear();
  state.failure.clear();
  state.error_path.clear();
  state.summary_path.clear();
}

}  // namespace

void Import_Command(Session& session) {
  clear_new_user_tab(session.form1);
  if (const std::string fault = selection_fault(session); !fault.empty()) {
    session.platform.dialogs.MsgBox(fault, platform::Buttons::kOk, platform::Icon::kCritical,
                                    "Can't Import Users");
    return;
  }
  if (const std::string fault = refused_expiry(session, session.import_grps.Expiredate.text.get());
      !fault.empty()) {
    session.platform.dialogs.MsgBox("The expiry of the accounts: " + fault + ".", platform::Buttons::kOk,
                                    platform::Icon::kCritical, "Can't Import Users");
    return;
  }
  const auto path = session.platform.dialogs.open_file("Open file to import", "CSV Files (*.csv)|*.csv|");
  if (!path || path->empty())
    return;
  session.import.ImportAccepted = false;
  base::Trap trap;
  if (!trap([&] { load_csv_layout(session, *path); })) {
    session.platform.dialogs.MsgBox(trap.description(), platform::Buttons::kOk, platform::Icon::kCritical,
                                    "Import error");
    return;
  }
  session.platform.dialogs.show_modal("CSV_Import");
  if (!session.import.ImportAccepted)
    return;
  log_block(session, "Starting Import from: " + *path, true);
  session.form1.StatusBar1.panel1 = "Importing Users....";
  const bool whole = Import_Users(session, *path);
  log_block(session, "Import Finished", false);
  if (!whole) {
    session.platform.dialogs.MsgBox("Errors during Import. Check log files for details.",
                                    platform::Buttons::kOk, platform::Icon::kExclamation, "Import error");
  } else {
    session.form1.Import_Text.caption = std::string();
    session.form1.StatusBar1.panel1 = "Import Complete. " + base::to_text(session.import.ImportAddedCount) +
                                      " users Added. Check Import.err for errors.";
  }
  session.form1.SSTab1 = 0;
}

bool Import_Users(Session& session, std::string_view path) {
  ImportState& state = session.import;
  begin_run(state);
  bool whole = false;
  base::Trap trap(session::is_debug(session));
  trap([&] {
    // First, because "Import.err" may be the input.
    const std::string bytes = session.platform.files.read(path);
    const bool again = !state.rehearsed && keep_error_file(session, bytes);
    ImportLines lines(bytes);
    if (!state.rehearsed)
      open_error_file(session);
    session.form1.enabled = false;
    session.cancel_import.visible = true;
    if (!state.rehearsed)
      open_summary(session);
    const End end = run_lines(session, path, lines);
    if (again)
      keep_rest(session, lines);
    whole = tell_end(session, end, path);
  });
  state.error_file.close();
  state.summary_file.close();
  session.form1.enabled = true;
  state.Importing = false;
  session.log.conceal({});
  session.cancel_import.visible = false;
  if (trap.number() != 0)
    state.failure = trap.description();
  return whole;
}

void CancelButton_Click(Session& session) {
  session.import.ImportStopped = true;
  session.cancel_import.visible = false;
}

}  // namespace twk::batch
