#include "resources/share502.hpp"

#include "resources/resources_world.hpp"
#include "resources/share_descriptor.hpp"
#include "support/access_list.hpp"

namespace twk::resources {
namespace {

using platform::Ace;
using platform::SecurityDescriptor;
using testing::ElementsAre;
using testing::IsEmpty;

class ShareTest : public ResourcesWorld {
 protected:
  void rows(const std::vector<records::PermissionRecord>& rows) { table("SharePerm.dat", rows); }
  ShareResult create() {
    return CreateShare(session, "FS1", "jo$", "D:\\Users\\jo", "Users Home Share", "jo");
  }
  [[nodiscard]] const platform::ShareInfo502& made() const { return network.shares.back().second; }
  [[nodiscard]] base::Bytes list() const { return made().shi502_security_descriptor->dacl->encode(); }
};

TEST_F(ShareTest, AShareHasTheListOfTheTableByteForByte) {
  rows({{false, "Administrators", "full control", ""},
        {false, "%UserName%", " Change ", ""},
        {false, "everyone", "READ", ""}});
  EXPECT_EQ(create(), ShareResult::kMade);
  EXPECT_EQ(network.shares.back().first, "FS1");
  EXPECT_EQ(made().shi502_netname, "jo$");
  EXPECT_EQ(made().shi502_type, 0U);
  EXPECT_EQ(made().shi502_remark, "Users Home Share");
  EXPECT_EQ(made().shi502_permissions, 1U);
  EXPECT_EQ(made().shi502_max_uses, -1);
  EXPECT_EQ(made().shi502_current_uses, 0U);
  EXPECT_EQ(made().shi502_path, "D:\\Users\\jo");
  EXPECT_EQ(made().shi502_passwd, "");
  EXPECT_EQ(list(), list_named("share of the table"));
  EXPECT_THAT(calls("Lookup"),
              ElementsAre("LookupAccountName DC1 Administrators", "LookupAccountName DC1 jo"))
      << "Everyone is known";
  EXPECT_EQ(log(), "");
}

TEST_F(ShareTest, AnUnknownWordMeansTheSameAsTheRowBefore) {
  rows({{false, "jo", "Write", ""}, {false, "jo", "Change", ""}, {false, "staff", "No Access", ""}});
  EXPECT_EQ(create(), ShareResult::kMade);
  std::vector<std::uint32_t> masks;
  for (const Ace& ace : made().shi502_security_descriptor->dacl->entries())
    masks.push_back(ace.mask());
  EXPECT_THAT(masks, ElementsAre(0, 0xE0010000, 0xE0010000));
}

TEST_F(ShareTest, WithoutATableEveryoneGetsFullControl) {
  EXPECT_EQ(create(), ShareResult::kFallbackList) << "no file";
  EXPECT_EQ(list(), list_named("share for everybody"));
  test::put_file(database / "SharePerm.dat", "");
  EXPECT_EQ(create(), ShareResult::kFallbackList);
  EXPECT_EQ(list(), list_named("share for everybody"));
  EXPECT_THAT(security.calls, IsEmpty());
}

TEST_F(ShareTest, AListThatCannotBeMadeWholeIsNeverWiderThanAsked) {
  const records::PermissionRecord jo = {false, "%UserName%", "Read", ""};
  const records::PermissionRecord staff = {false, "staff", "Change", ""};
  const records::PermissionRecord all = {false, "everyone", "Read", ""};
  const records::PermissionRecord gone = {false, "nobody", "Change", ""};
  const struct {
    std::vector<records::PermissionRecord> rows;
    ShareResult result;
    std::size_t entries;  ///< 0 for no share
    const char* reason;
  } cases[] = {
      {{jo, gone}, ShareResult::kFallbackList, 1, "not found: nobody, which gets no access"},
      {{gone, all, gone}, ShareResult::kFallbackList, 1, "not found: nobody, nobody, which"},
      {{gone, staff, jo}, ShareResult::kFallbackList, 2, "nobody"},
      {{gone}, ShareResult::kFailed, 0, "no row is left that gives jo access"},
      {{staff, gone}, ShareResult::kFailed, 0, "no row is left that gives jo access"},
      {std::vector<records::PermissionRecord>(2000, jo), ShareResult::kFailed, 0, "too long"},
  };
  for (const auto& one : cases) {
    rows(one.rows);
    network.shares.clear();
    EXPECT_EQ(create(), one.result) << one.reason;
    ASSERT_EQ(network.shares.size(), one.entries == 0 ? 0U : 1U) << one.reason;
    if (one.entries > 0) {
      EXPECT_EQ(made().shi502_security_descriptor->dacl->entries().size(), one.entries);
    }
    EXPECT_THAT(session.log.take_reasons(), ElementsAre(testing::HasSubstr(one.reason)));
  }
  EXPECT_THAT(log(),
              testing::StartsWith("Could not get SID from: DC1\nWill Use server DC2 to lookup account\n"
                                  "Error looking up Account: nobody\n"));
  files.fail_from(1, base::error::kPathFileAccess);
  EXPECT_EQ(create(), ShareResult::kFailed) << "a file that cannot be read";
}

TEST_F(ShareTest, AnotherServerIsAskedWhenTheFirstDoesNotAnswer) {
  rows({{false, "jo", "Change", ""}});
  for (const std::int32_t mode : {session::kWinNtMode, session::kNativeMode, session::kMixedMode}) {
    const bool is_nt = mode == session::kWinNtMode;
    session.DirectoryMode = mode;
    security.calls.clear();
    fail_at("LookupAccountName", 1, platform::security_error::kServerUnavailable);
    EXPECT_EQ(create(), ShareResult::kMade);
    EXPECT_THAT(calls("Lookup"),
                ElementsAre(is_nt ? "LookupAccountName DC1 jo" : "LookupAccountName  jo",
                            is_nt ? "LookupAccountName DC2 jo" : "LookupAccountName dc1.twk.test jo"));
  }
  security.before = [](std::string_view, std::string_view) {
    throw base::RuntimeError(platform::security_error::kServerUnavailable, "down");
  };
  EXPECT_EQ(create(), ShareResult::kFailed);
  EXPECT_THAT(log(), testing::HasSubstr("Error Getting SID from: dc1.twk.test\n"));
}

TEST_F(ShareTest, WithoutAControllerTheWorkstationIsAsked) {
  network.controller.clear();
  rows({{false, "jo", "Change", ""}});
  EXPECT_EQ(create(), ShareResult::kMade);
  EXPECT_THAT(calls("Lookup"), ElementsAre("LookupAccountName  jo"));
}

TEST_F(ShareTest, ARefusedShareIsLoggedWithItsNumber) {
  rows({{false, "jo", "Change", ""}});
  network.share_error = platform::network_error::kDuplicateShare;
  EXPECT_EQ(create(), ShareResult::kFailed);
  EXPECT_THAT(log(), testing::EndsWith("NetShareSetInfo failed with error code : 2118\n"));
}

TEST_F(ShareTest, DenyComesFirstAndAnOldListIsMergedAfterIt) {
  const platform::Sid jo = security.accounts.at("JO");
  const SecurityDescriptor before = test::with_list(
      {Ace(0, 0, 0xA0000000, platform::well_known::administrators()),
       Ace(0, platform::ace_flag::kInherited, 1, platform::well_known::users()), Ace(0, 0, 0x10000000, jo)});
  AccessEntry allow;
  allow.account = "jo";
  allow.mask = 0xE0010000;
  AccessEntry deny;
  deny.account = "staff";
  deny.aceType = platform::ace_type::kDeny;
  deny.mask = 0x10000000;
  const auto built = BuildShareDescriptor(session, &before, {allow, deny});
  ASSERT_TRUE(built);
  EXPECT_TRUE(built->dacl_present);
  EXPECT_EQ(built->dacl->encode(), list_named("share merged"));
  EXPECT_EQ(built->owner, std::nullopt);
}

}  // namespace
}  // namespace twk::resources
