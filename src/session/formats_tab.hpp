#pragma once

#include "session/session.hpp"

/// How account names and full names are formed: the presets, and the fields that show a format at work.
namespace twk::session {

/// Show what `setupid` and `ALTID` make of John Fred Smith.
void Check_Name_Format_Click(Session& session);
/// Shows what `FN_Format` makes of John Fred Smith, and stores it as `Custom_FN`.
void Check_FN_Format_Click(Session& session);

/// The chosen entry of `Option1` is stored and, but for the custom one, puts its format into `setupid`.
void Option1_Click(Session& session);
/// The same for `FullName_Format` and `FN_Format`.
void FullName_Format_Click(Session& session);

/// Puts the formats of the chosen entries into `setupid` and `FN_Format` where they are empty, so that a
/// fresh installation can name a user. Stores nothing.
void fill_empty_formats(Session& session);

}  // namespace twk::session
