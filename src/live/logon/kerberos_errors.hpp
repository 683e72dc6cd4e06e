#pragma once

#include <cstdint>
#include <string>

namespace twk::live {

/// What a refusal of Kerberos means, for a person.
struct KerberosFailure {
  std::uint32_t number;  ///< kLogonFailure or kServerDown
  std::string text;
};

/// `code` is the library's own (RFC 4120 7.5.9 and what it adds), `principal` whose ticket it is, `realm` who
/// was asked, `server` for whom; `detail` is the library's text.
KerberosFailure explain_kerberos(std::int32_t code, const std::string& principal, const std::string& realm,
                                 const std::string& server, const std::string& detail);

}  // namespace twk::live
