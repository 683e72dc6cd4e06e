#include "lab_world.hpp"

namespace twk::lab {
namespace {

using contract::get_account;
using contract::names_of;
using contract::number_of;
namespace ads_error = platform::ads_error;

class NtLab : public testing::Test {
 protected:
  test::LabWorld w_{test::plan_of(DomainKind::kNt)};
};

TEST_F(NtLab, LdapDoesNotAnswer) {
  for (const char* const path : {"LDAP://RootDSE", "LDAP://TWK", "LDAP://CN=Users,DC=TWK", "GC://TWK"}) {
    EXPECT_EQ(number_of([&] { w_.directory().GetObject(path); }), ads_error::kServerDown) << path;
  }
  EXPECT_EQ(number_of([&] {
              w_.query().execute(platform::parse_query_text("<LDAP://TWK>;(objectClass=*);name;subtree"), {});
            }),
            ads_error::kServerDown);
  EXPECT_TRUE(contract::children_of(w_.directory().GetObject("GC:")).empty());
}

TEST_F(NtLab, DomainUsersHoldsThoseWhosePrimaryGroupItIs) {
  EXPECT_THAT(names_of(get_account(w_, "Domain Users")->Members()), testing::Contains("tester"));
  EXPECT_TRUE(get_account(w_, "Domain Users")->IsMember("WinNT://TWK/tester"));
}

}  // namespace
}  // namespace twk::lab
