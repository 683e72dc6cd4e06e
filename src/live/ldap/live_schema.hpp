#pragma once

#include <map>
#include <memory>
#include <string>
#include <string_view>

#include "ads/schema.hpp"
#include "ads/schema_object.hpp"
#include "live/ldap/ldap_connection.hpp"

namespace twk::live {

/// What a server's schema says about attributes: well-known ones come from our own table, any other is read
/// once.
class LiveSchema {
 public:
  /// None for an attribute that the server does not know. Folds case.
  const ads::AttributeSchema* find(LdapConnection& connection, const std::string& schema_dn,
                                   std::string_view name);
  /// What the server requires and allows of objects of a class, from the class itself, those it is derived
  /// from and their auxiliary classes ([MS-ADTS] 3.1.1.2.4), sorted by name. Read once.
  const ads::ClassProperties& properties(LdapConnection& connection, const std::string& schema_dn,
                                         std::string_view name);

 private:
  struct Item {
    std::string name;
    bool known = false;
    ads::AttributeSchema schema;
  };
  std::map<std::string, std::unique_ptr<Item>> asked_;      ///< by name in capitals
  std::map<std::string, ads::ClassProperties> properties_;  ///< by the class's name in capitals
};

}  // namespace twk::live
