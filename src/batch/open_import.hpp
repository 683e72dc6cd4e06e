#pragma once

#include <memory>
#include <string_view>

#include "batch/import_source.hpp"

namespace twk::batch {

/// The users in the bytes of a file, which must outlive the source: a user a line, every comma separating,
/// or, with `csv`, a spreadsheet's records below their heading line. The state gets the columns by their
/// headings. Raises for a spreadsheet's file that cannot be read to its end.
std::unique_ptr<ImportSource> open_import(session::ImportState& state, std::string_view bytes, bool csv);

}  // namespace twk::batch
