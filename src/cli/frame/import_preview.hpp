#pragma once

#include "batch/import.hpp"
#include "cli/frame/context.hpp"

namespace twk::cli {

/// Prints the result that each line of an import file would have: the names and the account name, and what
/// the run itself would report. The session must be one that changes nothing. Returns the exit code of the
/// worst line.
int preview_import(Context& context, session::Session& session, const std::string& path,
                   batch::ImportOrder order);

}  // namespace twk::cli
