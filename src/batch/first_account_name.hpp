#pragma once

#include <string>
#include <vector>

namespace twk::session {
struct Session;
}

namespace twk::batch {

class CsvHeadings;
struct ImportOrder;

/// The account name that an import would try first for the fields of a record, by the columns that the
/// session and the order use. Whether it is free, and allowed, is only known to the preview of an import.
std::string first_account_name(session::Session& session, const ImportOrder& order,
                               const CsvHeadings& headings, const std::vector<std::string>& fields);

}  // namespace twk::batch
