#include "live/domain/change_password_right.hpp"

#include <algorithm>

#include "base/errors.hpp"
#include "platform/directory.hpp"
#include "platform/little_endian.hpp"
#include "platform/object_access.hpp"
#include "platform/security.hpp"

namespace twk::live {
namespace {

using platform::Ace;
using platform::Acl;
using platform::SecurityDescriptor;
using platform::Sid;

constexpr std::uint8_t kAllowObject = 5;
constexpr std::uint8_t kDenyObject = 6;
constexpr std::uint32_t kObjectTypePresent = 1;
constexpr std::uint8_t kObjectRevision = 4;
constexpr platform::Guid kChangePassword = platform::guid("ab721a53-1e2f-11d0-9819-00aa0040529b");

Ace change_password_ace(std::uint8_t type, const Sid& sid) {
  base::Bytes bytes{type, 0};
  platform::append_u16(bytes, static_cast<std::uint16_t>(12 + kChangePassword.size() + sid.size()));
  platform::append_u32(bytes, platform::directory_access::kControlAccess);
  platform::append_u32(bytes, kObjectTypePresent);
  bytes.insert(bytes.end(), kChangePassword.begin(), kChangePassword.end());
  bytes.insert(bytes.end(), sid.bytes().begin(), sid.bytes().end());
  return Ace::decode(bytes);
}

bool is_about_change_password(const Ace& ace) {
  return (ace.type() == kAllowObject || ace.type() == kDenyObject) &&
         platform::object_type(ace) == kChangePassword;
}

bool speaks_of(const Ace& ace, const Sid& sid) {
  return is_about_change_password(ace) && ace.sid() == sid;
}

SecurityDescriptor read_list(LdapConnection& connection, const std::string& dn) {
  const std::string bytes = connection.read(dn, {kDescriptorAttribute}, platform::security_information::kDacl)
                                .first(kDescriptorAttribute);
  if (bytes.empty())
    base::raise(platform::ads_error::kAccessDenied, "The access list of " + dn + " may not be read");
  return SecurityDescriptor::decode(base::Bytes(bytes.begin(), bytes.end()));
}

bool denies(const SecurityDescriptor& descriptor, const Sid& sid) {
  return descriptor.dacl &&
         std::any_of(descriptor.dacl->entries().begin(), descriptor.dacl->entries().end(),
                     [&](const Ace& ace) { return ace.type() == kDenyObject && speaks_of(ace, sid); });
}

bool denies_both(const SecurityDescriptor& descriptor) {
  return denies(descriptor, platform::well_known::everyone()) &&
         denies(descriptor, platform::well_known::principal_self());
}

}  // namespace

bool denies_change_of_password(std::string_view descriptor) {
  return denies_both(SecurityDescriptor::decode(base::Bytes(descriptor.begin(), descriptor.end())));
}

bool cannot_change_password(LdapConnection& connection, const std::string& dn) {
  return denies_both(read_list(connection, dn));
}

void set_cannot_change_password(LdapConnection& connection, const std::string& dn, bool cannot) {
  SecurityDescriptor descriptor = read_list(connection, dn);
  if (denies_both(descriptor) == cannot)
    return;
  const std::vector<Sid> both = {platform::well_known::everyone(), platform::well_known::principal_self()};
  std::vector<Ace> entries;
  for (const Sid& sid : both) {
    if (cannot)
      entries.push_back(change_password_ace(kDenyObject, sid));
  }
  for (const Ace& ace : descriptor.dacl ? descriptor.dacl->entries() : std::vector<Ace>{}) {
    const bool is_replaced =
        std::any_of(both.begin(), both.end(), [&](const Sid& sid) { return speaks_of(ace, sid); });
    if (!is_replaced)
      entries.push_back(ace);
  }
  if (!cannot) {
    for (const Sid& sid : both)
      entries.push_back(change_password_ace(kAllowObject, sid));
  }
  std::size_t size = Acl::kHeaderSize;
  for (const Ace& ace : entries)
    size += ace.size();
  Acl list(size, kObjectRevision);
  for (const Ace& ace : entries)
    list.add(Acl::kAtEnd, ace);
  descriptor.set_dacl(std::move(list));
  const base::Bytes bytes = descriptor.encode();
  connection.modify(
      dn, {{LdapChangeKind::kReplace, kDescriptorAttribute, {std::string(bytes.begin(), bytes.end())}}},
      LdapRequest::kModify, platform::security_information::kDacl);
}

}  // namespace twk::live
