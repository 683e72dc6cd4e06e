#include "mail/exchange_path.hpp"

#include <algorithm>

#include "base/text.hpp"
#include "platform/ldap_text.hpp"
#include "session/preferences.hpp"
#include "session/session.hpp"

namespace twk::mail {
namespace {

using platform::escape_dn_value;
using session::Session;

/// A slash separates the names of a path.
std::string escape_slashes(std::string_view name) {
  std::string out;
  for (std::size_t i = 0; i < name.size(); ++i) {
    if (name[i] == '\\' && i + 1 < name.size())
      out.push_back(name[i++]);
    else if (name[i] == '/')
      out.push_back('\\');
    out.push_back(name[i]);
  }
  return out;
}

/// True for several comma-separated names, the first without its type.
bool is_nested_name(std::string_view text) {
  bool nested = false;
  std::size_t from = 0;
  for (std::size_t i = 0; i <= text.size(); ++i) {
    if (i < text.size() && text[i] == '\\') {
      ++i;
      continue;
    }
    if (i < text.size() && text[i] != ',')
      continue;
    if (from > 0 && text.substr(from, i - from).find('=') == base::npos)
      return false;
    nested = nested || from > 0;
    from = i + 1;
  }
  return nested;
}

std::string below_site(const ExchangePlace& place) {
  return ",OU=" + escaped_name(place.Site) + ",O=" + escaped_name(place.Org);
}

std::string server_path(const ExchangePlace& place, std::string_view port) {
  return "LDAP://" + place.Server + (port.empty() ? "" : ":" + std::string(port));
}

}  // namespace

std::string escaped_name(std::string_view text) {
  return escape_slashes(escape_dn_value(text));
}

std::string container_name(std::string_view text) {
  if (base::starts_with_fold(text, "CN="))
    text.remove_prefix(3);
  return is_nested_name(text) ? escape_slashes(text) : escaped_name(text);
}

std::string relative_name(std::string_view name) {
  return "CN=" + escape_dn_value(name);
}

std::string container_path(const ExchangePlace& place, std::string_view port, std::string_view container) {
  return server_path(place, port) + "/CN=" + std::string(container) + below_site(place);
}

std::string mailbox_path(const ExchangePlace& place, std::string_view name, std::string_view container) {
  return "LDAP://" + place.Server + "/CN=" + escaped_name(name) + ",CN=" + std::string(container) +
         below_site(place);
}

std::string site_path(const ExchangePlace& place, std::string_view port) {
  return server_path(place, port) + "/O=" + escaped_name(place.Org) + "/OU=" + escaped_name(place.Site);
}

platform::ObjectPtr bind_exchange(Session& session, const std::string& path,
                                  const session::MailAdministrator& administrator) {
  platform::DirectoryService& directory = session.platform.directory;
  if (administrator.own_logon)
    return directory.GetObject(path);
  return directory.OpenDSObject(path, administrator.name, administrator.password);
}

std::string hex_number(std::uint32_t number) {
  const std::string digits = base::to_hex(number).substr(2);
  return digits.substr(std::min(digits.find_first_not_of('0'), digits.size() - 1));
}

}  // namespace twk::mail
