#pragma once

#include <cstdint>
#include <ctime>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace twk::live {

/// A Kerberos ticket in a cache of this process's own memory: a copy of the workstation's, or one got
/// with a password. The workstation's cache, of whatever type, is read and never written
/// to.
class Ticket {
 public:
  Ticket(const Ticket&) = delete;
  Ticket& operator=(const Ticket&) = delete;
  ~Ticket();

  /// The ticket in the default cache ("KRB5CCNAME", otherwise from the Kerberos configuration). If a
  /// collection holds caches of several principals, that of `realm` comes first. Raises kLogonFailure when
  /// there is no ticket, or an expired one.
  static std::unique_ptr<Ticket> current(std::string_view realm);
  /// Asks the realm of `domain` for a ticket of `user` ("name", "DOMAIN\name", "name@domain"). Raises
  /// kLogonFailure when the logon is refused, kServerDown when no Kerberos server answers.
  static std::unique_ptr<Ticket> with_password(std::string_view user, std::string_view domain,
                                               const std::string& password);

  [[nodiscard]] const std::string& principal() const { return principal_; }  ///< "name@REALM"
  [[nodiscard]] std::time_t ends() const { return ends_; }
  [[nodiscard]] bool has_ended() const;
  /// True in its last five minutes, in which the library of the remote calls takes it for one that has ended.
  [[nodiscard]] bool is_about_to_end() const;
  /// "2026-11-25 18:47", local time.
  [[nodiscard]] std::string end_text() const;

  /// Gets a ticket for a service of a host, to learn the reason when that is refused. Raises
  /// kLogonFailure, kServerDown with what is wrong: a clock, a name that the realm does not know.
  void ask_for_service(const std::string& service, const std::string& host) const;

  /// While it exists, GSSAPI in this thread logs on with the ticket.
  class InUse {
   public:
    explicit InUse(const Ticket& ticket);
    InUse(const InUse&) = delete;
    InUse& operator=(const InUse&) = delete;
    ~InUse();
  };

 private:
  struct Cache;

  Ticket();
  void read_facts();
  [[noreturn]] void fail(std::int32_t code, const std::string& what) const;

  std::unique_ptr<Cache> cache_;
  std::string principal_;
  std::time_t ends_ = 0;
};

/// The realms in the Kerberos configuration and the ticket caches, in capitals as spelled there.
struct KnownRealms {
  std::vector<std::string> of_tickets;
  std::string by_default;               ///< "default_realm"; empty when there is none
  std::vector<std::string> configured;  ///< sections of "[realms]"
};
KnownRealms known_realms();

}  // namespace twk::live
