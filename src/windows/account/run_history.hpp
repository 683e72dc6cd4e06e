#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "batch/account_change.hpp"

namespace twk::controls {
struct ListRow;
}

/// Taking back what a run changed, from its row of the log tab.
namespace twk::windows {

struct Desktop;

/// The row of a run on the log tab, with what it changed.
void log_run(Desktop& session, std::string_view light, const std::string& message,
             std::vector<batch::AccountChange> changes);

/// The same for a run that has made its own row, which is the last one.
void keep_run(Desktop& session, std::vector<batch::AccountChange> changes);

/// A user who joined a group or left it, by their keys in the lists; for `log_run`.
batch::AccountChange membership(Desktop& session, batch::AccountChange::Kind kind, const std::string& user,
                                const std::string& group);

/// True for the row of a run that can still be taken back.
bool can_be_taken_back(const Desktop& session, const controls::ListRow* row);

/// Asks, and takes the run of the selected row back, the last change first. Each change that cannot be gets a
/// row with its reason, and stays for another try.
void take_run_back(Desktop& session);

}  // namespace twk::windows
