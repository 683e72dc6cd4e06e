#include "batch/property_file.hpp"

#include "base/errors.hpp"
#include "base/text.hpp"
#include "base/text_file.hpp"
#include "batch/import_file.hpp"
#include "batch/property_run.hpp"
#include "directory/operations.hpp"
#include "platform/ldap_text.hpp"
#include "session/loaded_domain.hpp"
#include "session/log_tab.hpp"
#include "session/run_scope.hpp"
#include "session/session.hpp"

namespace twk::batch {
namespace {

using session::Session;

struct FileRun {
  PropertyRun& property;
  const std::string& title;
  const FileRules& rules;
  std::int32_t users = 0;  ///< of all lines: changed
  std::int32_t errors = 0;
};

struct Line {
  std::int32_t number;
  std::string name;
  std::string value;
  bool whole;  ///< it has a comma
  bool has_semicolon = false;
};

Line split_line(std::int32_t number, std::string_view text) {
  const std::size_t comma = text.find(',');
  if (comma == base::npos)
    return {number, std::string(base::trim(text)), {}, false, text.find(';') != base::npos};
  return {number, std::string(base::trim(text.substr(0, comma))), std::string(text.substr(comma + 1)), true};
}

std::string no_comma(const Line& line) {
  const std::string text = "There is no comma after the name";
  return line.has_semicolon ? text + ", but a semicolon: save the file with commas between the columns"
                            : text;
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
  log(run.property.session, text);
  session::LOG_TAB(run.property.session, session::kYellow, " " + text);
}

void tell_undone(FileRun& run, const Line& line, const std::string& reason, bool skipped) {
  if (skipped) {
    ++run.property.counts.skipped;
    log(run.property.session, place(run, line) + line.name + ": " + reason);
  } else {
    tell_failed(run, line, reason);
  }
  if (run.property.order.user_done) {
    run.property.order.user_done({.line = line.number,
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
  PropertyRun& property = run.property;
  property.line = line.number;
  const bool whole =
      in_change_block(property, line.value, [&] { change_user_at(property, path, line.name, line.value); });
  run.users += property.counts.users;
  if (!whole)
    tell_failed(run, line, property.counts.failure);
  else if (property.counts.errors > 0)
    tell_failed(run, line, property.reason);
  return whole;
}

/// Why strict rules refuse a line; empty when they do not.
std::string fault_of(const FileRun& run, const Line& line) {
  if (!run.rules.strict)
    return {};
  return line.whole ? value_fault(run.property.order.property.name, line.value) : no_comma(line);
}

/// False when the run must end.
bool take_line(FileRun& run, const Line& line) {
  Session& session = run.property.session;
  if (const std::string fault = fault_of(run, line); !fault.empty()) {
    tell_undone(run, line, fault, false);
    return true;
  }
  std::optional<std::string> path;
  base::Trap trap;
  trap([&] { path = run.rules.find ? run.rules.find(line.name) : find_in_list(session, line.name); });
  if (trap.number() == platform::ads_error::kServerDown)
    run.property.counts.failure = trap.description();
  bool goes_on = trap.number() != platform::ads_error::kServerDown;
  if (trap.number() != 0)
    tell_undone(run, line, trap.description(), false);
  else if (!path)
    tell_undone(run, line, "There is no such user in the list", true);
  else
    goes_on = change_user(run, line, *path);
  if (line.whole)
    return goes_on;
  tell_failed(run, line, no_comma(line) + "; the run ends there");
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

void run_lines(FileRun& run, std::string_view text) {
  std::size_t position = 0;
  std::string_view line;
  for (std::int32_t number = 1; next_line(text, position, line); ++number) {
    show_progress(run.property, position, text.size());
    if (is_cancelled(run.property))
      return;
    if (base::trim(line).empty())
      continue;
    const Line split = split_line(number, line);
    log_line(run.property.session, line, split);
    if (!take_line(run, split))
      return;
  }
}

}  // namespace

PropertyCounts change_from_file(Session& session, const PropertyOrder& order, const std::string& title,
                                std::string_view bytes, session::RunView& view, const FileRules& rules) {
  const session::RunScope scope(session, view);
  PropertyRun property{session, order, view};
  FileRun run{property, title, rules};
  run_lines(run, base::decoded(bytes));
  property.counts.users = run.users;
  property.counts.errors = run.errors;
  return property.counts;
}

}  // namespace twk::batch
