#pragma once

#include <string>

#include "cli/frame/import_run.hpp"

/// Imports that are taken up or taken back, by the record of their run.
namespace twk::cli {

/// Goes on with an import that was broken off, halted or stopped: the lines without an account are imported
/// as it was asked for then. `record` is its record, or the file of its remaining lines beside that. With
/// `dry_run` the steps are printed, and nothing is done. Returns the exit code of the run.
int resume_import(Context& context, const std::string& record, bool dry_run, ImportExtras extras);

/// Takes back what an import made, after a question. With `dry_run` the steps are printed, and nothing is
/// done.
int undo_import(Context& context, const std::string& record, bool dry_run);

}  // namespace twk::cli
