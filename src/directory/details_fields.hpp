#pragma once

#include <string>
#include <string_view>

#include "platform/adsi.hpp"

namespace twk::session {
struct Session;
}

/// Fields of the user details tab that are filled and saved the same way in both kinds of domain.
namespace twk::directory {

/// Sub-item 1 of the row of the primary group in `ListView4`.
inline constexpr std::string_view kPrimaryGroup = "Primary";

/// True for no drive and for a capital letter (or "@") with ":". Otherwise beeps and says so in panel 1.
bool check_drive_letter(session::Session& session);
/// Stages the expiry on the tab, unless the account has it already. Raises a type mismatch for a text that
/// is not accepted.
void stage_typed_expiry(session::Session& session, platform::User& user);
/// Runs the saving of one kind of domain and releases `CurrentUser`; a failure is shown in panel 1 and
/// returns False.
bool save_shown_user(session::Session& session, bool (*save)(session::Session& session));
/// Ticks the box of a lock-out, which can be changed only while the account is locked.
void show_lock_out(session::Session& session, bool locked);
/// Adds a row to `ListView4`, once, and removes the group from `ListView3`.
void show_membership(session::Session& session, const std::string& key, const std::string& name,
                     const std::string& icon, bool primary);

}  // namespace twk::directory
