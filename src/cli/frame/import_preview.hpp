#pragma once

#include "cli/frame/context.hpp"

namespace twk::cli {

/// Prints what each line of the file that is to be imported would give: the names and the account name, and
/// what the run itself would tell of it. The session is one that changes nothing. Gives the exit code of the
/// worst line.
int preview_import(Context& context, session::Session& session);

}  // namespace twk::cli
