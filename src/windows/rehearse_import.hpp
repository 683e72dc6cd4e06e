#pragma once

#include <string>
#include <string_view>

#include "batch/import.hpp"
#include "platform/dialogs.hpp"

namespace twk::windows {

struct Desktop;

/// Puts what all lines of an import have in common and what is not as it should be on the log tab. True,
/// after a box, when every line would fail of it.
bool show_import_faults(Desktop& session, const batch::ImportOrder& order);

/// What a box says of a rehearsal: its counts, or why it could not be done.
struct RehearsalEnd {
  std::string text;
  platform::Icon icon = platform::Icon::kInformation;
};

/// The button "Rehearse" of the import: goes through the file as the import would, and puts each step and the
/// outcome of each line on the log tab. Nothing is written, and the tree and the lists stay as they are.
RehearsalEnd rehearse_import(Desktop& session, std::string_view path, const batch::ImportOrder& order,
                             batch::ImportView& view);

}  // namespace twk::windows
