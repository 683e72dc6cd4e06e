#pragma once

#include <string>
#include <string_view>

#include "platform/directory.hpp"

namespace twk::session {
struct MailAdministrator;
struct Session;
}  // namespace twk::session

/// Names and paths of an Exchange 5.5 directory. Their parts are escaped.
namespace twk::mail {

/// Where mailboxes are, from the fields of a site.
struct ExchangePlace {
  std::string Server;
  std::string Site;
  std::string Org;
};

/// The container of the rows as part of a name: a leading "CN=" is dropped. "Sales,CN=Recipients" stays
/// the name of a container inside another one; anything else is one name, whatever it contains.
std::string container_name(std::string_view text);

/// A name's value as part of a path.
std::string escaped_name(std::string_view text);
/// "CN=" and the name.
std::string relative_name(std::string_view name);

/// "LDAP://EX55:390/CN=Recipients,OU=London,O=Org"; `container` as from `container_name`.
std::string container_path(const ExchangePlace& place, std::string_view port, std::string_view container);
/// "LDAP://EX55/CN=jo,CN=Recipients,OU=London,O=Org", without the port.
std::string mailbox_path(const ExchangePlace& place, std::string_view name, std::string_view container);
/// "LDAP://EX55:390/O=Org/OU=London".
std::string site_path(const ExchangePlace& place, std::string_view port);

/// Binds an object of the directory. Raises what the directory raises.
platform::ObjectPtr bind_exchange(session::Session& session, const std::string& path,
                                  const session::MailAdministrator& administrator);

/// "8007052E".
std::string hex_number(std::uint32_t number);

}  // namespace twk::mail
