#include "batch/import.hpp"

#include <algorithm>
#include <optional>
#include <utility>

#include "base/errors.hpp"
#include "base/text.hpp"
#include "batch/import_file.hpp"
#include "batch/import_names.hpp"
#include "batch/import_pace.hpp"
#include "batch/open_import.hpp"
#include "batch/recorded_import.hpp"
#include "creation/create_user.hpp"
#include "creation/plain_preview.hpp"
#include "creation/share_rights.hpp"
#include "session/log_tab.hpp"
#include "session/session.hpp"
#include "stores/database_files.hpp"
#include "stores/site_store.hpp"
#include "stores/template_store.hpp"

namespace twk::batch {
namespace {

using creation::NewUserRequest;
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

void open_error_file(Session& session, const std::string& heading) {
  session.import.error_path = database_path(session, "Import.err");
  session.import.error_file.open(session.platform.files, session.import.error_path, true);
  error_line(session, session::kAsterisks);
  error_line(session, session::date_and_time(session));
  error_line(session, kNotCreated);
  error_line(session, session::kAsterisks);
  if (!heading.empty())
    error_line(session, heading);
}

/// Unique names, even for a run within the same second.
void name_files(Session& session) {
  const base::Date now = session.platform.clock.now();
  const std::string time = base::format_compact_date(now) + base::format_compact_time(now);
  ImportState& state = session.import;
  platform::Files& files = session.platform.files;
  std::string suffix;
  const auto path = [&](std::string_view what, std::string_view extension) {
    std::string name(what);
    name.append(" - ").append(time).append(suffix).append(extension);
    return database_path(session, name);
  };
  for (int next = 2;; ++next) {
    state.summary_path = path("Import Summary", ".csv");
    state.remaining_path = path("Import Remaining", ".csv");
    state.record_path = path("Import Record", ".jsonl");
    if (!files.exists(state.summary_path) && !files.exists(state.remaining_path) &&
        !files.exists(state.record_path))
      return;
    suffix = " (" + base::to_text(next) + ")";
  }
}

void open_summary(Session& session) {
  ImportState& state = session.import;
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
void keep_rest(Session& session, ImportSource& lines) {
  while (lines.next())
    error_line(session, lines.text());
}

/// True when the template or the site cannot be loaded: every line that follows would fail of the same.
bool has_lost_records(Session& session, const NewUserRequest& request) {
  base::Trap trap;
  return !trap([&] {
    stores::require_template(session, request.TemplateName);
    stores::require_site(session, request.SiteName);
  });
}

/// `row` is kept from line to line.
void tell_row(Session& session, std::int32_t line, session::ImportRow& row) {
  if (!session.import.row_done)
    return;
  row.line = line;
  row.outcome = session.LastCreation;
  session.import.row_done(row);
}

/// One line, with the names that the request has.
session::CreationOutcome create_or_preview(Session& session, const NewUserRequest& request,
                                           std::optional<creation::PlainPreview>& preview,
                                           RecordedImport& view) {
  if (preview) {
    if (auto outcome = preview->settle(request))
      return std::move(*outcome);
  }
  session::CreationOutcome outcome = creation::create_user(session, request, view);
  if (preview)
    preview->learn(outcome);
  return outcome;
}

void refuse_short_line(Session& session) {
  const std::string& line = session.import.ImportLine;
  error_line(session, line);
  session.LastCreation = {};
  session.LastCreation.user = line;
  session.LastCreation.message = "The line has fewer than two fields";
}

/// What a line came to, in the files of the run and for whoever watches.
void keep_outcome(Session& session, const ImportOrder& order, session::CreationOutcome outcome) {
  ImportState& state = session.import;
  if (outcome.name_taken || outcome.is_known)
    error_line(session, state.ImportLine);
  if (!outcome.summary_row.empty())
    session::write_run_file(session, state.summary_file, outcome.summary_row);
  const bool warned = outcome.light == session::kYellow && !outcome.is_known;
  const bool halts =
      (warned && order.halt_on_warnings) || (outcome.light == session::kRed && order.halt_on_errors);
  state.ImportHalt = state.ImportHalt || halts;
  session.LastCreation = std::move(outcome);
}

End run_lines(Session& session, std::string_view path, ImportSource& lines, const ImportOrder& order,
              RecordedImport& view) {
  ImportState& state = session.import;
  // A rehearsal looks once at what other programs changed.
  std::optional<platform::WriteBatch> one_look;
  if (state.rehearsed)
    one_look.emplace(session.platform.directory);
  NewUserRequest request = order.user;
  request.UserId.clear();
  std::optional<creation::PlainPreview> preview;
  if (state.rehearsed && request.names_only)
    preview.emplace(session, request);
  session::ImportRow row;
  std::int32_t told = -1;
  ImportPace pace(lines.last_number(), session.platform.clock.utc_now());
  while (lines.next()) {
    if (order.made_before.contains(lines.number())) {
      view.pass_line(lines.number(), lines.raw());
      continue;
    }
    lines.take_up(state);
    if (state.ImportFieldCount < 2) {
      refuse_short_line(session);
      tell_row(session, lines.number(), row);
      continue;
    }
    if (state.ImportStopped) {
      lines.put_back();
      return End::kStopped;
    }
    view.begin_line(lines.number(), lines.raw());
    fill_names(state, request);
    keep_outcome(session, order, create_or_preview(session, request, preview, view));
    view.end_line(session.LastCreation);
    if (std::exchange(told, state.ImportAddedCount) != state.ImportAddedCount) {
      view.counted("Number of Users Imported from " + title(path) + "= " +
                   base::to_text(state.ImportAddedCount));
    }
    tell_row(session, lines.number(), row);
    pace.add(lines.number(), session.LastCreation.light);
    if (const auto text = pace.text(session.platform.clock.utc_now()))
      view.pace(*text);
    const bool refused = session.LastCreation.light == session::kRed;
    if ((state.ImportHalt && order.halt_on_errors) ||
        (refused && !state.holds_records && has_lost_records(session, order.user)))
      return End::kErrorHalt;
    if (state.ImportHaltWarning && order.halt_on_warnings)
      return End::kWarningHalt;
    session.platform.dialogs.DoEvents();
  }
  return End::kEndOfFile;
}

std::string_view name_of(End end) {
  switch (end) {
    case End::kEndOfFile:
      return "whole";
    case End::kStopped:
      return "stopped";
    case End::kErrorHalt:
      return "errors";
    case End::kWarningHalt:
      return "warnings";
  }
  return {};
}

/// True for an end that is not a halt. The row of the log tab bears the record of the run.
bool tell_end(Session& session, End end, std::string_view path) {
  const std::string& record = session.import.record_path;
  switch (end) {
    case End::kEndOfFile:
      session::LOG_TAB(session, session::kGreen,
                       "Number of Users Imported from " + title(path) + " = " +
                           base::to_text(session.import.ImportAddedCount),
                       record);
      return true;
    case End::kStopped:
      session::LOG_TAB(session, session::kGreen, " Import Halted by User", record);
      return true;
    case End::kErrorHalt:
      session.platform.dialogs.beep();
      session::LOG_TAB(session, session::kRed, " Import Halted because errors were detected", record);
      error_line(session, kErrorHalt);
      return false;
    case End::kWarningHalt:
      session.platform.dialogs.beep();
      session::LOG_TAB(session, session::kYellow, " Import Halted because WARNINGS were detected", record);
      error_line(session, kWarningHalt);
      return false;
  }
  return false;
}

/// What an earlier run left is forgotten.
void begin_run(ImportState& state) {
  state.Importing = true;
  state.holds_records = false;
  state.ImportStopped = false;
  state.ImportAddedCount = 0;
  state.ImportHalt = false;
  state.foreseen_names.clear();
  state.lookups = {};
  state.failure.clear();
  state.error_path.clear();
  state.summary_path.clear();
  state.record_path.clear();
  state.remaining_path.clear();
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

}  // namespace

bool Import_Users(Session& session, std::string_view path, const ImportOrder& order, ImportView& view) {
  ImportState& state = session.import;
  begin_run(state);
  bool whole = false;
  RecordedImport recorded(session, view);
  base::Trap trap(session::is_debug(session));
  trap([&] {
    // First, because "Import.err" may be the input.
    const std::string bytes = session.platform.files.read(path);
    if (order.user.stages.shares)
      creation::require_share_rights(session, order.user.TemplateName, order.user.SiteName);
    const bool again = !state.rehearsed && keep_error_file(session, bytes);
    const std::unique_ptr<ImportSource> lines = open_import(state, bytes, order.csv);
    if (!state.rehearsed) {
      name_files(session);
      open_error_file(session, lines->heading());
      open_summary(session);
      recorded.open(recorded_order(session, path, bytes, order), bytes);
      if (!order.resumes.empty())
        note_in_record(session.platform.files, order.resumes, {{"resumed", state.record_path}});
    }
    const End end = run_lines(session, path, *lines, order, recorded);
    if (again)
      keep_rest(session, *lines);
    whole = tell_end(session, end, path);
    recorded.finish(name_of(end));
  });
  if (trap.number() != 0)
    recorded.finish("failed");
  state.error_file.close();
  state.summary_file.close();
  state.Importing = false;
  state.holds_records = false;
  state.lookups.bound.clear();
  session.log.conceal({});
  if (trap.number() != 0)
    state.failure = trap.description();
  return whole;
}

bool run_import(Session& session, std::string_view path, const ImportOrder& order, ImportView& view) {
  log_block(session, "Starting Import from: " + std::string(path), true);
  session.status.panel1 = std::string("Importing Users....");
  const bool whole = Import_Users(session, path, order, view);
  log_block(session, "Import Finished", false);
  if (!whole) {
    session.platform.dialogs.MsgBox("Errors during Import. Check log files for details.",
                                    platform::Buttons::kOk, platform::Icon::kExclamation, "Import error");
  } else {
    session.status.panel1 = session.import.rehearsed
                                ? "Rehearsal complete. " + base::to_text(session.import.ImportAddedCount) +
                                      " users would be added."
                            : session.import.ImportStopped
                                ? "Import stopped. " + base::to_text(session.import.ImportAddedCount) +
                                      " users Added. Check Import.err for errors."
                                : "Import Complete. " + base::to_text(session.import.ImportAddedCount) +
                                      " users Added. Check Import.err for errors.";
  }
  return whole;
}

}  // namespace twk::batch
