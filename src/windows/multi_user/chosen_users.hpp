#pragma once

#include <functional>
#include <string>
#include <vector>

#include "batch/run_controls.hpp"
#include "windows/multi_user/run_preview.hpp"

/// Runs over the users that are selected in the tree.
namespace twk::windows {

struct Desktop;

struct ChosenRun {
  PreviewOrder preview;  ///< shown before several users are changed
  std::string done;      ///< "Disabled", for "Disabled: 3 of 3 users."
  /// Over the selection, which is then these users; False when it was stopped.
  std::function<bool(session::RunView& view, const batch::RunHooks& hooks)> run;
  std::function<void(const batch::UserOutcome& outcome)> after = {};  ///< of one that was changed
};

/// Runs over the users with those keys of the tree's nodes; the selection of the multi-user window stays as
/// it is. Each failure gets a row of the log tab, and the run one that can take it back.
void run_over_users(Desktop& session, const std::vector<std::string>& keys, const ChosenRun& order);

}  // namespace twk::windows
