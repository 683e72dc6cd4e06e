#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "batch/import.hpp"
#include "cli/parser/command.hpp"

namespace twk::session {
struct Session;
}

/// What the columns of an import file hold, as the command line says it.
namespace twk::cli {

/// Columns by their numbers, or headings.
struct GivenColumns {
  std::optional<std::string> first;
  std::optional<std::string> middle;
  std::optional<std::string> last;
  std::optional<std::string> id;
  std::optional<std::string> password;

  [[nodiscard]] bool any() const { return first || middle || last || id || password; }
};

void add_column_options(Command& command, GivenColumns& columns);

/// Raises `BadInput` for a file that has no user, or that cannot be read as a spreadsheet's with `csv`.
/// `name` is the file's in messages.
void require_user(std::string_view bytes, bool csv, const std::string& name);

/// The session and the order take the columns of a file. Raises `UsageError` for a column that the file does
/// not have; with `order.csv` also when it is not clear which columns hold the names, and when a text to be
/// filled names a heading that the file does not have.
void use_columns_of(session::Session& session, batch::ImportOrder& order, std::string_view bytes,
                    const GivenColumns& given);

/// Says once on standard error that --csv is for a file like this one, if it is.
void hint_at_csv(std::string_view bytes, const std::string& name);

}  // namespace twk::cli
