#include "lab/making/exchange_schema.hpp"

#include <algorithm>
#include <array>

#include "base/text.hpp"

namespace twk::lab {
namespace {

/// ads::Syntax, several values, set by the directory only, greatest length.
constexpr std::array<ads::AttributeSchema, 102> kAttributes = {{
    {"Admin-Description", ads::Syntax::kString, false, false, 0},
    {"Admin-Display-Name", ads::Syntax::kString, false, false, 0},
    {"Alt-Recipient", ads::Syntax::kDn, false, false, 0},
    {"Assistant-Name", ads::Syntax::kString, false, false, 0},
    {"Assoc-NT-Account", ads::Syntax::kOctetString, false, false, 0},
    {"Auth-Orig", ads::Syntax::kDn, true, false, 0},
    {"Auto-Reply-Message", ads::Syntax::kString, false, false, 0},
    {"c", ads::Syntax::kString, false, false, 3},
    {"Can-Preserve-DNs", ads::Syntax::kDn, false, false, 0},
    {"cn", ads::Syntax::kString, false, false, 0},
    {"co", ads::Syntax::kString, false, false, 0},
    {"Comment", ads::Syntax::kString, false, false, 0},
    {"Company", ads::Syntax::kString, false, false, 0},
    {"Deleted-Item-Flags", ads::Syntax::kInteger, false, false, 0},
    {"Deliv-Cont-Length", ads::Syntax::kInteger, false, false, 0},
    {"Deliver-And-Redirect", ads::Syntax::kBoolean, false, false, 0},
    {"department", ads::Syntax::kString, false, false, 0},
    {"description", ads::Syntax::kString, true, false, 0},
    {"Display-Name-Printable", ads::Syntax::kString, false, false, 0},
    {"distinguishedName", ads::Syntax::kDn, false, true, 0},
    {"DL-Mem-Default", ads::Syntax::kBoolean, false, false, 0},
    {"employeeNumber", ads::Syntax::kString, false, false, 0},
    {"employeeType", ads::Syntax::kString, false, false, 0},
    {"Extension-Attribute-1", ads::Syntax::kString, false, false, 0},
    {"Extension-Attribute-10", ads::Syntax::kString, false, false, 0},
    {"Extension-Attribute-11", ads::Syntax::kString, false, false, 0},
    {"Extension-Attribute-12", ads::Syntax::kString, false, false, 0},
    {"Extension-Attribute-13", ads::Syntax::kString, false, false, 0},
    {"Extension-Attribute-14", ads::Syntax::kString, false, false, 0},
    {"Extension-Attribute-15", ads::Syntax::kString, false, false, 0},
    {"Extension-Attribute-2", ads::Syntax::kString, false, false, 0},
    {"Extension-Attribute-3", ads::Syntax::kString, false, false, 0},
    {"Extension-Attribute-4", ads::Syntax::kString, false, false, 0},
    {"Extension-Attribute-5", ads::Syntax::kString, false, false, 0},
    {"Extension-Attribute-6", ads::Syntax::kString, false, false, 0},
    {"Extension-Attribute-7", ads::Syntax::kString, false, false, 0},
    {"Extension-Attribute-8", ads::Syntax::kString, false, false, 0},
    {"Extension-Attribute-9", ads::Syntax::kString, false, false, 0},
    {"facsimileTelephoneNumber", ads::Syntax::kString, false, false, 0},
    {"Folder-Pathname", ads::Syntax::kString, false, false, 0},
    {"Garbage-Coll-Period", ads::Syntax::kInteger, false, false, 0},
    {"generationQualifier", ads::Syntax::kString, false, false, 0},
    {"givenName", ads::Syntax::kString, false, false, 0},
    {"Heuristics", ads::Syntax::kInteger, false, false, 0},
    {"Hide-From-Address-Book", ads::Syntax::kBoolean, false, false, 0},
    {"Home-MDB", ads::Syntax::kDn, false, false, 0},
    {"Home-MTA", ads::Syntax::kDn, false, false, 0},
    {"homePhone", ads::Syntax::kString, false, false, 0},
    {"homePostalAddress", ads::Syntax::kString, false, false, 0},
    {"houseIdentifier", ads::Syntax::kString, false, false, 0},
    {"info", ads::Syntax::kString, false, false, 0},
    {"initials", ads::Syntax::kString, false, false, 0},
    {"l", ads::Syntax::kString, false, false, 0},
    {"ldapPort", ads::Syntax::kInteger, false, false, 0},
    {"mail", ads::Syntax::kString, false, false, 0},
    {"mailPreferenceOption", ads::Syntax::kInteger, false, false, 0},
    {"manager", ads::Syntax::kDn, false, false, 0},
    {"MAPI-Recipient", ads::Syntax::kBoolean, false, false, 0},
    {"MDB-Over-Quota-Limit", ads::Syntax::kInteger, false, false, 0},
    {"MDB-Overhard-Quota-Limit", ads::Syntax::kInteger, false, false, 0},
    {"MDB-Storage-Quota", ads::Syntax::kInteger, false, false, 0},
    {"MDB-Use-Defaults", ads::Syntax::kBoolean, false, false, 0},
    {"member", ads::Syntax::kDn, true, false, 0},
    {"memberOf", ads::Syntax::kDn, true, true, 0},
    {"mobile", ads::Syntax::kString, false, false, 0},
    {"name", ads::Syntax::kString, false, false, 0},
    {"NT-Security-Descriptor", ads::Syntax::kOctetString, false, false, 0},
    {"o", ads::Syntax::kString, false, false, 0},
    {"objectClass", ads::Syntax::kString, true, true, 0},
    {"otherMailbox", ads::Syntax::kString, true, false, 0},
    {"ou", ads::Syntax::kString, false, false, 0},
    {"owner", ads::Syntax::kDn, false, false, 0},
    {"pager", ads::Syntax::kString, false, false, 0},
    {"Personal-Title", ads::Syntax::kString, false, false, 0},
    {"physicalDeliveryOfficeName", ads::Syntax::kString, false, false, 0},
    {"postalAddress", ads::Syntax::kString, false, false, 0},
    {"postalCode", ads::Syntax::kString, false, false, 0},
    {"postOfficeBox", ads::Syntax::kString, false, false, 0},
    {"Protocol-Settings", ads::Syntax::kString, true, false, 0},
    {"Proxy-Addresses", ads::Syntax::kString, true, false, 0},
    {"rdn", ads::Syntax::kString, false, true, 0},
    {"Replication-Sensitivity", ads::Syntax::kInteger, false, false, 0},
    {"Report-To-Originator", ads::Syntax::kBoolean, false, false, 0},
    {"secretary", ads::Syntax::kDn, false, false, 0},
    {"seeAlso", ads::Syntax::kDn, true, false, 0},
    {"sn", ads::Syntax::kString, false, false, 0},
    {"st", ads::Syntax::kString, false, false, 0},
    {"street", ads::Syntax::kString, false, false, 0},
    {"Submission-Cont-Length", ads::Syntax::kInteger, false, false, 0},
    {"Target-Address", ads::Syntax::kString, false, false, 0},
    {"Telephone-Assistant", ads::Syntax::kString, false, false, 0},
    {"Telephone-Home2", ads::Syntax::kString, true, false, 0},
    {"Telephone-Office2", ads::Syntax::kString, true, false, 0},
    {"telephoneNumber", ads::Syntax::kString, false, false, 0},
    {"telexNumber", ads::Syntax::kString, false, false, 0},
    {"textEncodedORAddress", ads::Syntax::kString, false, false, 0},
    {"title", ads::Syntax::kString, false, false, 0},
    {"uid", ads::Syntax::kString, false, false, 0},
    {"Unauth-Orig", ads::Syntax::kDn, true, false, 0},
    {"url", ads::Syntax::kString, true, false, 0},
    {"userCertificate", ads::Syntax::kOctetString, true, false, 0},
    {"X121-Address", ads::Syntax::kString, false, false, 0},
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

const ads::AttributeSchema* find_exchange_attribute(std::string_view name) {
  return find_in(kAttributes, name);
}

const ExchangeClass* find_exchange_class(std::string_view name) {
  return find_in(kClasses, name);
}

}  // namespace twk::lab
