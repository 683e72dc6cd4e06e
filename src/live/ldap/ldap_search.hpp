#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/query.hpp"

struct ldap;

/// One page of a search, requested and read entry by entry, so that no server can block the program or fill
/// its memory.
namespace twk::live {

/// Limits a message of the server to more than any entry needs; the library allocates as much memory as a
/// message announces. Raises kServerDown when the library does not accept the limit.
void limit_messages(ldap* connection);

/// One attribute with its raw values.
struct LdapAttribute {
  std::string name;
  std::vector<std::string> values;
};

/// One entry of a search's answer.
struct LdapEntry {
  std::string dn;
  std::vector<LdapAttribute> attributes;

  /// The values of an attribute, whose name folds case; none when it is absent.
  [[nodiscard]] const std::vector<std::string>* find(std::string_view name) const;
  [[nodiscard]] std::string first(std::string_view name) const;
};

/// The most special of an entry's classes.
std::string class_of(const LdapEntry& entry);

/// A search in pieces. The connection must outlive it.
struct LdapSearch {
  std::string base;
  platform::Scope scope = platform::Scope::kSubtree;
  std::string filter = "(objectClass=*)";
  std::vector<std::string> attributes;  ///< none: all that are stored
  std::int32_t page_size = 1000;        ///< entries a request
  int timeout_seconds = 0;              ///< of each page; 0: the connection's
  /// Which parts of security descriptors are returned, [MS-ADTS] 3.1.1.3.4.1.11; 0: no control is sent.
  std::uint32_t descriptor_parts = 0;
};

struct LdapPage {
  std::vector<LdapEntry> entries;
  std::string cookie;  ///< the server's cookie for the next page (RFC 2696); empty after the last
};

/// A request for a page of a search, in the library's form. The search must outlive it.
class LdapPageRequest {
 public:
  LdapPageRequest(const LdapSearch& search, int timeout_seconds);

  /// Returns the number of the message; none when it could not be sent; the connection has the reason.
  [[nodiscard]] std::optional<int> send(ldap* connection, const std::string& cookie) const;
  /// Waits for the answer to that message. Returns the result's code, LDAP_TIMEOUT when it did not come in
  /// time. Raises kStopped when `is_stopped` says so after three seconds, and kProtocolError when the server
  /// sends more entries than a page has. After either, and after a result that means a lost connection, the
  /// connection is useless: the rest of the answer may still arrive over it.
  int receive(ldap* connection, int message, const std::function<bool()>& is_stopped, LdapPage& page) const;

 private:
  [[nodiscard]] std::size_t most_entries() const;

  const LdapSearch& search_;
  int timeout_seconds_;
  std::vector<char*> names_;
};

/// Stops a search whose pages make no progress: always the same one, only empty ones, or more entries than
/// any directory has.
class LdapProgress {
 public:
  /// Checks the next page. Raises kProtocolError.
  void require(const LdapSearch& search, const LdapPage& page);

 private:
  std::optional<std::string> first_dn_;  ///< of the last page with entries
  std::size_t empty_pages_ = 0;
  std::size_t entries_ = 0;
};

}  // namespace twk::live
