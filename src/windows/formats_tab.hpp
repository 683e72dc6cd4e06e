#pragma once

#include "windows/state/desktop.hpp"

/// How account names and full names are formed: the presets, and the fields that show an example.
namespace twk::windows {

/// Show what `setupid` and `ALTID` make of John Fred Smith.
void Check_Name_Format_Click(Desktop& session);
/// Shows what `FN_Format` makes of John Fred Smith, and stores it as `Custom_FN`. A text that is not the
/// stored preset selects the custom entry.
void Check_FN_Format_Click(Desktop& session);

/// The chosen entry of `Option1` is stored and, except for the custom one, puts its format into `setupid`.
void Option1_Click(Desktop& session);
/// The same for `FullName_Format` and `FN_Format`.
void FullName_Format_Click(Desktop& session);

/// After the settings were read: puts the format of a stored preset into `setupid` and `FN_Format`, and that
/// of the default entry into an empty one, so that a fresh installation can name a user. Stores nothing.
void apply_presets(Desktop& session);
/// Selects the custom entry when `setupid`, which is being saved, is not the stored preset.
void keep_typed_format(Desktop& session);

}  // namespace twk::windows
