#include "cli/import_preview.hpp"

#include <algorithm>
#include <set>

#include "base/text.hpp"
#include "batch/csv_layout.hpp"
#include "cli/exit_codes.hpp"
#include "creation/account_name.hpp"
#include "format/user_name.hpp"

namespace twk::cli {
namespace {

constexpr std::size_t kLongestUserId = 20;

const std::vector<Column> kColumns = {{"line", "Line"},      {"light", "Light"},   {"user", "User"},
                                      {"first", "First"},    {"middle", "Middle"}, {"last", "Last"},
                                      {"message", "Message"}};

/// The names of the accounts there are, in upper case.
std::set<std::string> taken_names(const Domain& domain) {
  std::set<std::string> names;
  for (const Json& row : list_users(domain, {}))
    names.insert(base::upper(row["name"].get<std::string>()));
  return names;
}

struct Verdict {
  std::string_view light = session::kGreen;
  std::string message = "Would be created";
};

Verdict judge(const session::Session& session, const std::string& user, std::set<std::string>& taken) {
  const std::size_t length = base::length(user);
  if (length < 1 || length > kLongestUserId)
    return {session::kRed, "UserID Is too long or too Short, 1-20 chrs"};
  for (const std::string& character :
       creation::invalid_characters(user, session::is_active_directory(session)))
    return {session::kRed, "Invalid Character in User Name: " + character};
  if (taken.insert(base::upper(user)).second)
    return {};
  if (session.SerialTokenUsed || !session.form1.ALTID.text.get().empty())
    return {session::kYellow, "User Name already exist, another one would be formed"};
  return {session::kRed, "User Name already exist"};
}

/// The field of the line in hand that a column names, as a creation takes it for a name.
std::string field_of(const session::ImportState& state, const std::optional<int>& column, int standard) {
  return creation::capitalized(
      base::trim(state.ImportFields.at(static_cast<std::size_t>(column.value_or(standard)))));
}

Json preview_line(session::Session& session, std::int32_t number, const ImportColumns& columns,
                  std::set<std::string>& taken) {
  session::ImportState& state = session.import;
  const std::string first = field_of(state, columns.first, 1);
  const std::string middle = field_of(state, columns.middle, 2);
  const std::string last = field_of(state, columns.last, 3);
  session.SerialTokenUsed = false;
  const std::string format = columns.id.value_or(0) > 0 ? "%IMPORT" + std::to_string(*columns.id) + "%"
                                                        : session.form1.setupid.text.get();
  std::string user;
  Verdict verdict = {session::kRed, "The line has fewer than two fields"};
  if (state.ImportFieldCount >= 2) {
    user = format::UserName(session, format, first, middle, last);
    verdict = judge(session, user, taken);
  }
  return {{"line", number},
          {"user", user},
          {"light", verdict.light},
          {"message", verdict.message},
          {"warnings", verdict.light == session::kGreen ? Json::array() : Json::array({verdict.message})},
          {"first", first},
          {"middle", middle},
          {"last", last}};
}

}  // namespace

int preview_import(Context& context, session::Session& session, const std::string& path,
                   const ImportColumns& columns) {
  const std::string text = batch::import_text(context.services().files.read(path));
  std::set<std::string> taken = taken_names(context.domain());
  std::vector<Json> rows;
  int exit_code = kExitGreen;
  std::size_t position = 0;
  std::string_view line;
  session.import.Importing = true;
  for (std::int32_t number = 1; batch::next_line(text, position, line); ++number) {
    batch::split_import_line(session.import, line);
    rows.push_back(preview_line(session, number, columns, taken));
    exit_code = std::max(exit_code, exit_code_of_light(rows.back()["light"].get_ref<const std::string&>()));
  }
  session.import.Importing = false;
  context.output().table(kColumns, rows);
  return exit_code;
}

}  // namespace twk::cli
