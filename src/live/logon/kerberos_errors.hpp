#pragma once

#include <cstdint>
#include <string>

namespace twk::live {

/// What a refusal of Kerberos means, for a person.
struct KerberosFailure {
  std::uint32_t number;  ///< kLogonFailure or kServerDown
  std::string text;
};

/// `code` is the library's (RFC 4120 7.5.9 and its additions), `principal` the ticket's owner, `realm` the
/// realm that was asked, `server` the server that the ticket is for, `detail` the library's text.
KerberosFailure explain_kerberos(std::int32_t code, const std::string& principal, const std::string& realm,
                                 const std::string& server, const std::string& detail);

}  // namespace twk::live
