#pragma once

namespace twk::session {
struct Session;
}

/// The window `ImportGrps`: which fields of an import line may name groups, and when imported accounts
/// expire.
namespace twk::batch {

/// Fills the window from the settings.
void ImportGrps_Load(session::Session& session);
/// "None" and "All" set the range and lock it; "Enter Range" opens it.
void Grp_Range_Click(session::Session& session);
/// A bound was typed: anything but a number from 0 to 99 is told.
void LowerRange_Change(session::Session& session);
void UpperRange_Change(session::Session& session);
/// Stores range and expiry. False when the range is not one, which is told; the window then stays.
bool ImportGrps_OK(session::Session& session);
/// Forgets what was typed.
void ImportGrps_Cancel(session::Session& session);

}  // namespace twk::batch
