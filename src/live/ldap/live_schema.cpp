#include "live/ldap/live_schema.hpp"

#include <algorithm>
#include <array>
#include <iterator>
#include <set>

#include "base/errors.hpp"
#include "base/text.hpp"
#include "live/ldap/ldap_errors.hpp"
#include "platform/ldap_text.hpp"

namespace twk::live {
namespace {

struct SyntaxOid {
  std::string_view oid;
  ads::Syntax syntax;
};

/// "attributeSyntax" of a schema object, [MS-ADTS] 3.1.1.2.2.2; every other syntax is text.
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

/// More than any class is derived from.
constexpr std::size_t kMostClasses = 10'000;

/// Names, sorted without regard to case.
struct FoldedOrder {
  bool operator()(const std::string& a, const std::string& b) const {
    return base::upper(a) < base::upper(b);
  }
};
using Names = std::set<std::string, FoldedOrder>;

/// The classes of one round of questions.
std::string classes_filter(const Names& classes) {
  std::string filter = "(&(objectClass=classSchema)(|";
  for (const std::string& name : classes)
    filter += "(lDAPDisplayName=" + platform::escape_filter_value(name) + ")";
  return filter + "))";
}

void take(const LdapEntry& entry, std::string_view attribute, Names& names) {
  if (const auto* const values = entry.find(attribute))
    names.insert(values->begin(), values->end());
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

const ads::ClassProperties& LiveSchema::properties(LdapConnection& connection, const std::string& schema_dn,
                                                   std::string_view name) {
  const std::string key = base::upper(name);
  if (const auto found = properties_.find(key); found != properties_.end())
    return found->second;
  LdapSearch search;
  search.base = schema_dn;
  search.scope = platform::Scope::kOneLevel;
  search.attributes = {"subClassOf", "auxiliaryClass",    "systemAuxiliaryClass", "mustContain",
                       "mayContain", "systemMustContain", "systemMayContain"};
  Names known;
  Names mandatory;
  Names optional;
  for (Names wanted = {std::string(name)}; !wanted.empty();) {
    search.filter = classes_filter(wanted);
    known.merge(Names(wanted));
    if (known.size() > kMostClasses)
      base::raise(kProtocolError, "The server never finishes sending the classes above " + std::string(name));
    connection.require_going_on();
    Names further;
    connection.search(search, [&](LdapEntry&& entry) {
      for (const std::string_view attribute : {"subClassOf", "auxiliaryClass", "systemAuxiliaryClass"})
        take(entry, attribute, further);
      for (const std::string_view attribute : {"mustContain", "systemMustContain"})
        take(entry, attribute, mandatory);
      for (const std::string_view attribute : {"mayContain", "systemMayContain"})
        take(entry, attribute, optional);
      return true;
    });
    wanted.clear();
    std::set_difference(further.begin(), further.end(), known.begin(), known.end(),
                        std::inserter(wanted, wanted.end()), FoldedOrder());
  }
  // Only a complete answer is kept.
  ads::ClassProperties& properties = properties_[key];
  properties.mandatory.assign(mandatory.begin(), mandatory.end());
  std::set_difference(optional.begin(), optional.end(), mandatory.begin(), mandatory.end(),
                      std::back_inserter(properties.optional), FoldedOrder());
  return properties;
}

}  // namespace twk::live
