#include "stores/side_tables.hpp"

#include <algorithm>
#include <functional>

#include "base/text.hpp"
#include "records/record_file.hpp"
#include "records/terminal_server_rows.hpp"
#include "session/loaded_database.hpp"
#include "session/session.hpp"
#include "stores/database_files.hpp"

namespace twk::stores {
namespace {

using session::Session;

constexpr std::size_t kMostMailLines = 49;
constexpr std::string_view kUserIcon = "USER";
constexpr std::string_view kMailIcon = "MAIL";

/// False when there is no such file.
bool read_lines(Session& session, std::string_view file, std::vector<std::string>& lines) {
  const std::string path = database_path(session, file);
  if (!session.platform.files.exists(path))
    return false;
  lines = session::table_lines(session.platform.files.read(path));
  return true;
}

std::string_view value_of(const controls::ListRow& row) {
  return row.sub_items.empty() ? std::string_view() : std::string_view(row.sub_items.front());
}

void save_lines(Session& session, std::string_view file, const controls::ListView& list,
                const std::function<std::string(const controls::ListRow&)>& line_of) {
  std::vector<std::string> lines;
  for (std::size_t i = 0; i < list.size(); ++i)
    lines.push_back(line_of(list.at(i)));
  session.platform.files.write(database_path(session, file), session::table_bytes(lines));
}

}  // namespace

void create_mail_table(Session& session) {
  session.platform.files.write(
      database_path(session, kMailFile),
      session::table_bytes({"Container,Recipients", "Target-Address,%first%.%last%@mail.example",
                            "Replication-Sensitivity,20"}));
}

void load_mail_table(Session& session) {
  std::vector<std::string> lines;
  if (!read_lines(session, kMailFile, lines))
    return;
  lines.resize(std::min(lines.size(), kMostMailLines));
  controls::ListView& list = session.database.mail_rows;
  list.clear();
  for (const std::string& line : lines) {
    const std::size_t comma = line.find(',');
    if (comma != base::npos)
      list.add({}, line.substr(0, comma), std::string(kMailIcon), {line.substr(comma + 1)});
  }
}

void load_w2k_table(Session& session) {
  std::vector<std::string> lines;
  if (!read_lines(session, kW2kFile, lines))
    return;
  controls::ListView& list = session.database.directory_rows;
  list.clear();
  for (const std::string& line : lines) {
    // The kind is one character, its comma another.
    const std::string_view rest = base::mid(line, 3);
    const std::size_t comma = rest.find(',');
    if (comma == base::npos)
      continue;
    list.add({}, std::string(rest.substr(0, comma)),
             std::string(line.starts_with('p') ? kUserIcon : kMailIcon),
             {std::string(rest.substr(comma + 1))});
  }
}

void load_wts_table(Session& session) {
  std::vector<std::string> lines;
  if (!read_lines(session, kWtsFile, lines))
    return;
  controls::ListView& list = session.database.terminal_rows;
  for (std::size_t i = 0; i < std::min(list.size(), lines.size()); ++i)
    list.set_sub_item(list.at(i), 1, lines[i]);
}

void save_mail_table(Session& session) {
  save_lines(session, kMailFile, session.database.mail_rows,
             [](const controls::ListRow& row) { return row.text + "," + std::string(value_of(row)); });
}

void save_w2k_table(Session& session) {
  save_lines(session, kW2kFile, session.database.directory_rows, [](const controls::ListRow& row) {
    return (row.icon == kUserIcon ? "p," : "m,") + row.text + "," + std::string(value_of(row));
  });
}

void save_wts_table(Session& session) {
  save_lines(session, kWtsFile, session.database.terminal_rows,
             [](const controls::ListRow& row) { return std::string(value_of(row)); });
}

std::vector<DirectoryRow> directory_rows(const session::Session& session) {
  const controls::ListView& list = session.database.directory_rows;
  std::vector<DirectoryRow> rows;
  rows.reserve(list.size());
  for (std::size_t i = 0; i < list.size(); ++i) {
    const controls::ListRow& row = list.at(i);
    rows.push_back(
        {row.text, row.sub_items.empty() ? std::string() : row.sub_items.front(), row.icon == "USER"});
  }
  return rows;
}

void fill_wts_rows(Session& session) {
  session.database.terminal_rows.clear();
  for (const records::TerminalServerRow& row : records::kTerminalServerRows)
    session.database.terminal_rows.add(std::string(row.key), std::string(row.text), {}, {std::string()});
}

std::vector<records::PermissionRecord> read_permissions(Session& session, std::string_view file) {
  std::vector<records::PermissionRecord> records;
  records::RecordFile::open_read(session.platform.files, database_path(session, file),
                                 records::kPermissionRecordSize)
      .search([&records](std::string_view bytes) {
        records.push_back(records::decode_permission(bytes));
        return false;
      });
  return records;
}

void write_permissions(Session& session, std::string_view file,
                       std::span<const records::PermissionRecord> records) {
  std::string bytes;
  for (const records::PermissionRecord& record : records)
    bytes += records::encode_permission(record);
  if (records.empty() && base::equals_fold(file, kSharePermissionFile))
    bytes = records::encode_permission({false, "Everyone", "Full Control", {}});
  session.platform.files.write(database_path(session, file), bytes);
}

}  // namespace twk::stores
