#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "batch/import.hpp"
#include "cli/frame/context.hpp"
#include "cli/frame/import_steps.hpp"

namespace twk::cli {

/// What else an import of the command line does.
struct ImportExtras {
  ImportSteps* steps = nullptr;  ///< of a rehearsal
  std::function<void(std::string_view account, std::string_view password)> password_set;
};

/// Runs an import, prints each line as it ends, and at last what came of all. Returns the exit code.
int run_import(Context& context, session::Session& session, const std::string& path,
               const batch::ImportOrder& order, const ImportExtras& extras);

}  // namespace twk::cli
