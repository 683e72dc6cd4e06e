#include "lab/exchange_schema.hpp"

#include <algorithm>
#include <array>

#include "base/text.hpp"

namespace twk::lab {
namespace {

/// Syntax, several values, given by the directory alone, greatest length.
constexpr std::array<AttributeSchema, 102> kAttributes = {{
    {"Admin-Description", Syntax::kString, false, false, 0},
    {"Admin-Display-Name", Syntax::kString, false, false, 0},
    {"Alt-Recipient", Syntax::kDn, false, false, 0},
    {"Assistant-Name", Syntax::kString, false, false, 0},
    {"Assoc-NT-Account", Syntax::kOctetString, false, false, 0},
    {"Auth-Orig", Syntax::kDn, true, false, 0},
    {"Auto-Reply-Message", Syntax::kString, false, false, 0},
    {"c", Syntax::kString, false, false, 3},
    {"Can-Preserve-DNs", Syntax::kDn, false, false, 0},
    {"cn", Syntax::kString, false, false, 0},
    {"co", Syntax::kString, false, false, 0},
    {"Comment", Syntax::kString, false, false, 0},
    {"Company", Syntax::kString, false, false, 0},
    {"Deleted-Item-Flags", Syntax::kInteger, false, false, 0},
    {"Deliv-Cont-Length", Syntax::kInteger, false, false, 0},
    {"Deliver-And-Redirect", Syntax::kBoolean, false, false, 0},
    {"department", Syntax::kString, false, false, 0},
    {"description", Syntax::kString, true, false, 0},
    {"Display-Name-Printable", Syntax::kString, false, false, 0},
    {"distinguishedName", Syntax::kDn, false, true, 0},
    {"DL-Mem-Default", Syntax::kBoolean, false, false, 0},
    {"employeeNumber", Syntax::kString, false, false, 0},
    {"employeeType", Syntax::kString, false, false, 0},
    {"Extension-Attribute-1", Syntax::kString, false, false, 0},
    {"Extension-Attribute-10", Syntax::kString, false, false, 0},
    {"Extension-Attribute-11", Syntax::kString, false, false, 0},
    {"Extension-Attribute-12", Syntax::kString, false, false, 0},
    {"Extension-Attribute-13", Syntax::kString, false, false, 0},
    {"Extension-Attribute-14", Syntax::kString, false, false, 0},
    {"Extension-Attribute-15", Syntax::kString, false, false, 0},
    {"Extension-Attribute-2", Syntax::kString, false, false, 0},
    {"Extension-Attribute-3", Syntax::kString, false, false, 0},
    {"Extension-Attribute-4", Syntax::kString, false, false, 0},
    {"Extension-Attribute-5", Syntax::kString, false, false, 0},
    {"Extension-Attribute-6", Syntax::kString, false, false, 0},
    {"Extension-Attribute-7", Syntax::kString, false, false, 0},
    {"Extension-Attribute-8", Syntax::kString, false, false, 0},
    {"Extension-Attribute-9", Syntax::kString, false, false, 0},
    {"facsimileTelephoneNumber", Syntax::kString, false, false, 0},
    {"Folder-Pathname", Syntax::kString, false, false, 0},
    {"Garbage-Coll-Period", Syntax::kInteger, false, false, 0},
    {"generationQualifier", Syntax::kString, false, false, 0},
    {"givenName", Syntax::kString, false, false, 0},
    {"Heuristics", Syntax::kInteger, false, false, 0},
    {"Hide-From-Address-Book", Syntax::kBoolean, false, false, 0},
    {"Home-MDB", Syntax::kDn, false, false, 0},
    {"Home-MTA", Syntax::kDn, false, false, 0},
    {"homePhone", Syntax::kString, false, false, 0},
    {"homePostalAddress", Syntax::kString, false, false, 0},
    {"houseIdentifier", Syntax::kString, false, false, 0},
    {"info", Syntax::kString, false, false, 0},
    {"initials", Syntax::kString, false, false, 0},
    {"l", Syntax::kString, false, false, 0},
    {"ldapPort", Syntax::kInteger, false, false, 0},
    {"mail", Syntax::kString, false, false, 0},
    {"mailPreferenceOption", Syntax::kInteger, false, false, 0},
    {"manager", Syntax::kDn, false, false, 0},
    {"MAPI-Recipient", Syntax::kBoolean, false, false, 0},
    {"MDB-Over-Quota-Limit", Syntax::kInteger, false, false, 0},
    {"MDB-Overhard-Quota-Limit", Syntax::kInteger, false, false, 0},
    {"MDB-Storage-Quota", Syntax::kInteger, false, false, 0},
    {"MDB-Use-Defaults", Syntax::kBoolean, false, false, 0},
    {"member", Syntax::kDn, true, false, 0},
    {"memberOf", Syntax::kDn, true, true, 0},
    {"mobile", Syntax::kString, false, false, 0},
    {"name", Syntax::kString, false, false, 0},
    {"NT-Security-Descriptor", Syntax::kOctetString, false, false, 0},
    {"o", Syntax::kString, false, false, 0},
    {"objectClass", Syntax::kString, true, true, 0},
    {"otherMailbox", Syntax::kString, true, false, 0},
    {"ou", Syntax::kString, false, false, 0},
    {"owner", Syntax::kDn, false, false, 0},
    {"pager", Syntax::kString, false, false, 0},
    {"Personal-Title", Syntax::kString, false, false, 0},
    {"physicalDeliveryOfficeName", Syntax::kString, false, false, 0},
    {"postalAddress", Syntax::kString, false, false, 0},
    {"postalCode", Syntax::kString, false, false, 0},
    {"postOfficeBox", Syntax::kString, false, false, 0},
    {"Protocol-Settings", Syntax::kString, true, false, 0},
    {"Proxy-Addresses", Syntax::kString, true, false, 0},
    {"rdn", Syntax::kString, false, true, 0},
    {"Replication-Sensitivity", Syntax::kInteger, false, false, 0},
    {"Report-To-Originator", Syntax::kBoolean, false, false, 0},
    {"secretary", Syntax::kDn, false, false, 0},
    {"seeAlso", Syntax::kDn, true, false, 0},
    {"sn", Syntax::kString, false, false, 0},
    {"st", Syntax::kString, false, false, 0},
    {"street", Syntax::kString, false, false, 0},
    {"Submission-Cont-Length", Syntax::kInteger, false, false, 0},
    {"Target-Address", Syntax::kString, false, false, 0},
    {"Telephone-Assistant", Syntax::kString, false, false, 0},
    {"Telephone-Home2", Syntax::kString, true, false, 0},
    {"Telephone-Office2", Syntax::kString, true, false, 0},
    {"telephoneNumber", Syntax::kString, false, false, 0},
    {"telexNumber", Syntax::kString, false, false, 0},
    {"textEncodedORAddress", Syntax::kString, false, false, 0},
    {"title", Syntax::kString, false, false, 0},
    {"uid", Syntax::kString, false, false, 0},
    {"Unauth-Orig", Syntax::kDn, true, false, 0},
    {"url", Syntax::kString, true, false, 0},
    {"userCertificate", Syntax::kOctetString, true, false, 0},
    {"X121-Address", Syntax::kString, false, false, 0},
}};

constexpr std::array<ExchangeClass, 4> kClasses = {{
    {"OrganizationalPerson", "top person OrganizationalPerson"},
    {"Remote-Address", "top person Remote-Address"},
    {"groupOfNames", "top groupOfNames"},
    {"Container", "top Container"},
}};

template <typename Table>
auto find_in(const Table& table, std::string_view name) -> decltype(table.data()) {
  const auto* const found = std::find_if(table.begin(), table.end(),
                                         [&](const auto& one) { return base::equals_fold(one.name, name); });
  return found == table.end() ? nullptr : found;
}

}  // namespace

const AttributeSchema* find_exchange_attribute(std::string_view name) {
  return find_in(kAttributes, name);
}

const ExchangeClass* find_exchange_class(std::string_view name) {
  return find_in(kClasses, name);
}

}  // namespace twk::lab
