#include "resources/directory_permissions.hpp"

#include "resources/resources_world.hpp"

namespace twk::resources {
namespace {

using platform::Acl;
using testing::ElementsAre;
using testing::IsEmpty;

const std::string kFolder = "\\\\FS1\\D$\\Users\\jo";

class DirectoryPermissionsTest : public ResourcesWorld {
 protected:
  DirectoryPermissionsTest() { security.descriptors[kFolder].set_dacl(Acl::decode(list_named("old"))); }

  void rows(const std::vector<records::PermissionRecord>& rows) { table("Permissions.dat", rows); }
  bool apply() { return Set_Permissions(session, server, kFolder, "jo", RunWarning); }
  [[nodiscard]] base::Bytes list() { return security.descriptors[kFolder].dacl->encode(); }
  /// Masks from the front, one of each pair.
  [[nodiscard]] std::vector<std::uint32_t> masks() {
    std::vector<std::uint32_t> found;
    for (const platform::Ace& ace : security.descriptors[kFolder].dacl->entries()) {
      if (ace.flags() == 2)
        found.push_back(ace.mask());
    }
    return found;
  }

  std::string server = "PDC";
  std::int16_t RunWarning = 1;
};

TEST_F(DirectoryPermissionsTest, ARowWithNewSecurityLeavesWhatSystemHasAndTheNewEntries) {
  rows({{true, "%username%", "Full Control", ""}});
  EXPECT_TRUE(apply());
  EXPECT_EQ(list(), list_named("System alone kept"));
  EXPECT_EQ(RunWarning, 1);
  EXPECT_EQ(log(), "Setting Permissions on " + kFolder + "\nSet Permissions for jo\n");
}

TEST_F(DirectoryPermissionsTest, OnlyTheFirstRowReplacesTheList) {
  rows({{false, "jo", "Read", ""}, {true, "staff", "Change", ""}});
  EXPECT_TRUE(apply());
  EXPECT_EQ(security.descriptors[kFolder].dacl->entries().size(), 6U);
  rows({{true, "jo", "Read", ""}, {true, "staff", "Change", ""}});
  EXPECT_TRUE(apply());
  EXPECT_EQ(security.descriptors[kFolder].dacl->entries().size(), 5U);
}

TEST_F(DirectoryPermissionsTest, AnUnknownWordMeansTheSameAsTheRowBefore) {
  security.accounts.emplace("ANN", *platform::Sid::parse("S-1-5-21-1-2-3-1003"));
  rows({{false, "ann", "change", ""}, {false, "jo", " Read ", ""}, {false, "staff", "Write", ""}});
  EXPECT_TRUE(apply());
  EXPECT_THAT(masks(), ElementsAre(0x1200A9, 0x1200A9, 0x1F01FF)) << "the last row comes first";
}

TEST_F(DirectoryPermissionsTest, NamesAreFilledIn) {
  security.accounts.insert({{"TWK.TEST\\JO", security.accounts.at("JO")}});
  rows({{false, "  %DOMAIN%\\%UserName% ", "Read", ""}});
  EXPECT_TRUE(apply());
  EXPECT_EQ(list(), list_named("read"));
}

TEST_F(DirectoryPermissionsTest, AnUnknownAccountWarnsAndTheRowsAfterItCount) {
  rows({{false, "jo", "Read", ""}, {false, "nobody", "Read", ""}, {false, "staff", "Change", ""}});
  EXPECT_TRUE(apply());
  EXPECT_EQ(RunWarning, 2);
  EXPECT_EQ(dialogs.beeps, 1);
  EXPECT_EQ(server, "DC2");
  EXPECT_THAT(masks(), ElementsAre(0x1301BF, 0x1200A9));
  EXPECT_EQ(log(), "Setting Permissions on " + kFolder +
                       "\nSet Permissions for jo\nServer:DC2 Account:nobody Domain:twk.test\nnobody on " +
                       kFolder +
                       ": nobody is called so (no account has that name; check its spelling, or put the "
                       "domain before it)\n"
                       "Failed to set Permissions for nobody\nSet Permissions for staff\n");
}

TEST_F(DirectoryPermissionsTest, TheOwnerOfTheFirstRowIsWrittenLast) {
  security.accounts.insert({{"TWK\\JO", security.accounts.at("JO")}});
  rows({{false, "staff", "Read", " %Domain%\\%username% "}, {false, "staff", "Read", "nobody"}});
  EXPECT_TRUE(apply());
  EXPECT_EQ(security.descriptors[kFolder].owner, security.accounts.at("JO"));
  EXPECT_EQ(calls("SetFileSecurity").back(), "SetFileSecurity 1 " + kFolder);
  EXPECT_THAT(log(), testing::EndsWith("Setting Owner of Folder " + kFolder + " to TWK\\jo\n"));
}

TEST_F(DirectoryPermissionsTest, AnOwnerThatIsRefusedBeepsAndWarns) {
  rows({{false, "jo", "Read", "staff"}});
  fail_at("SetFileSecurity", 2, platform::security_error::kInvalidOwner);
  EXPECT_TRUE(apply());
  EXPECT_EQ(dialogs.beeps, 1);
  EXPECT_EQ(RunWarning, 2);
  EXPECT_THAT(
      session.log.take_reasons(),
      ElementsAre(testing::StartsWith("staff on " + kFolder + ": refused by the test: SetFileSecurity of " +
                                      kFolder + " (that account cannot")));
  EXPECT_THAT(log(), testing::EndsWith("Setting Owner failed\n"));
  EXPECT_EQ(list(), list_named("read"));
}

TEST_F(DirectoryPermissionsTest, WithoutARowNothingIsDone) {
  EXPECT_FALSE(apply()) << "no file";
  test::put_file(database / "Permissions.dat", "");
  EXPECT_FALSE(apply());
  test::put_file(database / "Permissions.dat", std::string(113, ' '));
  EXPECT_FALSE(apply()) << "a part of a row is none";
  EXPECT_THAT(security.calls, IsEmpty());
  EXPECT_EQ(log(),
            "No Users found in permissions file\nNo Users found in permissions file\n"
            "No Users found in permissions file\n");
}

TEST_F(DirectoryPermissionsTest, ATableThatCannotBeReadIsAFailure) {
  rows({{false, "jo", "Read", ""}});
  files.fail_from(1, base::error::kPathFileAccess);
  EXPECT_FALSE(apply());
  EXPECT_THAT(security.calls, IsEmpty());
}

}  // namespace
}  // namespace twk::resources
