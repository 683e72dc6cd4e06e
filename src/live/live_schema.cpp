#include "live/live_schema.hpp"

#include <array>

#include "base/text.hpp"
#include "platform/ldap_text.hpp"

namespace twk::live {
namespace {

struct SyntaxOid {
  std::string_view oid;
  ads::Syntax syntax;
};

/// "attributeSyntax" of a schema object, [MS-ADTS] 3.1.1.2.2.2; every other one is text.
constexpr std::array<SyntaxOid, 9> kSyntaxes = {{{"2.5.5.1", ads::Syntax::kDn},
                                                 {"2.5.5.8", ads::Syntax::kBoolean},
                                                 {"2.5.5.9", ads::Syntax::kInteger},
                                                 {"2.5.5.10", ads::Syntax::kOctetString},
                                                 {"2.5.5.11", ads::Syntax::kTime},
                                                 {"2.5.5.15", ads::Syntax::kOctetString},
                                                 {"2.5.5.16", ads::Syntax::kInteger8},
                                                 {"2.5.5.17", ads::Syntax::kSid},
                                                 {"2.5.5.12", ads::Syntax::kString}}};

ads::Syntax syntax_of(std::string_view oid) {
  for (const SyntaxOid& one : kSyntaxes) {
    if (one.oid == oid)
      return one.syntax;
  }
  return ads::Syntax::kString;
}

}  // namespace

const ads::AttributeSchema* LiveSchema::find(LdapConnection& connection, const std::string& schema_dn,
                                             std::string_view name) {
  if (const ads::AttributeSchema* const known = ads::find_attribute(name))
    return known;
  std::unique_ptr<Item>& item = asked_[base::upper(name)];
  if (item == nullptr) {
    auto asked = std::make_unique<Item>();
    LdapSearch search;
    search.base = schema_dn;
    search.scope = platform::Scope::kOneLevel;
    search.filter =
        "(&(objectClass=attributeSchema)(lDAPDisplayName=" + platform::escape_filter_value(name) + "))";
    search.attributes = {"lDAPDisplayName", "attributeSyntax", "isSingleValued"};
    connection.search(search, [&](LdapEntry&& entry) {
      asked->name = entry.first("lDAPDisplayName");
      asked->schema.syntax = syntax_of(entry.first("attributeSyntax"));
      asked->schema.multi_valued = !base::equals_fold(entry.first("isSingleValued"), "TRUE");
      asked->known = true;
      return false;
    });
    asked->schema.name = asked->name;
    item = std::move(asked);
  }
  return item->known ? &item->schema : nullptr;
}

}  // namespace twk::live
