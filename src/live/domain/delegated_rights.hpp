#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "live/ldap/ldap_connection.hpp"

namespace twk::live {

/// What the account that is logged on may do in a unit, as the server itself says ([MS-ADTS] 3.1.1.4.5.20 and
/// 3.1.1.4.5.22: allowedChildClassesEffective and allowedAttributesEffective), or access lists.
struct Rights {
  std::vector<std::string> classes;     ///< of which it may create objects
  std::string user;                     ///< the name of one who is there; empty when nobody is
  std::vector<std::string> attributes;  ///< that it may write to that user
  std::optional<bool> deletes;          ///< that user, by its access list
  std::optional<bool> sets_password;    ///< of that user, by its access list

  [[nodiscard]] bool creates(std::string_view object_class) const;
  [[nodiscard]] bool are_none() const;
};

/// The classes of which it may create objects there, or the attributes that it may write to an object; none
/// where the server does not tell. Raise what the server raises.
std::optional<std::vector<std::string>> creatable_classes(LdapConnection& connection, const std::string& dn);
std::optional<std::vector<std::string>> writable_attributes(LdapConnection& connection,
                                                            const std::string& dn);

/// What the server computes. Raises what it raises, kNoSuchObject for a unit that is not there.
Rights read_rights(LdapConnection& connection, const std::string& unit);

/// "may create users and groups in OU=…, and change all that this program changes of the users there".
std::string in_words(const Rights& rights, const std::string& unit);

}  // namespace twk::live
