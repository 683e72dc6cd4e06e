#pragma once

#include <string_view>

#include "batch/import_order.hpp"

/// Users from a file of comma-separated lines, one a line. There is no quoting: every comma separates.
namespace twk::batch {

/// Runs the creation for each line of the file. True when it reached the end or the person stopped it; False
/// when a halt option ended it or a file could not be read or written. "Import.err" and the summary are made
/// in the database directory; what failed is in `ImportState::failure`. Input is UTF-8, with or without a
/// byte-order mark, or code page 1252. "Import.err" itself can be read again: lines that such a run did not
/// come to stand in it afterwards. With `ImportState::rehearsed` the lines are checked as they would be, and
/// nothing is made or written.
bool Import_Users(session::Session& session, std::string_view path, const ImportOrder& order,
                  ImportView& view);

/// The same with what a person sees of it: blocks in "Log.txt" before and after, and the end in the status
/// bar, or in a box when there were errors.
bool run_import(session::Session& session, std::string_view path, const ImportOrder& order, ImportView& view);

}  // namespace twk::batch
