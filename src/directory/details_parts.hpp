#pragma once

#include <string>
#include <string_view>

#include "platform/adsi.hpp"

namespace twk::session {
struct Session;
}

/// Steps of reading and saving an account that are the same in both kinds of domain.
namespace twk::directory {

/// Sub-item 1 of the row of the primary group in `LoadedDomain::own_groups`.
inline constexpr std::string_view kPrimaryGroup = "Primary";

/// True for no drive and for a capital letter (or "@") with ":". Otherwise beeps and says so in panel 1.
bool check_drive_letter(session::Session& session, const std::string& drive);
/// Stages the expiry that was typed, unless the account has it already. Raises a type mismatch for a text
/// that is not accepted.
void stage_typed_expiry(session::Session& session, platform::User& user, const std::string& typed);
/// Adds a row to `LoadedDomain::own_groups`, once, and removes the group from `other_groups`.
void show_membership(session::Session& session, const std::string& key, const std::string& name,
                     const std::string& icon, bool primary);

}  // namespace twk::directory
