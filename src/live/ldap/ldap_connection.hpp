#pragma once

#include <cstdint>
#include <ctime>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "live/ldap/ldap_errors.hpp"
#include "live/ldap/ldap_search.hpp"
#include "live/ldap/ldap_session.hpp"
#include "live/logon/credentials.hpp"

namespace twk::live {

enum class LdapChangeKind { kReplace, kAdd, kDelete };

struct LdapChange {
  LdapChangeKind kind = LdapChangeKind::kReplace;
  std::string attribute;
  std::vector<std::string> values;  ///< a replacement by none takes the attribute away
};

/// How far a search in pages has come: first in front of all of it, in the end behind it. What is under way
/// goes with it, so one that is let go in the middle gives up the rest.
class LdapCursor {
 public:
  LdapCursor() = default;
  LdapCursor(const LdapCursor&) = delete;
  LdapCursor& operator=(const LdapCursor&) = delete;
  ~LdapCursor() { restart(); }

  [[nodiscard]] bool has_more() const { return !cookie_.empty(); }
  /// In front of all of it again.
  void restart();

 private:
  friend class LdapConnection;

  std::string cookie_;                    ///< the server's mark of the next page
  std::weak_ptr<LdapHandle> asked_over_;  ///< the connection on which that page is asked for
  std::optional<int> request_;            ///< by this message
  LdapProgress progress_;
};

/// A connection to one LDAP server, made when it is first needed and kept. It is sealed by the Kerberos
/// ticket, or by TLS with the server's certificate checked; nothing goes over a clear one.
///
/// When it is lost, it is opened once more; a server that does not answer is waited for, 20 seconds, and when
/// it has not come back by then not again until it is. A read is then repeated. Of a write nobody knows
/// whether it was made before the connection went: what stands in the directory is looked at first, and only
/// what is not made is made again. A connection whose ticket has ended counts as lost; the ticket that is
/// there by then opens the next one.
///
/// Every call raises the numbers of `ldap_errors.hpp`.
class LdapConnection {
 public:
  /// `port` 0: the one that belongs to the way of logging on.
  LdapConnection(std::shared_ptr<Credentials> credentials, std::string host, std::uint16_t port);
  LdapConnection(const LdapConnection&) = delete;
  LdapConnection& operator=(const LdapConnection&) = delete;
  ~LdapConnection();

  [[nodiscard]] const std::string& host() const { return host_; }

  /// Connects and logs on, unless that is done.
  void open();

  /// The entry of that name with the attributes asked for; all stored ones when none is named. Raises
  /// kNoSuchObject.
  LdapEntry read(const std::string& dn, const std::vector<std::string>& attributes,
                 std::uint32_t descriptor_parts = 0);
  /// All entries of a search, in the server's order, page by page.
  void search(const LdapSearch& search, const std::function<bool(LdapEntry&&)>& visit);
  /// The next page. The one behind it is asked for before this one is given out, so that the server works on
  /// it meanwhile; its time-out begins when it is waited for.
  std::vector<LdapEntry> search_page(const LdapSearch& search, LdapCursor& cursor);

  /// Raises kStopped when the person wants the work to end: between the parts of a long answer.
  void require_going_on() const;

  void add(const std::string& dn, const std::vector<LdapAttribute>& attributes);
  /// `descriptor_parts` tells the server which parts of a security descriptor are written.
  void modify(const std::string& dn, const std::vector<LdapChange>& changes,
              LdapRequest request = LdapRequest::kModify, std::uint32_t descriptor_parts = 0);
  void remove(const std::string& dn);
  void rename(const std::string& dn, const std::string& new_rdn, const std::string& new_parent);

 private:
  void connect();
  void reconnect();
  void close();
  [[nodiscard]] std::string diagnostic() const;
  /// Runs a request once, and once more on a new connection when it was lost. `done` looks whether a write
  /// was made.
  int run(const std::function<int()>& request, const std::function<bool()>& done);
  [[nodiscard]] bool exists(const std::string& dn);
  /// Waits for the page that is asked for, or asks for it and waits. Returns the result's code.
  int get_page(const LdapSearch& search, LdapCursor& cursor, LdapPage& page);
  int receive(const LdapPageRequest& request, int message, LdapPage& page);
  void ask_ahead(const LdapSearch& search, LdapCursor& cursor);

  std::shared_ptr<Credentials> credentials_;
  std::string host_;
  std::uint16_t port_;
  std::shared_ptr<LdapHandle> handle_;
  std::optional<std::time_t> ends_;  ///< of the ticket that seals it
  bool had_connection_ = false;      ///< once, be it lost by now
  bool gone_ = false;                ///< was waited for in vain
};

/// All values of a link of an entry ("member", "memberOf"), also when the server hands them out in ranges,
/// [MS-ADTS] 3.1.1.3.1.3.3.
std::vector<std::string> read_links(LdapConnection& connection, const std::string& dn,
                                    std::string_view attribute);

/// Puts the values of one answer after those of `all`, and gives the attribute that the next ones are asked
/// for by; none at the end.
std::optional<std::string> join_range(const LdapEntry& answer, std::string_view attribute,
                                      std::vector<std::string>& all);

}  // namespace twk::live
