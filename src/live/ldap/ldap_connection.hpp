#pragma once

#include <chrono>
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
  std::vector<std::string> values;  ///< a replacement without values removes the attribute
};

/// How far a paged search has come: at first before everything, in the end after it. It owns the request
/// under way, so dropping it in the middle abandons the rest.
class LdapCursor {
 public:
  LdapCursor() = default;
  LdapCursor(const LdapCursor&) = delete;
  LdapCursor& operator=(const LdapCursor&) = delete;
  ~LdapCursor() { restart(); }

  [[nodiscard]] bool has_more() const { return !cookie_.empty(); }
  /// Back to the beginning.
  void restart();

 private:
  friend class LdapConnection;

  std::string cookie_;                    ///< the server's mark of the next page
  std::weak_ptr<LdapHandle> asked_over_;  ///< the connection on which that page is asked for
  std::optional<int> request_;            ///< by this message
  LdapProgress progress_;
};

/// A connection to one LDAP server, opened on first use and kept. It is sealed by the Kerberos ticket, or
/// by TLS with the server's certificate checked; nothing is sent in clear.
///
/// When it is lost, it is reopened; a server that does not answer is waited for, up to 20 seconds, but not
/// a second time until it is back. A read is then repeated. A write may or may not have been made before the
/// connection was lost: the directory is checked first, and only what is missing is written again. A
/// connection whose ticket has expired counts as lost; the ticket available by then opens the next one. Where
/// another server holds the same, the work goes on there at once; but an entry that the lost one was asked to
/// create is not created a second time, because the other server may not know yet of the first.
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

  /// Finds another server that holds the same: the one that others have turned to already or, once this one
  /// is known to be gone, any that answers. Empty when there is none.
  using FindOther = std::function<std::string(const std::string& host, bool is_gone)>;
  void find_others_by(FindOther find) { find_other_ = std::move(find); }

  /// Connects and logs on, unless that has been done.
  void open();

  /// The entry of that name with the requested attributes; all stored ones when none is named. Raises
  /// kNoSuchObject.
  LdapEntry read(const std::string& dn, const std::vector<std::string>& attributes,
                 std::uint32_t descriptor_parts = 0);
  /// All entries of a search, in the server's order, page by page.
  void search(const LdapSearch& search, const std::function<bool(LdapEntry&&)>& visit);
  /// The same of a search that finds a few thousand at most, in one answer, which some servers give in a
  /// third of the time that pages take; in pages where the server's limit is below that.
  void search_at_once(const LdapSearch& search, const std::function<bool(LdapEntry&&)>& visit);
  /// The next page. The one after it is requested before this one is returned, so that the server works on it
  /// meanwhile; its time-out begins when the wait for it does.
  std::vector<LdapEntry> search_page(const LdapSearch& search, LdapCursor& cursor);

  /// Raises kStopped when the person asks to stop: between the parts of a long answer.
  void require_going_on() const;

  void add(const std::string& dn, const std::vector<LdapAttribute>& attributes);
  /// `descriptor_parts` says which parts of a security descriptor are written.
  void modify(const std::string& dn, const std::vector<LdapChange>& changes,
              LdapRequest request = LdapRequest::kModify, std::uint32_t descriptor_parts = 0);
  void remove(const std::string& dn);
  void rename(const std::string& dn, const std::string& new_rdn, const std::string& new_parent);

  /// How often something was asked for here that can give an account's name to another account.
  [[nodiscard]] std::size_t changes_of_names() const { return changes_of_names_; }

 private:
  void connect();
  void reconnect();
  /// Turns to another server. False when there is none.
  bool go_elsewhere(bool is_gone);
  /// A server that swallows what is sent to it costs its time-out for each attempt. One that was waited for
  /// in vain is therefore left alone for three times as long as the last attempt took; until then every
  /// request raises its reason.
  void require_trying_again() const;
  void keep_quiet(std::chrono::steady_clock::time_point since, std::string reason);
  void close();
  [[nodiscard]] std::string diagnostic() const;
  /// Runs a request, and once more on a new connection when it was lost. `done` checks whether a write was
  /// made.
  int run(const std::function<int()>& request, const std::function<bool()>& done);
  [[nodiscard]] bool exists(const std::string& dn);
  /// Waits for the requested page, or requests it and waits. Returns the result's code.
  int get_page(const LdapSearch& search, LdapCursor& cursor, LdapPage& page);
  int receive(const LdapPageRequest& request, int message, LdapPage& page);
  void ask_ahead(const LdapSearch& search, LdapCursor& cursor);

  std::shared_ptr<Credentials> credentials_;
  std::string host_;
  std::uint16_t port_;
  std::shared_ptr<LdapHandle> handle_;
  std::optional<std::time_t> ends_;  ///< of the ticket that seals it
  bool had_connection_ = false;      ///< at some time, even if lost by now
  bool gone_ = false;                ///< it was waited for in vain
  std::chrono::steady_clock::time_point quiet_until_;
  std::string quiet_reason_;
  bool answers_in_pages_ = false;  ///< an answer at once was refused because of its size
  std::size_t changes_of_names_ = 0;
  FindOther find_other_;
};

/// All values of a link of an entry ("member", "memberOf"), even when the server returns them in ranges,
/// [MS-ADTS] 3.1.1.3.1.3.3.
std::vector<std::string> read_links(LdapConnection& connection, const std::string& dn,
                                    std::string_view attribute);

/// Puts the values of one answer after those of `all`, and returns the attribute that requests the next ones;
/// none at the end.
std::optional<std::string> join_range(const LdapEntry& answer, std::string_view attribute,
                                      std::vector<std::string>& all);

}  // namespace twk::live
