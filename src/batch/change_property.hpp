#pragma once

#include <string_view>

#include "batch/selection_walk.hpp"

namespace twk::session {
struct Session;
}

/// The tab "AD Properties": one property of many users.
namespace twk::batch {

/// Sets the property of `AD_Properties` to that value, as `Syntax` and the frame "Multi Value" say: bytes
/// from comma-separated numbers, one more value, or the value in place of all others. "%UserName%" in it
/// is the user's name in its container; in a terminal-server setting it is the account name. Writes the
/// outcome to the log, `Label3` and `user_done`, and counts; messages about a failure of a member of a group
/// have no quotes. False when the user was not changed.
bool Change_AD_One(session::Session& session, const SelectedUser& user, std::string_view value);

/// Changes the users of the selection by the text of `AD_CHANGE`, until Cancel is pressed. A row that cannot
/// be read counts as an error; raises only when no server answers.
void change_selection(session::Session& session);
/// The same for one user, called `name` in messages until it is read.
void change_user_at(session::Session& session, const std::string& path, const std::string& name);

/// The button, whose caption says what it does: runs over the selection with the text of `AD_CHANGE`, or
/// ends a run after the current user. With an empty selection it does nothing; a property that the schema
/// does not know ends it before anything is changed, as `Label3` reports. A user who cannot be changed is
/// counted, and the run continues.
void CHANGE_AD_Click(session::Session& session);

}  // namespace twk::batch
