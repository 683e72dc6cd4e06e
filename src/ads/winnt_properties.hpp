#pragma once

#include <string_view>

#include "ads/staged_values.hpp"
#include "platform/value.hpp"

/// The properties of an account as the WinNT provider names them, over the attributes of its entry.
namespace twk::ads {

/// Empty when the property has no value, which "AccountExpirationDate" also is for an account that never
/// expires.
///
/// "UserFlags" is "userAccountControl" with the lock bit added, "PasswordExpired" 1 when the password must be
/// changed, "groupType" 4 for a local group and 2 for every other. Raises kNoSuchAttribute for a name that is
/// not a property.
platform::Value get_winnt(AttributeAccess& entry, std::string_view property);

/// Stages a value; empty text clears. A "UserFlags" without the lock bit unlocks, one with it never locks.
void put_winnt(AttributeAccess& entry, std::string_view property, const platform::Value& value);
/// By the control codes of `PutEx`.
void put_ex_winnt(AttributeAccess& entry, int control, std::string_view property,
                  const platform::Value& value);

}  // namespace twk::ads
