#include "batch/account_by_sid.hpp"

#include "directory/names.hpp"
#include "directory/operations.hpp"
#include "platform/ldap_text.hpp"
#include "platform/sid.hpp"
#include "session/session.hpp"

namespace twk::batch {

platform::ObjectPtr account_by_sid(session::Session& session, const std::string& sid) {
  const auto parsed = platform::Sid::parse(sid);
  if (!parsed || !session::is_active_directory(session))
    return nullptr;
  const std::string bytes(parsed->bytes().begin(), parsed->bytes().end());
  const auto rows = directory::run_query(
      session, "<LDAP://" + session.DomainName + "/" +
                   directory::domain_distinguished_name(session.DomainName) +
                   ">;(objectSid=" + platform::escape_filter_bytes(bytes) + ");distinguishedName;subtree");
  if (rows->at_eof())
    return nullptr;
  return session.platform.directory.GetObject("LDAP://" + rows->field(0).text());
}

}  // namespace twk::batch
