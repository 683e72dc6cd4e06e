#pragma once

#include <string>
#include <vector>

#include "directory/account_fields.hpp"

namespace twk::session {
struct Session;
}

namespace twk::cli {

/// Puts "FIELD=VALUE" into the fields of an account that was read. Raises `UsageError`, with a list of the
/// fields, for an unknown field and for a value that the field does not accept, and `Refused` for one that
/// accounts of this domain do not have.
void assign_fields(session::Session& session, directory::UserDetails& details,
                   const std::vector<std::string>& assignments);

}  // namespace twk::cli
