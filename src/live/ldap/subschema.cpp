#include "live/ldap/subschema.hpp"

#include <ldap.h>
#include <ldap_schema.h>

#include <array>

#include "base/text.hpp"

namespace twk::live {
namespace {

struct LdapSyntax {
  std::string_view oid;
  ads::Syntax syntax;
};

/// RFC 4517 3.3.
constexpr std::array<LdapSyntax, 5> kLdapSyntaxes = {
    {{"1.3.6.1.4.1.1466.115.121.1.7", ads::Syntax::kBoolean},
     {"1.3.6.1.4.1.1466.115.121.1.12", ads::Syntax::kDn},
     {"1.3.6.1.4.1.1466.115.121.1.24", ads::Syntax::kTime},
     {"1.3.6.1.4.1.1466.115.121.1.27", ads::Syntax::kInteger},
     {"1.3.6.1.4.1.1466.115.121.1.40", ads::Syntax::kOctetString}}};

struct FreeAttributeType {
  void operator()(LDAPAttributeType* type) const { ldap_attributetype_free(type); }
};
using AttributeType = std::unique_ptr<LDAPAttributeType, FreeAttributeType>;

/// None for text that is not a description. What servers are known to write differently is accepted.
AttributeType parse(const std::string& text) {
  int code = 0;
  const char* place = nullptr;
  return AttributeType(ldap_str2attributetype(text.c_str(), &code, &place, LDAP_SCHEMA_ALLOW_ALL));
}

std::vector<std::string> names_of(const LDAPAttributeType& type) {
  std::vector<std::string> names;
  for (char** name = type.at_names; name != nullptr && *name != nullptr; ++name)
    names.emplace_back(*name);
  return names;
}

std::string_view text_of(const char* text) {
  return text == nullptr ? std::string_view{} : text;
}

ads::Syntax syntax_of_oid(std::string_view oid) {
  for (const LdapSyntax& one : kLdapSyntaxes) {
    if (one.oid == oid)
      return one.syntax;
  }
  return ads::Syntax::kString;
}

/// The syntax of a type, or of what it is derived from, which may be anywhere.
ads::Syntax syntax_of(const LDAPAttributeType& type,
                      const std::map<std::string, const LDAPAttributeType*>& all) {
  const LDAPAttributeType* at = &type;
  for (std::size_t steps = 0; text_of(at->at_syntax_oid).empty() && steps < all.size(); ++steps) {
    const auto superior = all.find(base::upper(text_of(at->at_sup_oid)));
    if (superior == all.end())
      break;
    at = superior->second;
  }
  return syntax_of_oid(text_of(at->at_syntax_oid));
}

}  // namespace

Subschema::Subschema(LdapConnection& connection) {
  const std::string entry = connection.read("", {"subschemaSubentry"}).first("subschemaSubentry");
  if (entry.empty())
    return;
  const LdapEntry schema = connection.read(entry, {"attributeTypes"});
  if (const auto* const descriptions = schema.find("attributeTypes"))
    read(*descriptions);
}

Subschema::Subschema(const std::vector<std::string>& descriptions) {
  read(descriptions);
}

void Subschema::read(const std::vector<std::string>& descriptions) {
  std::vector<AttributeType> types;
  std::map<std::string, const LDAPAttributeType*> by_name;
  for (const std::string& text : descriptions) {
    AttributeType type = parse(text);
    if (type == nullptr)
      continue;
    for (const std::string& name : names_of(*type))
      by_name.emplace(base::upper(name), type.get());
    types.push_back(std::move(type));
  }
  for (const AttributeType& type : types) {
    const std::vector<std::string> names = names_of(*type);
    if (names.empty())
      continue;
    const auto item = std::make_shared<Item>();
    item->name = names.front();
    item->schema.name = item->name;
    item->schema.syntax = syntax_of(*type, by_name);
    item->schema.multi_valued = type->at_single_value == 0;
    for (const std::string& name : names)
      items_.emplace(base::upper(name), item);
  }
}

const ads::AttributeSchema* Subschema::find(std::string_view name) const {
  const auto found = items_.find(base::upper(name));
  return found == items_.end() ? nullptr : &found->second->schema;
}

}  // namespace twk::live
