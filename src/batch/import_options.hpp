#pragma once

#include <string>
#include <string_view>

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
/// Stores range and expiry. False when the range is not one, or the expiry no date, which is told; the window
/// then stays.
bool ImportGrps_OK(session::Session& session);
/// Why an expiry text can be no date, whatever the lines hold; empty when it can be one.
std::string refused_expiry(session::Session& session, std::string_view text);
/// Forgets what was typed.
void ImportGrps_Cancel(session::Session& session);

}  // namespace twk::batch
