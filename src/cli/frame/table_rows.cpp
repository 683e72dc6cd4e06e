#include "cli/frame/table_rows.hpp"

#include <algorithm>
#include <array>

#include "base/text.hpp"
#include "cli/terminal/failures.hpp"
#include "session/loaded_database.hpp"
#include "stores/side_tables.hpp"

namespace twk::cli {
namespace {

using session::Session;
using Lines = std::vector<std::string>;

constexpr std::size_t kMostMailRows = 49;
constexpr std::size_t kAccountLength = 50;
constexpr std::array<std::string_view, 4> kAccessWords = {"Full Control", "Change", "Read", "No Access"};

[[noreturn]] void refuse(std::size_t line, const std::string& reason) {
  throw BadInput("line " + std::to_string(line) + ": " + reason);
}

void refuse_controls(const Lines& lines, bool tabs_allowed) {
  for (std::size_t i = 0; i < lines.size(); ++i) {
    std::string line = lines[i];
    if (tabs_allowed)
      std::replace(line.begin(), line.end(), '\t', ' ');
    if (const auto control = base::find_control_character(line))
      refuse(i + 1, "the control character " + *control + " is not allowed");
  }
}

std::string value_of(const controls::ListRow& row) {
  return row.sub_items.empty() ? std::string() : row.sub_items.front();
}

std::vector<TableRow> rows_of(const controls::ListView& list,
                              const std::function<TableRow(const controls::ListRow&)>& form) {
  std::vector<TableRow> rows;
  for (std::size_t i = 0; i < list.size(); ++i)
    rows.push_back(form(list.at(i)));
  return rows;
}

std::vector<TableRow> read_mail(Session& session) {
  return rows_of(session.database.mail_rows, [](const controls::ListRow& row) {
    return TableRow{row.text + "," + value_of(row), {{"name", row.text}, {"value", value_of(row)}}};
  });
}

std::size_t write_mail(Session& session, const Lines& lines) {
  refuse_controls(lines, false);
  if (lines.size() > kMostMailRows)
    throw BadInput("the mail table holds at most 49 rows, these are " + std::to_string(lines.size()));
  for (std::size_t i = 0; i < lines.size(); ++i) {
    if (lines[i].find(',') == base::npos)
      refuse(i + 1, "a row is NAME,VALUE");
  }
  controls::ListView& list = session.database.mail_rows;
  list.clear();
  for (const std::string& line : lines) {
    const std::size_t comma = line.find(',');
    list.add({}, line.substr(0, comma), "MAIL", {line.substr(comma + 1)});
  }
  stores::save_mail_table(session);
  return lines.size();
}

std::vector<TableRow> read_w2k(Session& session) {
  return rows_of(session.database.directory_rows, [](const controls::ListRow& row) {
    const std::string kind = row.icon == "USER" ? "p" : "m";
    return TableRow{kind + "," + row.text + "," + value_of(row),
                    {{"kind", kind}, {"name", row.text}, {"value", value_of(row)}}};
  });
}

std::size_t write_w2k(Session& session, const Lines& lines) {
  refuse_controls(lines, false);
  for (std::size_t i = 0; i < lines.size(); ++i) {
    const std::string& line = lines[i];
    const bool kind = line.starts_with("p,") || line.starts_with("m,");
    const std::size_t comma = kind ? line.find(',', 2) : base::npos;
    if (comma == base::npos || comma == 2)
      refuse(i + 1, "a row is p,ATTRIBUTE,VALUE or m,ATTRIBUTE,VALUE");
  }
  controls::ListView& list = session.database.directory_rows;
  list.clear();
  for (const std::string& line : lines) {
    const std::size_t comma = line.find(',', 2);
    list.add({}, line.substr(2, comma - 2), line.front() == 'p' ? "USER" : "MAIL", {line.substr(comma + 1)});
  }
  stores::save_w2k_table(session);
  return lines.size();
}

std::vector<TableRow> read_wts(Session& session) {
  return rows_of(session.database.terminal_rows, [](const controls::ListRow& row) {
    return TableRow{value_of(row), {{"name", row.text}, {"value", value_of(row)}}};
  });
}

std::size_t write_wts(Session& session, const Lines& lines) {
  refuse_controls(lines, false);
  controls::ListView& list = session.database.terminal_rows;
  if (lines.size() > list.size()) {
    throw BadInput("the terminal-server table has " + std::to_string(list.size()) + " rows, these are " +
                   std::to_string(lines.size()));
  }
  for (std::size_t i = 0; i < list.size(); ++i)
    list.set_sub_item(list.at(i), 1, i < lines.size() ? lines[i] : std::string());
  stores::save_wts_table(session);
  return lines.size();
}

/// A share's list has no denials: there the word would allow what the row before allows.
void refuse_denial(const records::PermissionRecord& record, std::string_view file, std::size_t number) {
  if (file == stores::kSharePermissionFile && record.Access == kAccessWords.back())
    refuse(number, "a share knows Full Control, Change and Read, not \"" + record.Access + "\"");
}

records::PermissionRecord parse_permission(const std::string& line, std::size_t number) {
  const char separator = line.find('\t') == base::npos ? ',' : '\t';
  const std::vector<std::string> fields = base::split(line, separator);
  if (fields.size() < 2 || fields.size() > 4)
    refuse(number, "a row is ACCOUNT,ACCESS[,OWNER[,NEW]], separated by tabs or commas");
  records::PermissionRecord record;
  record.Account = base::trim(fields[0]);
  const auto word = std::find_if(kAccessWords.begin(), kAccessWords.end(), [&](std::string_view access) {
    return base::equals_fold(access, base::trim(fields[1]));
  });
  if (word == kAccessWords.end())
    refuse(number, "\"" + fields[1] + "\" is not one of Full Control, Change, Read, No Access");
  record.Access = *word;
  if (fields.size() > 2)
    record.Owner = base::trim(fields[2]);
  const std::string_view fresh = fields.size() > 3 ? base::trim(fields[3]) : std::string_view("no");
  if (!base::equals_fold(fresh, "yes") && !base::equals_fold(fresh, "no"))
    refuse(number, "NEW is yes or no, not \"" + std::string(fresh) + "\"");
  record.NewSecurity = base::equals_fold(fresh, "yes");
  if (record.Account.empty())
    refuse(number, "there is no account");
  for (const std::string& name : {record.Account, record.Owner}) {
    if (const std::string refusal = records::code_page_refusal(name); !refusal.empty())
      refuse(number, refusal);
  }
  if (base::length(record.Account) > kAccountLength || base::length(record.Owner) > kAccountLength)
    refuse(number, "an account has at most 50 characters");
  return record;
}

SideTable permission_table(std::string name, std::string_view file) {
  const auto read = [file](Session& session) {
    std::vector<TableRow> rows;
    for (const records::PermissionRecord& record : stores::read_permissions(session, file)) {
      const std::string fresh = record.NewSecurity ? "yes" : "no";
      rows.push_back({record.Account + "\t" + record.Access + "\t" + record.Owner + "\t" + fresh,
                      {{"account", record.Account},
                       {"access", record.Access},
                       {"owner", record.Owner},
                       {"new", record.NewSecurity}}});
    }
    return rows;
  };
  const auto write = [file](Session& session, const Lines& lines) {
    refuse_controls(lines, true);
    std::vector<records::PermissionRecord> records;
    for (std::size_t i = 0; i < lines.size(); ++i) {
      records.push_back(parse_permission(lines[i], i + 1));
      refuse_denial(records.back(), file, i + 1);
    }
    stores::write_permissions(session, file, records);
    return stores::read_permissions(session, file).size();
  };
  return {std::move(name), read, write};
}

std::vector<SideTable> all_tables() {
  return {{"mail", read_mail, write_mail},
          {"w2k", read_w2k, write_w2k},
          {"wts", read_wts, write_wts},
          permission_table("permissions", stores::kPermissionFile),
          permission_table("share-permissions", stores::kSharePermissionFile)};
}

}  // namespace

std::vector<std::string> side_table_names() {
  std::vector<std::string> names;
  for (const SideTable& table : all_tables())
    names.push_back(table.name);
  return names;
}

SideTable side_table(std::string_view name) {
  std::vector<SideTable> tables = all_tables();
  return *std::find_if(tables.begin(), tables.end(),
                       [&](const SideTable& table) { return base::equals_fold(table.name, name); });
}

}  // namespace twk::cli
