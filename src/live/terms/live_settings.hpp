#pragma once

#include <cstdint>
#include <string>

namespace twk::live {

/// How to reach a real domain.
struct LiveSettings {
  enum class Logon {
    kTicket,   ///< the existing Kerberos ticket
    kPassword  ///< `user` and `password`, over TLS
  };
  enum class Tls { kLdaps, kStartTls };

  std::string domain;      ///< DNS name, or the NetBIOS name of an NT4-style domain
  std::string server;      ///< host name of a controller; empty: one from the name service
  std::uint16_t port = 0;  ///< of LDAP; 0: 389, or 636 for LDAPS
  Logon logon = Logon::kTicket;
  Tls tls = Tls::kLdaps;  ///< with a password
  std::string ca_file;    ///< certificates that are trusted, PEM; empty: the system's
  std::string user;       ///< "name", "DOMAIN\name" or "name@domain"
  std::string password;
  int timeout_seconds = 30;  ///< of a connection, and of the answer to a request
};

}  // namespace twk::live
