#include "lab_world.hpp"

namespace twk::lab {
namespace {

using contract::get_account;
using contract::names_of;
using contract::number_of;
namespace ads_error = platform::ads_error;

LabPlan nt_plan() {
  LabPlan plan = test::small_plan();
  plan.kind = DomainKind::kNt;
  plan.netbios = "TWK";
  plan.users = 3;
  plan.groups = 2;
  plan.ous = 4;
  return plan;
}

class NtLab : public testing::Test {
 protected:
  test::LabWorld w_{nt_plan()};
};

TEST_F(NtLab, LdapDoesNotAnswer) {
  for (const char* const path : {"LDAP://RootDSE", "LDAP://TWK", "LDAP://CN=Users,DC=TWK", "GC://TWK"}) {
    EXPECT_EQ(number_of([&] { w_.directory().GetObject(path); }), ads_error::kServerDown) << path;
  }
  EXPECT_EQ(number_of([&] {
              w_.query().execute(platform::parse_query_text("<LDAP://TWK>;(objectClass=*);name;subtree"), {});
            }),
            ads_error::kServerDown);
  int children = 0;
  w_.directory().GetObject("GC:")->enumerate({}, [&](const platform::ObjectPtr&) { return ++children > 0; });
  EXPECT_EQ(children, 0);
}

TEST_F(NtLab, AccountIsMadeFilledAndPutIntoGroups) {
  const auto domain = w_.directory().GetObject("WinNT://TWK");
  platform::User user(domain->Create("User", "jo"));
  user.put_FullName("Jo Smith");
  user.put_LoginHours(base::Bytes(21, 0xFF));
  user.Put("HomeDirDrive", "H:");
  user.SetInfo();
  user.SetPassword("Correct-Horse-7");
  user.Put("PasswordExpired", 1);
  user.put_AccountDisabled(true);
  user.SetInfo();
  user.put_Description("");
  user.SetInfo();
  const auto group = domain->Create("Group", "Readers");
  group->SetInfo();
  group->Add(user.ADsPath());
  const auto read = get_account(w_, "jo");
  EXPECT_EQ(read->Get("UserFlags").integer() & 2, 2);
  EXPECT_EQ(read->Get("PasswordExpired").integer(), 1);
  EXPECT_EQ(names_of(read->Groups()), "Domain Users;Readers");
  EXPECT_EQ(get_account(w_, "Readers")->Get("groupType").integer(), 2);
}

TEST_F(NtLab, DomainUsersHoldsThoseWhosePrimaryGroupItIs) {
  const std::string names = names_of(get_account(w_, "Domain Users")->Members());
  EXPECT_NE(names.find("tester"), std::string::npos) << names;
  EXPECT_TRUE(get_account(w_, "Domain Users")->IsMember("WinNT://TWK/tester"));
}

}  // namespace
}  // namespace twk::lab
