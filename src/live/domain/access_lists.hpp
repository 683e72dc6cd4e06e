#pragma once

#include <chrono>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "live/ldap/ldap_connection.hpp"
#include "platform/object_access.hpp"

namespace twk::live {

/// What the account that is logged on may do by the access lists of objects ([MS-ADTS] 5.1.3.3), where the
/// server does not tell it: allowedAttributesEffective and its like say nothing of deletions and passwords.
/// One search an object and one a container; answers are kept for ten seconds, for a few objects.
class AccessLists {
 public:
  /// By "Delete" on the object, or by "Delete child" on its container for objects of its class. None where a
  /// list cannot be read, or the server does not tell which identifiers the account has.
  std::optional<bool> deletes(LdapConnection& connection, const std::string& schema_dn,
                              const std::string& dn);
  /// By the right "Modify permissions". None as above.
  std::optional<bool> writes_list(LdapConnection& connection, const std::string& dn);
  /// By the right "Reset password". None as above.
  std::optional<bool> sets_password(LdapConnection& connection, const std::string& dn);

 private:
  using Moment = std::chrono::steady_clock::time_point;
  struct Object {
    std::optional<platform::SecurityDescriptor> descriptor;
    std::optional<platform::Sid> sid;
    std::string object_class;
    Moment at;
  };

  const Object& object(LdapConnection& connection, const std::string& dn);
  /// None where the server does not tell.
  std::optional<platform::Guid> class_identifier(LdapConnection& connection, const std::string& schema_dn,
                                                 const std::string& object_class);
  std::optional<bool> grants(LdapConnection& connection, const Object& object, platform::ObjectRight right);
  const std::vector<platform::Sid>& identifiers(LdapConnection& connection);

  std::map<std::string, Object> objects_;          ///< by name, in capitals
  std::map<std::string, platform::Guid> classes_;  ///< by name
  std::vector<platform::Sid> identifiers_;         ///< of the account and its groups; empty when not told
  Moment identifiers_until_;
};

}  // namespace twk::live
