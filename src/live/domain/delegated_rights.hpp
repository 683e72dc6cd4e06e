#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "live/domain/live_domain.hpp"

namespace twk::live {

/// What the account that is logged on may do in a unit, as the server itself says ([MS-ADTS] 3.1.1.4.5.20 and
/// 3.1.1.4.5.22: allowedChildClassesEffective and allowedAttributesEffective), and by the access list of a
/// user who is there.
struct Rights {
  std::vector<std::string> classes;     ///< of which it may create objects
  std::vector<std::string> attributes;  ///< that it may write to a user who is there; none without a user
  std::optional<bool> deletes;          ///< that user; none as well where it cannot be told
  std::optional<bool> sets_password;    ///< of that user

  [[nodiscard]] bool creates(std::string_view object_class) const;
  [[nodiscard]] bool are_none() const;
};

/// The classes of which it may create objects there, or the attributes that it may write to an object; none
/// where the server does not tell. Raise what the server raises.
std::optional<std::vector<std::string>> creatable_classes(LdapConnection& connection, const std::string& dn);
std::optional<std::vector<std::string>> writable_attributes(LdapConnection& connection,
                                                            const std::string& dn);

/// Raises what the server raises, kNoSuchObject for a unit that is not there.
Rights read_rights(LiveDomain& domain, const std::string& unit);

/// "may create users and groups in OU=…, and change all that this program changes of the users there".
std::string in_words(const Rights& rights, const std::string& unit);

}  // namespace twk::live
