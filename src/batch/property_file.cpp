#include "batch/property_file.hpp"

#include "base/errors.hpp"
#include "base/text.hpp"
#include "base/text_file.hpp"
#include "batch/change_property.hpp"
#include "batch/import_file.hpp"
#include "batch/property_run.hpp"
#include "batch/schema_properties.hpp"
#include "directory/operations.hpp"
#include "platform/ldap_text.hpp"
#include "session/ad_properties.hpp"
#include "session/loaded_domain.hpp"
#include "session/log_tab.hpp"
#include "session/multi_user.hpp"
#include "session/session.hpp"

namespace twk::batch {
namespace {

using session::ADProperties;
using session::Session;

constexpr std::string_view kTitle = "AD Propeties Import";

struct FileRun {
  Session& session;
  std::string title;
  const FileRules& rules;
  std::int32_t users = 0;  ///< of all lines: changed
  std::int32_t errors = 0;
};

struct Line {
  std::int32_t number;
  std::string name;
  std::string value;
  bool whole;  ///< it has a comma
};

std::string file_title(std::string_view path) {
  const std::size_t slash = path.find_last_of("\\/");
  return std::string(slash == base::npos ? path : path.substr(slash + 1));
}

Line split_line(std::int32_t number, std::string_view text) {
  const std::size_t comma = text.find(',');
  if (comma == base::npos)
    return {number, std::string(base::trim(text)), {}, false};
  return {number, std::string(base::trim(text.substr(0, comma))), std::string(text.substr(comma + 1)), true};
}

std::string place(const FileRun& run, const Line& line) {
  return run.title + ", line " + base::to_text(line.number) + ": ";
}

void log(Session& session, const std::string& text) {
  session.log.open();
  session.log.line(text);
  session.log.close();
}

/// Reports a failed line in the log and on the log tab.
void tell_failed(FileRun& run, const Line& line, const std::string& reason) {
  ++run.errors;
  const std::string text = place(run, line) + line.name + ": " + reason;
  log(run.session, text);
  session::LOG_TAB(run.session, session::kYellow, " " + text);
}

void tell_undone(FileRun& run, const Line& line, const std::string& reason, bool skipped) {
  ADProperties& tab = run.session.ad_properties;
  if (skipped) {
    ++tab.skipped;
    log(run.session, place(run, line) + line.name + ": " + reason);
  } else {
    tell_failed(run, line, reason);
  }
  if (tab.user_done) {
    tab.user_done({.line = line.number,
                   .user = line.name,
                   .path = {},
                   .value = line.value,
                   .changed = false,
                   .skipped = skipped,
                   .reason = reason});
  }
}

std::optional<std::string> path_of_logon_name(Session& session, std::string_view name) {
  if (!session::is_active_directory(session))
    return std::nullopt;
  const auto rows =
      directory::run_query(session, "<LDAP://" + session.DomainName +
                                        ">;(&(objectCategory=Person)(objectClass=User)(samAccountName=" +
                                        platform::escape_filter_value(name) + "));adsPath;subtree");
  return rows->at_eof() ? std::nullopt : std::optional(rows->field(0).text());
}

/// The path of a user in the list.
std::optional<std::string> find_in_list(Session& session, const std::string& name) {
  if (name.empty())
    return std::nullopt;
  const controls::ListView& list = session.domain.users;
  const auto rows = list.find_text(name);
  if (rows.size() == 1)
    return rows.front()->key;
  auto path = path_of_logon_name(session, name);
  if (path && list.find_key(*path) != nullptr)
    return path;
  if (!rows.empty()) {
    base::raise(
        platform::ads_error::kNoSuchObject,
        "The list has " + base::to_text(static_cast<std::int64_t>(rows.size())) + " users of that name");
  }
  return std::nullopt;
}

/// False when no server answers.
bool change_user(FileRun& run, const Line& line, const std::string& path) {
  Session& session = run.session;
  ADProperties& tab = session.ad_properties;
  session.multi_user.AD_CHANGE.text = line.value;
  tab.line = line.number;
  const bool whole = in_change_block(session, [&] { change_user_at(session, path, line.name); });
  tab.line = 0;
  run.users += tab.users;
  if (!whole)
    tell_failed(run, line, tab.failure);
  else if (tab.errors > 0)
    tell_failed(run, line, tab.reason);
  return whole;
}

/// Why strict rules refuse a line; empty when they do not.
std::string fault_of(const FileRun& run, const Line& line) {
  if (!run.rules.strict)
    return {};
  return line.whole ? value_fault(run.session, line.value) : "There is no comma after the name";
}

/// False when the run must end.
bool take_line(FileRun& run, const Line& line) {
  Session& session = run.session;
  if (const std::string fault = fault_of(run, line); !fault.empty()) {
    tell_undone(run, line, fault, false);
    return true;
  }
  std::optional<std::string> path;
  base::Trap trap;
  trap([&] { path = run.rules.find ? run.rules.find(line.name) : find_in_list(session, line.name); });
  if (trap.number() == platform::ads_error::kServerDown)
    session.ad_properties.failure = trap.description();
  bool goes_on = trap.number() != platform::ads_error::kServerDown;
  if (trap.number() != 0)
    tell_undone(run, line, trap.description(), false);
  else if (!path)
    tell_undone(run, line, "There is no such user in the list", true);
  else
    goes_on = change_user(run, line, *path);
  if (line.whole)
    return goes_on;
  tell_failed(run, line, "There is no comma after the name; the run ends there");
  return false;
}

void log_line(Session& session, std::string_view text, const Line& line) {
  if (!session::is_debug(session))
    return;
  session.log.open();
  session.log.line("Line=" + std::string(text));
  session.log.line("AD Property = " + line.value);
  session.log.line("User = " + line.name);
  session.log.close();
}

bool run_lines(FileRun& run, std::string_view text) {
  std::size_t position = 0;
  std::string_view line;
  for (std::int32_t number = 1; next_line(text, position, line); ++number) {
    show_progress(run.session, position, text.size());
    if (is_cancelled(run.session))
      return false;
    if (base::trim(line).empty())
      continue;
    const Line split = split_line(number, line);
    log_line(run.session, line, split);
    if (!take_line(run, split))
      return false;
  }
  return true;
}

}  // namespace

bool change_from_file(Session& session, const std::string& title, std::string_view bytes,
                      const FileRules& rules) {
  ADProperties& tab = session.ad_properties;
  if (!begin_run(session))
    return false;
  const PropertyRun running(session);
  FileRun run{session, title, rules};
  const bool whole = run_lines(run, base::decoded(bytes));
  tab.users = run.users;
  tab.errors = run.errors;
  return whole;
}

void DELIMPORT_Click(Session& session) {
  ADProperties& tab = session.ad_properties;
  platform::Dialogs& dialogs = session.platform.dialogs;
  if (session::is_running(session.multi_user))
    return;
  const std::string property(base::trim(tab.AD_Properties.text.get()));
  if (property.empty()) {
    dialogs.MsgBox("Select the AD Propery to change first, before importing the file.",
                   platform::Buttons::kOk, platform::Icon::kNone, kTitle);
    return;
  }
  if (dialogs.MsgBox("This will import AD properties for the users in the csv file\r\n"
                     "Format must be Username,ADValue",
                     platform::Buttons::kOkCancel, platform::Icon::kNone, kTitle) != platform::Answer::kOk)
    return;
  log(session, "Importing users to change AD value " + property);
  const auto path =
      dialogs.open_file("Open file to import", "CSV Files (*.csv)|*.csv|Text Files (*.txt)|*.txt|");
  if (!path || path->empty())
    return;
  tab.failure.clear();
  tab.stopped = false;
  base::Trap trap;
  if (!trap([&] { change_from_file(session, file_title(*path), session.platform.files.read(*path)); }))
    tab.failure = trap.description();
  if (!tab.failure.empty()) {
    log(session, tab.failure);
    dialogs.MsgBox(tab.failure, platform::Buttons::kOk, platform::Icon::kExclamation, kTitle);
  }
  session.multi_user.Label3.caption =
      std::string(tab.stopped ? "Import of AD Properties canceled, check log for errors"
                              : "Import of AD Properties has completed, check log for errors");
}

}  // namespace twk::batch
