#pragma once

#include <map>
#include <memory>
#include <string>
#include <string_view>

#include "ads/schema.hpp"
#include "live/ldap/ldap_connection.hpp"

namespace twk::live {

/// The attributes that an LDAP server other than a domain controller knows, as its subschema entry describes
/// them (RFC 4512 4.1.2, 4.4). Syntaxes without a special kind of value are text.
class Subschema {
 public:
  /// Reads the server's subschema; without one the server knows no attribute.
  explicit Subschema(LdapConnection& connection);
  /// From attribute type descriptions, "( 2.5.4.4 NAME 'sn' SYNTAX … )".
  explicit Subschema(const std::vector<std::string>& descriptions);

  /// None for an attribute that the server does not know. Folds case.
  [[nodiscard]] const ads::AttributeSchema* find(std::string_view name) const;

 private:
  struct Item {
    std::string name;
    ads::AttributeSchema schema;
  };
  void read(const std::vector<std::string>& descriptions);

  std::map<std::string, std::shared_ptr<Item>> items_;  ///< by each name in capitals
};

}  // namespace twk::live
