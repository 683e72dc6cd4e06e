#pragma once

#include <string>

#include "batch/import_columns.hpp"

namespace twk::session {
struct Session;
}

namespace twk::batch {

class CsvHeadings;
struct ImportOrder;

/// First, middle and last name where the headings say so ("First name", "Given name", "Surname" …); 0 for a
/// part that no heading names.
ImportColumns usual_columns(const CsvHeadings& headings);

/// Why an import cannot begin: a text that it fills, of the order, the template or a table, names a heading
/// that the file does not have, or has twice. Empty when it can. Texts of stages that are off do not count.
std::string refused_headings(session::Session& session, const ImportOrder& order,
                             const CsvHeadings& headings);

}  // namespace twk::batch
