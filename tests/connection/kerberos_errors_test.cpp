#include "live/logon/kerberos_errors.hpp"

#include <krb5.h>

#include "live/ldap/ldap_errors.hpp"
#include "platform/directory.hpp"

namespace twk::live {
namespace {

using testing::HasSubstr;

struct Refusal {
  const char* name;
  std::int32_t code;
  std::uint32_t number;
  const char* text;
};

class EveryKerberosRefusal : public testing::TestWithParam<Refusal> {};

TEST_P(EveryKerberosRefusal, SaysWhatIsWrongAndWhatHelps) {
  const KerberosFailure failure =
      explain_kerberos(GetParam().code, "jo@TWK.TEST", "TWK.TEST", "dc1", "the library's text");
  EXPECT_EQ(failure.number, GetParam().number);
  EXPECT_THAT(failure.text, HasSubstr(GetParam().text));
}

constexpr std::uint32_t kLogon = platform::ads_error::kLogonFailure;
constexpr std::uint32_t kDown = platform::ads_error::kServerDown;

INSTANTIATE_TEST_SUITE_P(
    Kerberos, EveryKerberosRefusal,
    testing::Values(Refusal{"NoCache", KRB5_FCC_NOFILE, kLogon, "kinit"},
                    Refusal{"Ended", KRB5KRB_AP_ERR_TKT_EXPIRED, kLogon, "jo@TWK.TEST has expired"},
                    Refusal{"Clock", KRB5KRB_AP_ERR_SKEW, kLogon, "clock"},
                    Refusal{"NotYetValid", KRB5KRB_AP_ERR_TKT_NYV, kLogon, "clock"},
                    Refusal{"NoServer", KRB5_KDC_UNREACH, kDown, "realm TWK.TEST"},
                    Refusal{"NoUser", KRB5KDC_ERR_C_PRINCIPAL_UNKNOWN, kLogon, "no user jo@TWK.TEST"},
                    Refusal{"WrongPassword", KRB5KDC_ERR_PREAUTH_FAILED, kLogon, "is wrong"},
                    Refusal{"Disabled", KRB5KDC_ERR_CLIENT_REVOKED, kLogon, "disabled"},
                    Refusal{"MustChange", KRB5KDC_ERR_KEY_EXP, kLogon, "must be changed"},
                    Refusal{"NoService", KRB5KDC_ERR_S_PRINCIPAL_UNKNOWN, kLogon, "no server dc1"},
                    Refusal{"Other", KRB5KRB_ERR_GENERIC, kLogon, "the library's text"}),
    [](const auto& named) { return named.param.name; });

TEST(RefusedLogon, IsReportedByTheSubCodeOfTheServer) {
  const auto text = [](const std::string& code) {
    return explain_refused_logon("jo",
                                 "80090308: LdapErr: DSID-0C0903A9, comment: AcceptSecurityContext "
                                 "error, data " +
                                     code + ", v1db1");
  };
  EXPECT_THAT(text("52e"), HasSubstr("user or password is wrong"));
  EXPECT_THAT(text("532"), HasSubstr("expired"));
  EXPECT_THAT(text("533"), HasSubstr("disabled"));
  EXPECT_THAT(text("775"), HasSubstr("locked"));
  EXPECT_THAT(text("999"), HasSubstr("data 999"));
  EXPECT_THAT(explain_refused_logon("jo", ""), HasSubstr("jo"));
}

}  // namespace
}  // namespace twk::live
