#pragma once

#include "batch/import_checks.hpp"
#include "cli/frame/context.hpp"

namespace twk::cli {

/// Checks what the lines of an import have in common. Each fault goes to standard error, with --json to a row
/// of its own, { check, light, message, remedy }. True when every line would fail of one.
bool tell_import_faults(Context& context, session::Session& session, const batch::ImportOrder& order);

}  // namespace twk::cli
