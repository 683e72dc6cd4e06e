#include "batch/account_by_sid.hpp"

#include "directory/names.hpp"
#include "directory/operations.hpp"
#include "platform/adsi.hpp"
#include "platform/ldap_text.hpp"
#include "platform/sid.hpp"
#include "session/session.hpp"

namespace twk::batch {
namespace {

using platform::ObjectPtr;
using platform::Sid;

ObjectPtr of_active_directory(session::Session& session, const Sid& sid) {
  const std::string bytes(sid.bytes().begin(), sid.bytes().end());
  const auto rows = directory::run_query(
      session, "<LDAP://" + session.DomainName + "/" +
                   directory::domain_distinguished_name(session.DomainName) +
                   ">;(objectSid=" + platform::escape_filter_bytes(bytes) + ");distinguishedName;subtree");
  return rows->at_eof() ? nullptr : session.platform.directory.GetObject("LDAP://" + rows->field(0).text());
}

/// An unknown identifier comes back as its text.
ObjectPtr of_flat_domain(session::Session& session, const Sid& sid) {
  const std::string name = session.platform.security.LookupAccountSid({}, sid);
  const std::size_t slash = name.find('\\');
  if (slash == std::string::npos)
    return nullptr;
  ObjectPtr account =
      session.platform.directory.GetObject(directory::winnt_path(session, name.substr(slash + 1)));
  return platform::readable_sid(account) == sid.text() ? account : nullptr;
}

}  // namespace

ObjectPtr account_by_sid(session::Session& session, const std::string& sid) {
  const auto parsed = Sid::parse(sid);
  if (!parsed)
    return nullptr;
  return session::is_active_directory(session) ? of_active_directory(session, *parsed)
                                               : of_flat_domain(session, *parsed);
}

}  // namespace twk::batch
