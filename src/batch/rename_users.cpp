#include "batch/rename_users.hpp"

#include <array>
#include <optional>
#include <vector>

#include "base/error_words.hpp"
#include "base/errors.hpp"
#include "base/text.hpp"
#include "batch/csv_lines.hpp"
#include "controls/tree_view.hpp"
#include "lifecycle/rename/new_names.hpp"
#include "lifecycle/rename/rename_record.hpp"
#include "lifecycle/trees/folder_use.hpp"
#include "platform/directory.hpp"
#include "session/run_scope.hpp"

namespace twk::batch {
namespace {

using lifecycle::NewNames;
using session::Session;

struct NameColumn {
  std::optional<std::string> NewNames::*name;
  std::vector<std::string_view> headings;
};

const std::vector<std::string_view>& user_headings() {
  static const std::vector<std::string_view> headings = {"User", "Username", "User name"};
  return headings;
}

const std::array<NameColumn, 6>& name_columns() {
  static const std::array<NameColumn, 6> columns = {
      {{&NewNames::logon, {"Logon", "New logon", "Logon name"}},
       {&NewNames::principal, {"UPN", "Principal name", "userPrincipalName"}},
       {&NewNames::full_name, {"Full name", "FullName", "Common name", "cn"}},
       {&NewNames::first, {"First name", "First", "Given name", "GivenName", "Forename"}},
       {&NewNames::last, {"Last name", "Last", "Surname", "Family name", "sn"}},
       {&NewNames::display, {"Display name", "Display", "displayName"}}}};
  return columns;
}

/// Where the fields of a line are.
struct Columns {
  std::size_t user = 0;
  std::vector<std::pair<std::size_t, std::optional<std::string> NewNames::*>> names;
};

[[noreturn]] void refuse_headings(const CsvHeadings& headings, const std::string& fault) {
  base::raise(base::error::kTypeMismatch,
              fault +
                  ": the heading line must have User, and besides it Logon, UPN, Full name, First name, "
                  "Last name or Display name; it has " +
                  headings.listed());
}

Columns columns_of(const CsvHeadings& headings) {
  Columns columns;
  columns.user = static_cast<std::size_t>(headings.usual_column(user_headings()));
  if (columns.user == 0)
    refuse_headings(headings, "no column says which users");
  for (const NameColumn& one : name_columns()) {
    if (const int column = headings.usual_column(one.headings); column != 0)
      columns.names.emplace_back(static_cast<std::size_t>(column), one.name);
  }
  if (columns.names.empty())
    refuse_headings(headings, "no column has new names");
  if (columns.names.size() + 1 != headings.size())
    refuse_headings(headings, "a column is neither the user's nor one of new names");
  return columns;
}

std::string field(const CsvRecord& record, std::size_t column) {
  return column > record.fields.size() ? std::string() : std::string(base::trim(record.fields[column - 1]));
}

NewNames names_of(const CsvRecord& record, const Columns& columns) {
  NewNames names;
  for (const auto& [column, name] : columns.names) {
    if (std::string text = field(record, column); !text.empty())
      names.*name = std::move(text);
  }
  return names;
}

session::RunOutcome refusal(const std::string& reason) {
  return {std::string(session::kRed), reason, false, {reason}};
}

/// Raises when no server answers.
session::RunOutcome rename_node(Session& session, controls::TreeNode& node, const NewNames& names,
                                lifecycle::RenameTerms& terms, session::RunView& view) {
  if (!names.any())
    return {std::string(session::kGreen), node.text + " keeps every name", true, {}};
  const std::string before = node.text;
  session.status.panel1 = std::string();
  try {
    session::RunOutcome outcome = lifecycle::rename_to(session, node, names, terms, view);
    if (outcome.light.empty() && !outcome.done)
      return refusal(session.status.panel1);
    if (outcome.light.empty() || outcome.light == session::kGreen)
      outcome = {std::string(session::kGreen), before + " is " + node.text + " now", true, {}};
    return outcome;
  } catch (const lifecycle::UnfitName& unfit) {
    return refusal(unfit.what());
  }
}

RenamedLine rename_line(Session& session, const CsvRecord& record, const Columns& columns,
                        const RenameFileOrder& order, lifecycle::RenameTerms& terms, session::RunView& view) {
  RenamedLine line;
  line.number = record.line;
  line.result.user = field(record, columns.user);
  session.run.user = line.result.user;
  try {
    // A record of folders goes only when what the account says of them is on the disk.
    std::optional<platform::WriteBatch> batch;
    if (!order.folders)
      batch.emplace(session.platform.directory);
    controls::TreeNode* const node = line.result.user.empty() ? nullptr : order.find(line.result.user);
    line.unknown = node == nullptr;
    static_cast<session::RunOutcome&>(line.result) =
        line.unknown ? refusal("There is no user \"" + line.result.user + "\".")
                     : rename_node(session, *node, names_of(record, columns), terms, view);
    if (node != nullptr)
      line.result.path = node->key;
    if (batch)
      batch->commit();
  } catch (const base::RuntimeError& failure) {
    if (failure.number() == platform::ads_error::kServerDown)
      throw;
    static_cast<session::RunOutcome&>(line.result) = refusal(base::in_words(failure));
  }
  session.run.user.clear();
  return line;
}

/// Keeps the log open for a run, however that ends.
class OpenLog {
 public:
  explicit OpenLog(session::ActivityLog& log) : log_(log) { log_.open(); }
  OpenLog(const OpenLog&) = delete;
  OpenLog& operator=(const OpenLog&) = delete;
  ~OpenLog() { log_.close(); }

 private:
  session::ActivityLog& log_;
};

}  // namespace

void rename_from_file(Session& session, std::string_view bytes, const RenameFileOrder& order,
                      session::RunView& view) {
  CsvLines lines(bytes);
  const Columns columns = columns_of(lines.headings());
  const session::RunScope scope(session, order.terms, view);
  const lifecycle::KnownFolders known(session);
  lifecycle::RunRecord run_record(session);
  lifecycle::RenameTerms terms{.folders = order.folders, .run = order.terms, .record = &run_record};
  const OpenLog log(session.log);
  while (session.run.goes_on() && lines.next()) {
    view.step("Renaming User: " + field(lines.record(), columns.user));
    order.done(rename_line(session, lines.record(), columns, order, terms, view));
  }
}

}  // namespace twk::batch
