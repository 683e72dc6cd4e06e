#include "mail/find_store.hpp"

#include <optional>

#include "base/errors.hpp"
#include "directory/names.hpp"
#include "mail/create_mailbox2000.hpp"
#include "platform/ldap_text.hpp"
#include "session/session.hpp"

namespace twk::mail {
namespace {

using platform::ObjectPtr;
using session::Session;

std::string path_of(const Session& session, std::string_view dn) {
  return "LDAP://" + session.DomainName + "/" + std::string(dn);
}

/// Names of an object's children of a class, without their type.
std::vector<std::string> children(Session& session, const std::string& dn, const std::string& object_class) {
  std::vector<std::string> names;
  const std::vector<std::string> classes{object_class};
  session.platform.directory.GetObject(path_of(session, dn))->enumerate(classes, [&](const ObjectPtr& child) {
    names.push_back(platform::plain_name(child->Name()));
    return true;
  });
  return names;
}

/// The organisation that was named, or all of them.
std::vector<std::string> organisations(Session& session, const std::string& named) {
  if (!named.empty())
    return {named};
  return children(session,
                  "CN=Microsoft Exchange,CN=Services,CN=Configuration," +
                      directory::domain_distinguished_name(session.DomainName),
                  "msExchOrganizationContainer");
}

}  // namespace

StorageGroups find_storage_groups(Session& session, const std::string& server,
                                  const std::string& organisation) {
  const std::string domain = directory::domain_distinguished_name(session.DomainName);
  std::optional<base::RuntimeError> failure;
  for (const std::string& one : organisations(session, organisation)) {
    base::Trap trap;
    StorageGroups groups{one, {}};
    if (trap([&] {
          groups.names = children(session, store_path(one, server, {}, {}, domain), "msExchStorageGroup");
        }))
      return groups;
    failure.emplace(trap.number(), trap.description());
  }
  if (failure)
    throw base::RuntimeError(*failure);
  return {};
}

std::vector<std::string> find_stores(Session& session, const std::string& server,
                                     const std::string& organisation, const std::string& storage_group) {
  const std::string domain = directory::domain_distinguished_name(session.DomainName);
  return children(session, store_path(organisation, server, storage_group, {}, domain), "msExchPrivateMDB");
}

}  // namespace twk::mail
