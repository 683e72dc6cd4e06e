#include "live/ldap/ldap_errors.hpp"

#include <ldap.h>

#include <array>
#include <optional>
#include <utility>

#include "base/errors.hpp"
#include "base/text.hpp"
#include "platform/directory.hpp"

namespace twk::live {
namespace {

namespace ads_error = platform::ads_error;

constexpr std::uint32_t kPasswordRestriction = 0x52D;  // ERROR_PASSWORD_RESTRICTION
constexpr std::uint32_t kAccountNameInUse = 0x2071;    // ERROR_DS_OBJ_STRING_NAME_EXISTS
constexpr std::uint32_t kUserExists = 0x524;           // ERROR_USER_EXISTS
constexpr std::uint32_t kNameAlreadyThere = 0x21C8;    // ERROR_DS_UPN_VALUE_NOT_UNIQUE_IN_FOREST

/// Sub-codes of a refused bind, [MS-ERREF] 2.2.
constexpr std::array<std::pair<std::string_view, std::string_view>, 10> kLogonFailures = {
    {{"525", "the domain has no such user"},
     {"52e", "user or password is wrong"},
     {"52f", "the account is restricted"},
     {"530", "the account may not log on at this hour"},
     {"531", "the account may not log on from this computer"},
     {"532", "the password has expired"},
     {"533", "the account is disabled"},
     {"701", "the account has expired"},
     {"773", "the password must be changed first"},
     {"775", "the account is locked after too many wrong passwords"}}};

/// The eight hexadecimal digits before a colon.
std::optional<std::uint32_t> leading_code(std::string_view diagnostic) {
  constexpr std::size_t kDigits = 8;
  if (diagnostic.size() <= kDigits || diagnostic[kDigits] != ':')
    return std::nullopt;
  std::uint32_t code = 0;
  for (const char c : diagnostic.substr(0, kDigits)) {
    const auto digit = base::hex_digit(c);
    if (!digit)
      return std::nullopt;
    code = code << 4U | *digit;
  }
  return code;
}

std::uint32_t number_by_code(std::uint32_t code, std::uint32_t otherwise) {
  switch (code) {
    case kPasswordRestriction:
      return ads_error::kPasswordPolicy;
    case kAccountNameInUse:
    case kUserExists:
    case kNameAlreadyThere:
      return ads_error::kObjectExists;
    default:
      return otherwise;
  }
}

std::uint32_t number_by_result(int result, LdapRequest request) {
  switch (result) {
    case LDAP_NO_SUCH_OBJECT:
      return ads_error::kNoSuchObject;
    case LDAP_ALREADY_EXISTS:
      return ads_error::kObjectExists;
    case LDAP_TYPE_OR_VALUE_EXISTS:
      return request == LdapRequest::kAddMember ? ads_error::kObjectExists : ads_error::kConstraint;
    case LDAP_NO_SUCH_ATTRIBUTE:
      return request == LdapRequest::kRemoveMember ? ads_error::kMemberNotInGroup
                                                   : ads_error::kPropertyNotFound;
    case LDAP_UNWILLING_TO_PERFORM:
      return request == LdapRequest::kRemoveMember ? ads_error::kMemberNotInGroup : ads_error::kUnwilling;
    case LDAP_CONSTRAINT_VIOLATION:
    case LDAP_INVALID_SYNTAX:
    case LDAP_OBJECT_CLASS_VIOLATION:
    case LDAP_NAMING_VIOLATION:
      return request == LdapRequest::kPassword ? ads_error::kPasswordPolicy : ads_error::kConstraint;
    case LDAP_REFERRAL:
    case LDAP_PROTOCOL_ERROR:
    case LDAP_DECODING_ERROR:
      return kProtocolError;
    case LDAP_UNDEFINED_TYPE:
      return ads_error::kNoSuchAttribute;
    case LDAP_INVALID_DN_SYNTAX:
      return ads_error::kInvalidDn;
    case LDAP_NOT_ALLOWED_ON_NONLEAF:
      return ads_error::kNotOnNonLeaf;
    case LDAP_INSUFFICIENT_ACCESS:
      return ads_error::kAccessDenied;
    case LDAP_INVALID_CREDENTIALS:
    case LDAP_STRONG_AUTH_REQUIRED:
    case LDAP_INAPPROPRIATE_AUTH:
      return ads_error::kLogonFailure;
    default:
      return is_connection_lost(result) || request == LdapRequest::kBind ? ads_error::kServerDown
                                                                         : ads_error::kUnwilling;
  }
}

}  // namespace

bool is_connection_lost(int result) {
  return result == LDAP_SERVER_DOWN || result == LDAP_CONNECT_ERROR || result == LDAP_TIMEOUT ||
         result == LDAP_UNAVAILABLE || result == LDAP_BUSY;
}

int last_ldap_result(LDAP* connection) {
  int result = LDAP_OTHER;
  ldap_get_option(connection, LDAP_OPT_RESULT_CODE, &result);
  return result;
}

std::uint32_t number_of_ldap_result(int result, std::string_view diagnostic, LdapRequest request) {
  const std::uint32_t number = number_by_result(result, request);
  const auto code = leading_code(diagnostic);
  return code ? number_by_code(*code, number) : number;
}

std::string explain_refused_logon(const std::string& user, std::string_view diagnostic) {
  constexpr std::string_view kData = ", data ";
  const std::size_t at = diagnostic.find(kData);
  const std::string_view rest = at == base::npos ? std::string_view() : diagnostic.substr(at + kData.size());
  const std::string_view code = rest.substr(0, rest.find(','));
  for (const auto& [digits, text] : kLogonFailures) {
    if (base::equals_fold(code, digits))
      return "The logon of " + user + " is refused: " + std::string(text);
  }
  return "The logon of " + user + " is refused (" + base::to_valid_utf8(diagnostic) + ")";
}

void raise_ldap_error(int result, const std::string& diagnostic, LdapRequest request,
                      const std::string& what) {
  const bool refused = result == LDAP_INSUFFICIENT_ACCESS;
  std::string text = what + ": " +
                     (refused                   ? "the account has too few rights"
                      : result == LDAP_REFERRAL ? "the server refers to another one, which is not followed"
                                                : ldap_err2string(result));
  if (!diagnostic.empty())
    text += " (" + base::to_valid_utf8(diagnostic) + ")";
  base::raise(number_of_ldap_result(result, diagnostic, request), text);
}

}  // namespace twk::live
