#pragma once

#include <string>
#include <vector>

#include "session/session.hpp"

namespace twk::cli {

/// Writes "FIELD=VALUE" into the fields of the user details tab, which shows an account. Raises `UsageError`,
/// with a list of the fields, for an unknown field and for a value that the field does not accept, and
/// `Refused` for one that this account does not have.
void fill_details_tab(session::Session& session, const std::vector<std::string>& assignments);

}  // namespace twk::cli
