#include "directory/operations.hpp"

#include "platform/adsi.hpp"
#include "support/lab_session.hpp"
#include "support/world.hpp"
#include "windows/state/form1.hpp"

namespace twk::directory {
namespace {

using lab::DomainKind;
using test::LabSession;

using Unreachable = test::TestWorld;

TEST_F(Unreachable, ANameWithoutADotIsAWinNtDomainWithoutAskingAnybody) {
  EXPECT_EQ(Determine_Mode(session, "OLDNT"), session::kWinNtMode);
  EXPECT_EQ(session.NTDomainName, "OLDNT");
  EXPECT_THROW(Determine_Mode(session, "twk.test"), base::RuntimeError);
}

TEST_F(Unreachable, APrincipalNameCountsAsFreeWhenNoCatalogueAnswers) {
  EXPECT_FALSE(Is_Name_Used_In_Forest(session, "jo@twk.test"));
}

TEST(DetermineMode, APartitionInAnotherCaseDoesNotNameTheDomain) {
  LabSession world;
  world.session.DomainName = "TWK.test";
  EXPECT_EQ(Determine_Mode(world.session, "TWK.test"), session::kNativeMode);
  EXPECT_EQ(world.session.NTDomainName, "TWK.test");
  world.session.DomainName = "twk.test";
  Determine_Mode(world.session, "twk.test");
  EXPECT_EQ(world.session.NTDomainName, "TWK");
}

TEST(DomainList, HoldsTheDomainsOfTheNetworkAndOfTheForest) {
  LabSession world;
  EXPECT_THAT(Load_Domain_List(world.session), testing::IsSupersetOf({"TWK", "twk.test"}));
}

TEST(PrincipalNames, AreUsedWhenAnyUserOfTheForestHasThem) {
  LabSession world;
  test::store(world.make_user("jo"), {{"userPrincipalName", "jo@twk.test"}});
  EXPECT_TRUE(Is_Name_Used_In_Forest(world.session, "JO@twk.test"));
  EXPECT_FALSE(Is_Name_Used_In_Forest(world.session, "*"));
  EXPECT_FALSE(Is_Name_Used_In_Forest(world.session, "jo@twk.test)(cn=*"));
}

class PasswordReset : public testing::TestWithParam<DomainKind> {};
INSTANTIATE_TEST_SUITE_P(Kinds, PasswordReset, testing::Values(DomainKind::kNative, DomainKind::kNt),
                         test::kind_name);

TEST_P(PasswordReset, SetsThePasswordAndAsksForAnotherAtTheNextLogon) {
  test::StartedLab world(GetParam());
  world.make_user("jo");
  const auto reset = [&](std::string_view password) {
    return world.is_nt() ? Reset_NT_Password(world.session, password, "jo")
                         : Reset_AD_Password(world.session, password, world.path_of("jo").substr(7));
  };
  EXPECT_TRUE(reset("Secret-2026"));
  EXPECT_EQ(world.services.directory.GetObject("WinNT://TWK/jo")->Get("PasswordExpired").integer(), 1);
  EXPECT_NO_THROW(world.services.directory.OpenDSObject(world.path_of("jo"), "jo", "Secret-2026"));
  EXPECT_FALSE(reset("short"));
  world.dialogs.expect_input("Enter User Password:", "Typed-2026");
  EXPECT_TRUE(reset("Prompt"));
  EXPECT_TRUE(world.dialogs.last_secret);
  EXPECT_NO_THROW(world.services.directory.OpenDSObject(world.path_of("jo"), "jo", "Typed-2026"));
}

TEST(GroupIdentifier, IsTheLastPartOfItsSid) {
  test::StartedLab world;
  const std::string key = world.session.form1.ListView5.find_text("Domain Users").front()->key;
  EXPECT_EQ(Group_RID(world.session, key), 513);
  EXPECT_EQ(Group_RID_by_name(world.session, "Domain Users"), 513);
  EXPECT_THROW(Group_RID_by_name(world.session, "nobody"), base::RuntimeError);
  test::StartedLab winnt(DomainKind::kNt);
  EXPECT_EQ(Group_RID(winnt.session, "Domain Users"), 513);
}

}  // namespace
}  // namespace twk::directory
