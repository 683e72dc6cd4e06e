#pragma once

#include <string>
#include <string_view>

#include "live/ldap/ldap_connection.hpp"

/// "User cannot change password" of a directory: not a flag, but two entries in the access list of the user's
/// object that deny the right to change the password (ab721a53-1e2f-11d0-9819-00aa0040529b, [MS-ADTS]
/// 5.1.3.2.1) to "Everyone" and to the user ("SELF", S-1-5-10).
namespace twk::live {

/// The attribute that holds the list; without the control for its parts it is the whole descriptor.
inline constexpr const char* kDescriptorAttribute = "nTSecurityDescriptor";

/// True when a descriptor denies it to both. Raises what `platform::SecurityDescriptor::decode` raises.
bool denies_change_of_password(std::string_view descriptor);
/// True when both are denied it.
bool cannot_change_password(LdapConnection& connection, const std::string& dn);
/// Puts the two denials first, or removes them; the rest of the list stays.
void set_cannot_change_password(LdapConnection& connection, const std::string& dn, bool cannot);

}  // namespace twk::live
