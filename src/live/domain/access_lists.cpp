#include "live/domain/access_lists.hpp"

#include <algorithm>

#include "ads/dn.hpp"
#include "base/errors.hpp"
#include "base/text.hpp"
#include "live/domain/change_password_right.hpp"
#include "platform/directory.hpp"
#include "platform/ldap_text.hpp"
#include "platform/security.hpp"

namespace twk::live {
namespace {

using platform::ObjectRight;

constexpr std::chrono::seconds kListsTakenForTrue{10};
constexpr const char* kIdentifiers = "tokenGroups";
constexpr const char* kClassIdentifier = "schemaIDGUID";
/// User-Force-Change-Password, [MS-ADTS] 5.1.3.2.1.
constexpr platform::Guid kResetPassword = platform::guid("00299570-246d-11d0-a768-00aa006e0529");

base::Bytes as_bytes(const std::string& value) {
  return {value.begin(), value.end()};
}

/// Reads what may be unreadable. Raises nothing but that the server is gone.
void try_to(const std::function<void()>& read) {
  base::Trap unreadable;
  unreadable(read);
  if (unreadable.number() == platform::ads_error::kServerDown)
    base::raise(unreadable.number(), unreadable.description());
}

}  // namespace

const std::vector<platform::Sid>& AccessLists::identifiers(LdapConnection& connection) {
  const Moment now = std::chrono::steady_clock::now();
  if (now < identifiers_until_)
    return identifiers_;
  identifiers_.clear();
  try_to([&] {
    const LdapEntry root = connection.read("", {kIdentifiers});
    const auto* const told = root.find(kIdentifiers);
    for (const std::string& one : told == nullptr ? std::vector<std::string>{} : *told) {
      if (const auto sid = platform::Sid::decode(as_bytes(one)))
        identifiers_.push_back(*sid);
    }
  });
  identifiers_until_ = now + kListsTakenForTrue;
  return identifiers_;
}

const AccessLists::Object& AccessLists::object(LdapConnection& connection, const std::string& dn) {
  constexpr std::size_t kMost = 50;
  namespace parts = platform::security_information;
  const Moment now = std::chrono::steady_clock::now();
  const std::string key = base::upper(dn);
  const auto known = objects_.find(key);
  if (known != objects_.end() && now - known->second.at < kListsTakenForTrue)
    return known->second;
  if (objects_.size() >= kMost)
    objects_.clear();
  Object object{.descriptor = {}, .sid = {}, .object_class = {}, .at = now};
  try_to([&] {
    const LdapEntry entry = connection.read(dn, {kDescriptorAttribute, "objectSid", "objectClass"},
                                            parts::kOwner | parts::kGroup | parts::kDacl);
    object.object_class = class_of(entry);
    object.sid = platform::Sid::decode(as_bytes(entry.first("objectSid")));
    const std::string descriptor = entry.first(kDescriptorAttribute);
    if (!descriptor.empty())
      object.descriptor = platform::SecurityDescriptor::decode(as_bytes(descriptor));
  });
  return objects_.insert_or_assign(key, std::move(object)).first->second;
}

std::optional<platform::Guid> AccessLists::class_identifier(LdapConnection& connection,
                                                            const std::string& schema_dn,
                                                            const std::string& object_class) {
  const auto known = classes_.find(object_class);
  if (known != classes_.end())
    return known->second;
  LdapSearch search;
  search.base = schema_dn;
  search.scope = platform::Scope::kOneLevel;
  search.filter = "(lDAPDisplayName=" + platform::escape_filter_value(object_class) + ")";
  search.attributes = {kClassIdentifier};
  std::string bytes;
  try_to([&] {
    connection.search(search, [&](LdapEntry&& entry) {
      bytes = entry.first(kClassIdentifier);
      return false;
    });
  });
  platform::Guid identifier{};
  if (bytes.size() != identifier.size())
    return std::nullopt;
  std::ranges::copy(bytes, identifier.begin());
  return classes_.emplace(object_class, identifier).first->second;
}

std::optional<bool> AccessLists::grants(LdapConnection& connection, const Object& object, ObjectRight right) {
  const std::vector<platform::Sid>& holder = identifiers(connection);
  if (!object.descriptor || holder.empty())
    return std::nullopt;
  right.self = object.sid;
  return platform::grants(*object.descriptor, holder, right);
}

std::optional<bool> AccessLists::deletes(LdapConnection& connection, const std::string& schema_dn,
                                         const std::string& dn) {
  const Object& one = object(connection, dn);
  if (!one.descriptor)
    return std::nullopt;
  const auto own_class = class_identifier(connection, schema_dn, one.object_class);
  if (!own_class)
    return std::nullopt;
  const auto itself =
      grants(connection, one, {.mask = platform::access::kDelete, .about = own_class, .self = {}});
  if (itself.value_or(true))
    return itself;
  return grants(connection, object(connection, std::string(ads::parent_dn(dn))),
                {.mask = platform::directory_access::kDeleteChild, .about = own_class, .self = {}});
}

std::optional<bool> AccessLists::writes_list(LdapConnection& connection, const std::string& dn) {
  return grants(connection, object(connection, dn),
                {.mask = platform::access::kWriteDac, .about = {}, .self = {}});
}

std::optional<bool> AccessLists::sets_password(LdapConnection& connection, const std::string& dn) {
  return grants(connection, object(connection, dn),
                {.mask = platform::directory_access::kControlAccess, .about = kResetPassword, .self = {}});
}

}  // namespace twk::live
