#pragma once

#include <string_view>

#include "batch/import.hpp"

namespace twk::windows {

struct Desktop;

/// Puts what all lines of an import have in common and what is not as it should be on the log tab. True,
/// after a box, when every line would fail of it.
bool show_import_faults(Desktop& session, const batch::ImportOrder& order);

/// The button "Rehearse" of the import: goes through the file as the import would, puts each step and the
/// outcome of each line on the log tab, and tells the counts in a box. Nothing is written, and the tree and
/// the lists stay as they are.
void rehearse_import(Desktop& session, std::string_view path, const batch::ImportOrder& order,
                     batch::ImportView& view);

}  // namespace twk::windows
