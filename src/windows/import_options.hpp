#pragma once

/// The window `ImportGrps`: which fields of an import line may contain groups, and when imported accounts
/// expire.
namespace twk::windows {

struct Desktop;

/// Fills the window from the settings.
void ImportGrps_Load(Desktop& session);
/// "None" and "All" set the range and lock it; "Enter Range" opens it.
void Grp_Range_Click(Desktop& session);
/// A limit was typed: anything but a number from 0 to 99 is reported.
void LowerRange_Change(Desktop& session);
void UpperRange_Change(Desktop& session);
/// Stores range and expiry. False for an invalid range or expiry date, which is reported; the window then
/// stays.
bool ImportGrps_OK(Desktop& session);
/// Forgets what was typed.
void ImportGrps_Cancel(Desktop& session);

}  // namespace twk::windows
