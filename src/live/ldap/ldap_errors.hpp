#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "live/terms/error_numbers.hpp"

struct ldap;

namespace twk::live {

/// For invalid answers: ERROR_DS_PROTOCOL_ERROR of [MS-ERREF] 2.2.
inline constexpr std::uint32_t kProtocolError = 0x80072021;

/// The purpose of an LDAP request: the same result means different things for different requests.
enum class LdapRequest {
  kBind,
  kRead,
  kAdd,
  kModify,
  kDelete,
  kRename,
  kAddMember,
  kRemoveMember,
  kPassword
};

/// The number that callers test for a result code (RFC 4511 4.1.9, or negative for the library's own). The
/// hexadecimal number that an Active Directory server puts before its diagnostic text ("0000052D: …", a
/// Win32 error of [MS-ERREF] 2.2) is more precise when the code alone is not enough.
std::uint32_t number_of_ldap_result(int result, std::string_view diagnostic, LdapRequest request);

/// Raises the number with a description that contains `what` and the server's message.
[[noreturn]] void raise_ldap_error(int result, const std::string& diagnostic, LdapRequest request,
                                   const std::string& what);

/// Why a server refused user and password, from the sub-code of its diagnostic text ("… data 52e, …", a Win32
/// error in hexadecimal digits).
std::string explain_refused_logon(const std::string& user, std::string_view diagnostic);

/// The result of a request that failed before the server answered it.
int last_ldap_result(ldap* connection);

/// True for a connection that is gone or did not answer in time.
bool is_connection_lost(int result);

}  // namespace twk::live
