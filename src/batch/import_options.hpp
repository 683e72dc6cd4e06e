#pragma once

#include <string>
#include <string_view>

namespace twk::session {
struct Session;
}

/// The window `ImportGrps`: which fields of an import line may contain groups, and when imported accounts
/// expire.
namespace twk::batch {

/// Fills the window from the settings.
void ImportGrps_Load(session::Session& session);
/// "None" and "All" set the range and lock it; "Enter Range" opens it.
void Grp_Range_Click(session::Session& session);
/// A limit was typed: anything but a number from 0 to 99 is reported.
void LowerRange_Change(session::Session& session);
void UpperRange_Change(session::Session& session);
/// Stores range and expiry. False for an invalid range or expiry date, which is reported; the window then
/// stays.
bool ImportGrps_OK(session::Session& session);
/// Why an expiry text cannot be a date, whatever the lines contain; empty when it can.
std::string refused_expiry(session::Session& session, std::string_view text);
/// Forgets what was typed.
void ImportGrps_Cancel(session::Session& session);

}  // namespace twk::batch
