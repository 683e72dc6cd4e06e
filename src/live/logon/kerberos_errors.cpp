#include "live/logon/kerberos_errors.hpp"

#include <krb5.h>

#include "platform/directory.hpp"

namespace twk::live {
namespace {

namespace ads_error = platform::ads_error;

std::string or_nobody(const std::string& principal) {
  return principal.empty() ? "NAME@REALM" : principal;
}

}  // namespace

KerberosFailure explain_kerberos(std::int32_t code, const std::string& principal, const std::string& realm,
                                 const std::string& server, const std::string& detail) {
  switch (code) {
    case KRB5_FCC_NOFILE:
    case KRB5_CC_NOTFOUND:
    case KRB5_CC_FORMAT:
    case KRB5_CC_END:
    case KRB5_CC_BADNAME:
    case KRB5_CC_UNKNOWN_TYPE:
    case KRB5_FCC_PERM:
      return {ads_error::kLogonFailure, "There is no Kerberos ticket (" + detail +
                                            "). Get one with `kinit`, or log on with a user and a password"};
    case KRB5KRB_AP_ERR_TKT_EXPIRED:
    case KRB5KDC_ERR_NEVER_VALID:
      return {ads_error::kLogonFailure,
              "The Kerberos ticket of " + or_nobody(principal) + " has expired. Renew it with `kinit`"};
    case KRB5KRB_AP_ERR_SKEW:
    case KRB5_KDCREP_SKEW:
    case KRB5KRB_AP_ERR_TKT_NYV:
      return {ads_error::kLogonFailure,
              "The clock of this computer differs from that of the domain by more than Kerberos allows, five "
              "minutes. Set it right"};
    case KRB5_KDC_UNREACH:
    case KRB5_REALM_UNKNOWN:
    case KRB5_REALM_CANT_RESOLVE:
      return {ads_error::kServerDown, "No Kerberos server of the realm " + realm +
                                          " answers. The name service must know it, or the Kerberos "
                                          "configuration (krb5.conf) must name it"};
    case KRB5KDC_ERR_C_PRINCIPAL_UNKNOWN:
      return {ads_error::kLogonFailure, "The domain has no user " + or_nobody(principal)};
    case KRB5KDC_ERR_PREAUTH_FAILED:
    case KRB5_PREAUTH_FAILED:
    case KRB5KRB_AP_ERR_BAD_INTEGRITY:
    case KRB5KRB_AP_ERR_MODIFIED:
      return {ads_error::kLogonFailure, "The password of " + or_nobody(principal) + " is wrong"};
    case KRB5KDC_ERR_CLIENT_REVOKED:
      return {ads_error::kLogonFailure,
              "The account " + or_nobody(principal) + " is disabled, locked or has expired"};
    case KRB5KDC_ERR_KEY_EXP:
      return {ads_error::kLogonFailure,
              "The password of " + or_nobody(principal) + " must be changed before it can be used"};
    case KRB5KDC_ERR_POLICY:
      return {ads_error::kLogonFailure, "The domain does not let " + or_nobody(principal) + " log on now"};
    case KRB5KDC_ERR_S_PRINCIPAL_UNKNOWN:
      return {ads_error::kLogonFailure, "The realm " + realm + " knows no server " + server +
                                            ". Name the controller by its full host name"};
    default:
      return {ads_error::kLogonFailure, "Kerberos refuses the logon: " + detail};
  }
}

}  // namespace twk::live
