#include "resources/file_permission.hpp"

#include "resources/resources_world.hpp"

namespace twk::resources {
namespace {

using platform::Acl;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

const std::string kOwnFolder = "\\\\FS1\\D$\\Users\\jo";

class FilePermissionTest : public ResourcesWorld {
 protected:
  FilePermissionTest() { have(list_named("old")); }

  void have(const base::Bytes& list) { security.descriptors[kOwnFolder].set_dacl(Acl::decode(list)); }
  bool set(const FilePermission& permission) {
    return SetFilePermission(session, server, kOwnFolder, permission);
  }
  [[nodiscard]] base::Bytes list() { return security.descriptors[kOwnFolder].dacl->encode(); }

  std::string server = "PDC";
};

TEST_F(FilePermissionTest, EachModeMakesItsListByteForByte) {
  security.accounts.emplace("EVERYONE", platform::well_known::everyone());
  const struct {
    FilePermission permission;
    const char* wanted;
    const char* before = "old";
  } cases[] = {{{.account = "jo", .mode = access_mode::kFullControl}, "full"},
               {{.account = "jo", .mode = access_mode::kChange}, "change"},
               {{.account = "jo", .mode = access_mode::kRead}, "read"},
               {{.account = "jo", .mode = access_mode::kRead}, "read, revision 4", "old, revision 4"},
               {{.account = "jo", .mode = access_mode::kNoAccess}, "no access"},
               {{.account = "jo", .mode = 0}, "full"},
               {{.account = "jo", .mode = 77}, "full"},
               {{.account = "jo", .replaceAll = true}, "System alone kept"},
               {{.account = "everyone", .mode = access_mode::kStripOnly}, "stripped of Everyone"}};
  for (const auto& [permission, wanted, before] : cases) {
    have(list_named(before));
    EXPECT_TRUE(set(permission));
    EXPECT_EQ(list(), list_named(wanted)) << wanted;
  }
}

TEST_F(FilePermissionTest, AFolderWithoutAListGetsAShortOneOfRevisionTwo) {
  // One that is present but null lets everyone do everything.
  for (const bool present : {false, true}) {
    security.descriptors[kOwnFolder] = {};
    security.descriptors[kOwnFolder].dacl_present = present;
    EXPECT_TRUE(set({.account = "jo"}));
    EXPECT_EQ(list(), list_named("absent before"));
  }
}

TEST_F(FilePermissionTest, AnAccountsOldEntriesAreRemovedSoThatASecondRunLeavesTwo) {
  EXPECT_TRUE(set({.account = "jo", .mode = access_mode::kRead}));
  EXPECT_TRUE(set({.account = "jo", .mode = access_mode::kChange}));
  const auto& entries = security.descriptors[kOwnFolder].dacl->entries();
  EXPECT_EQ(entries.size(), 4U);
  EXPECT_EQ(entries[0].mask(), 0x1301BFU);
  EXPECT_EQ(security.descriptors[kOwnFolder].dacl->size(), 48U + 200 + 200)
      << "the room grows with each list";
}

TEST_F(FilePermissionTest, ADenyComesBeforeTheEntryOfSystem) {
  EXPECT_TRUE(set({.account = "jo", .mode = access_mode::kNoAccess, .replaceAll = true}));
  const auto& entries = security.descriptors[kOwnFolder].dacl->entries();
  ASSERT_EQ(entries.size(), 3U);
  EXPECT_EQ(entries[0].type(), platform::ace_type::kDeny);
  EXPECT_EQ(entries[0].flags(), 2);
  EXPECT_EQ(entries[1].flags(), 9);
  EXPECT_EQ(entries[2].sid(), platform::well_known::local_system());
}

TEST_F(FilePermissionTest, OnlyTheListIsReadAndWritten) {
  EXPECT_TRUE(set({.account = "jo"}));
  EXPECT_THAT(security.calls,
              ElementsAre("LookupAccountName PDC System", "LookupAccountName PDC jo",
                          "GetFileSecurity 4 4000 " + kOwnFolder, "SetFileSecurity 4 " + kOwnFolder));
  EXPECT_EQ(log(), "");
}

TEST_F(FilePermissionTest, AListThatCannotBeReadDoesNotPreventAReplacement) {
  const struct {
    std::uint32_t number;
    int refused;  ///< so many reads
    bool replace;
    bool done;
    const char* list;
  } cases[] = {{platform::security_error::kInsufficientBuffer, 3, false, true, "full"},
               {platform::security_error::kInsufficientBuffer, 99, false, false, "old"},
               {platform::security_error::kInsufficientBuffer, 3, true, true, "System alone kept"},
               {platform::security_error::kInsufficientBuffer, 99, true, true, "absent before"},
               {platform::security_error::kAccessDenied, 1, false, false, "old"},
               {platform::security_error::kAccessDenied, 1, true, true, "absent before"},
               {platform::security_error::kInvalidAcl, 1, true, true, "absent before"},
               {platform::security_error::kServerUnavailable, 1, true, false, "old"}};
  for (const auto& one : cases) {
    have(list_named("old"));
    security.before = [&, left = one.refused](std::string_view operation, std::string_view) mutable {
      if (operation == "GetFileSecurity" && left-- > 0)
        throw base::RuntimeError(one.number, "unreadable");
    };
    EXPECT_EQ(set({.account = "jo", .replaceAll = one.replace}), one.done) << one.number;
    EXPECT_EQ(list(), list_named(one.list)) << one.number;
  }
}

TEST_F(FilePermissionTest, AnAccountThatTheServerDoesNotKnowIsAskedForElsewhere) {
  for (const std::int32_t mode : {session::kWinNtMode, session::kNativeMode, session::kMixedMode}) {
    const std::string other = mode == session::kWinNtMode ? "DC2" : "dc1.twk.test";
    session.DirectoryMode = mode;
    security.calls.clear();
    server = "PDC";
    fail_at("LookupAccountName", 2, platform::security_error::kNoneMapped);
    EXPECT_TRUE(set({.account = "jo"}));
    EXPECT_EQ(server, other);
    EXPECT_THAT(calls("LookupAccountName"),
                ElementsAre("LookupAccountName PDC System", "LookupAccountName PDC jo",
                            "LookupAccountName " + other + " jo"));
  }
}

TEST_F(FilePermissionTest, WithoutALogonServerTheWorkstationIsAsked) {
  for (const std::string logon_server : {"", "\\", "\\\\"}) {
    environment.variables["LOGONSERVER"] = logon_server;
    server = "PDC";
    EXPECT_FALSE(set({.account = "nobody"}));
    EXPECT_EQ(server, "");
  }
}

TEST_F(FilePermissionTest, AFailedLookUpIsReportedWithoutTheDebugSwitch) {
  EXPECT_FALSE(set({.account = "nobody"}));
  EXPECT_EQ(log(), "Server:DC2 Account:nobody Domain:twk.test\nnobody on " + kOwnFolder +
                       ": nobody is called so (no account has that name; check its spelling, or put the "
                       "domain before it)\n");
  EXPECT_THAT(calls("GetFileSecurity"), IsEmpty());

  security.accounts.erase("SYSTEM");
  EXPECT_FALSE(set({.account = "jo"}));
  EXPECT_THAT(log(), HasSubstr("Error from Permissions:\nServer:DC2 Account:jo Domain:twk.test\n"));
}

class FilePermissionInDebug : public FilePermissionTest {
 protected:
  FilePermissionInDebug() { session.command_line = "/debug"; }
};

TEST_F(FilePermissionInDebug, TheStepsAreLogged) {
  EXPECT_TRUE(set({.account = "jo"}));
  EXPECT_EQ(log(),
            "Account lookups done.\nGet Security Descriptor.\nCreate new ACL\nAdd in ACE\nWrite D-ACL\n");
}

TEST_F(FilePermissionInDebug, AFailureIsLoggedWithItsStepNumberAndText) {
  struct Case {
    std::string operation;
    int call;
    std::string step;
  };
  for (const Case& one :
       {Case{"LookupAccountName", 1, "LookupAccountName - 1"}, Case{"GetFileSecurity", 1, "GetFileSecurity"},
        Case{"SetFileSecurity", 1, "SetFileSecurity"}}) {
    fail_at(one.operation, one.call, platform::security_error::kAccessDenied);
    EXPECT_FALSE(set({.account = "jo"})) << one.operation;
    EXPECT_THAT(log(), HasSubstr("Error: " + one.step + "\nCode: 5\nDesc: refused by the test: "));
  }
  EXPECT_EQ(list(), list_named("old"));
  security.before = nullptr;
  EXPECT_FALSE(set({.account = "nobody"}));
  EXPECT_THAT(log(), HasSubstr("or put the domain before it)\nError: LookupAccountName - 2\nCode: 1332\n"));
}

TEST_F(FilePermissionInDebug, AListThatCannotGrowIsAFailure) {
  security.descriptors[kOwnFolder].set_dacl(Acl(65500));
  EXPECT_FALSE(set({.account = "jo"}));
  EXPECT_THAT(log(), HasSubstr("Error: InitializeAcl\nCode: 1336\n"));
  EXPECT_THAT(calls("SetFileSecurity"), IsEmpty());
}

TEST(AccessWord, IsExactInCase) {
  EXPECT_EQ(mode_of_access_word("Full Control"), access_mode::kFullControl);
  EXPECT_EQ(mode_of_access_word("No Access"), access_mode::kNoAccess);
  for (const std::string_view word : {"full control", " Read", "", "Write"})
    EXPECT_EQ(mode_of_access_word(word), std::nullopt) << word;
}

}  // namespace
}  // namespace twk::resources
