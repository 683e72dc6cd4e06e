#pragma once

#include <functional>
#include <string>
#include <vector>

#include "batch/selected_users.hpp"

/// The window `RunPreview`, which every run over the selection shows before it begins.
namespace twk::windows {

struct Desktop;

struct PreviewOrder {
  std::string title;
  std::string question;  ///< what would be done to each account
  std::string start;     ///< caption of the button that begins the run
  /// The steps that the run would do for one user; none when it touches the account alone. Called while the
  /// window is shown.
  std::function<std::vector<std::string>(const batch::MeantUser& user)> rehearse = {};
};

/// Shows whom the run would reach and what it would do. True when the person starts it. A selection that
/// names nobody ends it before; `Label3` says so.
bool is_run_wanted(Desktop& session, const PreviewOrder& order);

/// The window is on the screen: looks at the first accounts, for a second and a half at the most.
void RunPreview_Shown(Desktop& session);
/// Looks at the accounts that are left, and while that is going on stops it.
void RunPreview_Rehearse_Click(Desktop& session);
void RunPreview_Start_Click(Desktop& session);
/// The window was closed, whichever way.
void RunPreview_Closed(Desktop& session);
/// What a rehearsal asks: a turn for events, False when the person does not want to see more.
bool preview_goes_on(Desktop& session);

}  // namespace twk::windows
