#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "live/logon/credentials.hpp"
#include "live/logon/handshake_deadline.hpp"

struct ldap;

/// From nothing to a usable connection of libldap, in three steps. Each raises kServerDown or kLogonFailure
/// with a text that says what is wrong and how to fix it.
namespace twk::live {

/// The library's handle for one server; closed with its owner.
class LdapHandle {
 public:
  explicit LdapHandle(ldap* connection) : connection_(connection) {}
  LdapHandle(const LdapHandle&) = delete;
  LdapHandle& operator=(const LdapHandle&) = delete;
  ~LdapHandle();

  [[nodiscard]] ldap* get() const { return connection_; }
  [[nodiscard]] HandshakeDeadline& deadline() { return deadline_; }
  /// What the server, or the library, said with the last result.
  [[nodiscard]] std::string diagnostic() const;

 private:
  HandshakeDeadline deadline_;
  ldap* connection_;
};

/// Seconds for a server to accept a connection: a host that is off must not block the work for long.
int connect_timeout(const LiveSettings& settings);

/// The port to use: the given one, or the one for the way of logging on.
std::uint16_t ldap_port(const LiveSettings& settings, std::uint16_t port);

/// Connects, with TLS when a password will be sent: the certificate is checked against
/// `ca_file`, or against those that the system trusts, and against the host's name.
std::unique_ptr<LdapHandle> connect_ldap(const LiveSettings& settings, const std::string& host,
                                         std::uint16_t port);

/// Logs on: with the ticket, which seals what follows, or with user and password.
void log_on(const LdapHandle& handle, Credentials& credentials, const std::string& host);

/// The server's own name, read without a logon; empty when it does not answer.
std::string ask_host_name(const LiveSettings& settings, const std::string& host);

}  // namespace twk::live
