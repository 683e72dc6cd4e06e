#include "cli/user/import_layout.hpp"

#include "base/errors.hpp"
#include "base/text.hpp"
#include "batch/csv_detection.hpp"
#include "batch/csv_lines.hpp"
#include "batch/heading_use.hpp"
#include "batch/import_columns.hpp"
#include "batch/import_file.hpp"
#include "cli/terminal/failures.hpp"
#include "session/session.hpp"

namespace twk::cli {
namespace {

using batch::ImportColumns;

constexpr int kLastColumn = static_cast<int>(session::kMostImportFields);

/// A part of the names, or another use of a column.
struct Use {
  const char* option;
  const char* what;
};
constexpr Use kFirst = {"--first", "the first name"};
constexpr Use kMiddle = {"--middle", "the middle name"};
constexpr Use kLast = {"--last", "the last name"};
constexpr Use kId = {"--id", "the account name"};
constexpr Use kPassword = {"--password", "the password"};

int numbered_column(const Use& use, const std::string& text) {
  const auto number = base::to_number(text);
  if (!number || *number < 0 || *number > kLastColumn) {
    throw UsageError(std::string(use.option) + " takes the number of a column, from 0 to " +
                     std::to_string(kLastColumn) + ", or with --csv its heading");
  }
  return *number;
}

/// The columns of the file; some line must have each that was asked for.
ImportColumns plain_columns(const batch::FileColumns& file, const GivenColumns& given) {
  const auto choose = [&](const Use& use, const std::optional<std::string>& text, int standard) {
    const int column = text ? numbered_column(use, *text) : standard;
    if (text && column > file.widest) {
      throw UsageError("there is no column " + std::to_string(column) + ": the longest line has " +
                       std::to_string(file.widest));
    }
    return column <= file.widest ? column : 0;
  };
  if (!given.any())
    return batch::standard_columns(file);
  return {choose(kFirst, given.first, 1), choose(kMiddle, given.middle, 2), choose(kLast, given.last, 3),
          choose(kId, given.id, 0), choose(kPassword, given.password, 0)};
}

/// The column that is named by its number, or else by its heading.
int headed_column(const batch::CsvHeadings& headings, const Use& use, const std::string& text) {
  if (!base::to_number(text)) {
    base::Trap trap;
    int column = 0;
    if (!trap([&] { column = headings.column(text); }))
      throw UsageError(std::string(use.option) + ": " + trap.description());
    if (column > kLastColumn) {
      throw UsageError(std::string(use.option) + ": only the first " + std::to_string(kLastColumn) +
                       " columns can hold " + use.what);
    }
    return column;
  }
  const int column = numbered_column(use, text);
  if (column > static_cast<int>(headings.size())) {
    throw UsageError("there is no column " + std::to_string(column) + ": the heading line has " +
                     std::to_string(headings.size()));
  }
  return column;
}

ImportColumns csv_columns(const batch::CsvHeadings& headings, const GivenColumns& given) {
  const ImportColumns usual = batch::usual_columns(headings);
  const auto choose = [&](const Use& use, const std::optional<std::string>& text, int standard) {
    return text ? headed_column(headings, use, *text) : standard;
  };
  const auto name = [&](const Use& use, const std::optional<std::string>& text, int standard) {
    if (!text && standard == 0) {
      throw UsageError(std::string("say which column holds ") + use.what + ": " + use.option +
                       " takes its heading or number, 0 for none. The headings are " + headings.listed());
    }
    return choose(use, text, standard);
  };
  return {name(kFirst, given.first, usual.first), choose(kMiddle, given.middle, usual.middle),
          name(kLast, given.last, usual.last), choose(kId, given.id, 0),
          choose(kPassword, given.password, 0)};
}

void add_column(Command& command, const Use& use, std::optional<std::string>& column, const char* what) {
  command.add_option(use.option, column, what)->type_name("N");
}

}  // namespace

void add_column_options(Command& command, GivenColumns& columns) {
  add_column(command, kFirst, columns.first,
             "Column of the first name; 1 if not given. With --csv, for every column: its number or heading");
  add_column(command, kMiddle, columns.middle, "Column of the middle name; 2 if not given, 0 for none");
  add_column(command, kLast, columns.last, "Column of the last name; 3 if not given");
  add_column(command, kId, columns.id, "Column of the account name");
  add_column(command, kPassword, columns.password, "Column of the password");
}

void require_user(std::string_view bytes, bool csv, const std::string& name) {
  if (!csv) {
    if (!batch::ImportLines(bytes).next())
      throw BadInput(name + " contains no user");
    return;
  }
  try {
    if (!batch::CsvLines(bytes).next())
      throw BadInput(name + " contains no user below its heading line");
  } catch (const base::RuntimeError& fault) {
    throw BadInput(name + ", " + fault.description());
  }
}

void use_columns_of(session::Session& session, batch::ImportOrder& order, std::string_view bytes,
                    const GivenColumns& given) {
  if (!order.csv) {
    const batch::FileColumns file = batch::survey_columns(bytes);
    return batch::use_columns(session.import, order, plain_columns(file, given), !given.any());
  }
  const batch::CsvHeadings headings = batch::CsvLines(bytes).headings();
  batch::use_columns(session.import, order, csv_columns(headings, given), false);
  if (const std::string fault = batch::refused_headings(session, order, headings); !fault.empty())
    throw UsageError(fault);
}

void hint_at_csv(std::string_view bytes, const std::string& name) {
  const std::string_view sign = batch::sign_of_spreadsheet(bytes);
  if (!sign.empty()) {
    complain(name + " has " + std::string(sign) +
             ", as spreadsheet programs save them, but every comma separates here. If the first line holds "
             "headings, use --csv");
  }
}

}  // namespace twk::cli
