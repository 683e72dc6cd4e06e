#pragma once

#include <string_view>

#include "batch/csv_dialect.hpp"

/// How a file of records was written, told from its bytes.
namespace twk::batch {

/// What a file's bytes say about themselves. A byte-order mark decides the encoding; without one, bytes that
/// read as UTF-8 are UTF-8, all others code page 1252. The separator is a comma, a semicolon or a tab: the
/// one that separates the first line, and gives most of the first records the same number of fields. Of
/// several that do so equally well it is the rarest in texts: the tab before the semicolon before the comma.
/// A file without any has one column.
CsvDialect find_dialect(std::string_view bytes);

/// What in a file cannot be read as lines that every comma separates, but looks like a spreadsheet's: "quoted
/// fields" …; empty for nothing.
std::string_view sign_of_spreadsheet(std::string_view bytes);

}  // namespace twk::batch
