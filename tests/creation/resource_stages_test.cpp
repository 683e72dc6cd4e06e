#include "resources/file_permission.hpp"
#include "stores/side_tables.hpp"
#include "support/lab_session.hpp"
#include "windows/create_user.hpp"
#include "windows/import.hpp"
#include "windows/state/form1.hpp"

namespace twk::creation {
namespace {

using lab::DomainKind;
using records::PermissionRecord;
using test::LabSession;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

const std::string kHome = "\\\\FS1\\D$\\Users\\Jo.Smith";
const std::string kProfile = "\\\\FS1\\D$\\Profiles\\Jo.Smith";

/// Jo Smith is created with shares and permissions on.
class ResourceStages : public testing::TestWithParam<DomainKind> {
 protected:
  ResourceStages() : world(GetParam()) {
    world.set("UM", "CreateShares", "Yes");
    world.set("UM", "SetPermissions", "Yes");
    world.staff.ProfileShare = "%UserName%.prf$";
    world.staff.HomeShare = " %UserName%$ ";
  }

  void table(std::string_view file, const std::vector<PermissionRecord>& rows) {
    stores::write_permissions(world.session, file, rows);
  }
  void create() {
    if (!started) {
      // The tables are where the session will read them.
      world.start();
      started = true;
    }
    table("Permissions.dat", permissions);
    table("SharePerm.dat", share_permissions);
    if (before_creation)
      before_creation();
    world.type_names("Jo", "", "Smith");
    windows::CreateUser_Click(world.session);
  }
  void expect_light(const controls::Label& light, std::int32_t colour, const char* caption) {
    EXPECT_EQ(light.colour.get(), colour);
    EXPECT_EQ(light.caption.get(), caption);
  }
  void expect_lights(std::int32_t shares, std::int32_t security) {
    expect_light(world.session.form1.Sharedirs, shares, shares == controls::kRed ? "Error" : "Completed");
    expect_light(world.session.form1.Security, security, security == controls::kRed ? "Error" : "Completed");
  }
  void expect_yellow_for(const std::string& reason) {
    EXPECT_THAT(world.log_tab(),
                ElementsAre(testing::AllOf(testing::StartsWith("YELLOW Jo.Smith Created User - "),
                                           HasSubstr(reason))));
  }
  platform::Sid sid(std::string_view account) {
    return world.services.security.LookupAccountName("", account).sid;
  }
  /// "flags mask account", preceded by "deny" if it denies.
  std::vector<std::string> list_of(const std::optional<platform::Acl>& list) {
    std::vector<std::string> entries;
    for (const platform::Ace& ace : list.value().entries()) {
      entries.push_back((ace.type() == platform::ace_type::kDeny ? "deny " : "") +
                        base::to_text(ace.flags()) + " " + base::to_hex(ace.mask()) + " " +
                        world.services.security.LookupAccountSid("", *ace.sid()));
    }
    return entries;
  }
  platform::SecurityDescriptor descriptor(const std::string& path) {
    return world.services.security.GetFileSecurity(path, 5, 65536);
  }
  platform::ShareInfo502 share(std::string_view name) {
    return world.services.network.NetShareGetInfo("FS1", name);
  }

  LabSession world;
  bool started = false;
  std::function<void()> before_creation;
  std::vector<PermissionRecord> permissions = {
      {true, "%Domain%\\Domain Admins", "Full Control", "%UserName%"},
      {false, "%Domain%\\%UserName%", "Change", ""}};
  std::vector<PermissionRecord> share_permissions = {{false, "%UserName%", "Change", ""},
                                                     {false, "Everyone", "Read", ""}};
};
INSTANTIATE_TEST_SUITE_P(Kinds, ResourceStages, testing::Values(DomainKind::kNative, DomainKind::kNt),
                         test::kind_name);

TEST_P(ResourceStages, AServerThatWouldRefuseTheSharesIsToldBeforeAnythingIsMade) {
  world.network.server_of_others = "FS1";
  create();
  EXPECT_THAT(world.log_tab(), ElementsAre(testing::StartsWith("RED ")));
  EXPECT_THAT(world.log(), HasSubstr("others' business"));
  const std::string file = (world.folder.path() / "two.csv").string();
  world.services.files.write(file, "Ann,,Lee\nKim,,Ray\n");
  EXPECT_FALSE(windows::Import_File(world.session, file));
  EXPECT_THAT(world.session.import.failure, HasSubstr("others' business"));
  EXPECT_EQ(world.database_file("Import.err"), "");
  for (const char* const name : {"Jo.Smith", "Ann.Lee", "Kim.Ray"})
    EXPECT_FALSE(world.services.files.exists(std::string("\\\\FS1\\D$\\Users\\") + name)) << name;
  base::Trap trap;
  EXPECT_FALSE(trap([&] { sid("Jo.Smith"); }));
}

TEST_P(ResourceStages, DirectoriesAreSharedAndGetTheListsOfTheTables) {
  create();
  EXPECT_THAT(world.log_tab(), ElementsAre("GREEN Jo.Smith Created User "));
  expect_lights(controls::kBlue, controls::kBlue);
  const std::vector<std::string> wanted = {"2 0x001301BF TWK\\Jo.Smith", "9 0x001301BF TWK\\Jo.Smith",
                                           "2 0x001F01FF TWK\\Domain Admins",
                                           "9 0x001F01FF TWK\\Domain Admins"};
  for (const std::string& folder : {kHome, kProfile}) {
    std::vector<std::string> list = list_of(descriptor(folder).dacl);
    std::erase_if(list, [](const std::string& entry) { return entry.find("SYSTEM") != base::npos; });
    EXPECT_EQ(list, wanted);
    EXPECT_EQ(descriptor(folder).owner, sid("Jo.Smith"));
  }
  EXPECT_EQ(share("Jo.Smith$").shi502_path, "D:\\Users\\Jo.Smith");
  EXPECT_EQ(share("Jo.Smith$").shi502_remark, "Users Home Share");
  EXPECT_EQ(share("Jo.Smith.prf$").shi502_path, "D:\\Profiles\\Jo.Smith");
  EXPECT_EQ(share("Jo.Smith.prf$").shi502_remark, "Users Profile Share");
  EXPECT_THAT(list_of(share("Jo.Smith$").shi502_security_descriptor->dacl),
              ElementsAre("0 0xE0010000 TWK\\Jo.Smith", "0 0xA0000000 Everyone"));
  EXPECT_THAT(world.log(), HasSubstr("Creating Shares: \\\\FS1\\Jo.Smith.prf$\n"
                                     "Creating Shares: \\\\FS1\\Jo.Smith$\n"
                                     "Setting Permissions on " +
                                     kHome + "\nSet Permissions for "));
  EXPECT_THAT(world.log(), HasSubstr("Setting Owner of Folder " + kProfile +
                                     " to Jo.Smith\nSet Directory Permissions OK\nUser Created.\n"));
}

TEST_P(ResourceStages, BlankShareNamesMakeNoShareAndNeedNoTable) {
  world.staff.ProfileShare = "  ";
  world.staff.HomeShare = "";
  before_creation = [&] { std::filesystem::remove(world.folder.path() / "db/SharePerm.dat"); };
  create();
  EXPECT_THAT(world.log_tab(), ElementsAre("GREEN Jo.Smith Created User "));
  expect_lights(controls::kBlue, controls::kBlue);
  EXPECT_THAT(world.log(), Not(HasSubstr("Shares")));
}

TEST_P(ResourceStages, WithoutAShareTableTheSharesAreOpenAndTheRunIsYellow) {
  before_creation = [&] { test::put_file(world.folder / "db/SharePerm.dat", ""); };
  create();
  expect_yellow_for("everyone gets full control");
  expect_lights(controls::kYellow, controls::kBlue);
  EXPECT_THAT(list_of(share("Jo.Smith$").shi502_security_descriptor->dacl),
              ElementsAre("0 0x10000000 Everyone"));
  EXPECT_THAT(world.log(), HasSubstr("Error Creating Share Security: \\\\FS1\\Jo.Smith.prf$\n"
                                     "Error Creating Shares Security: \\\\FS1\\Jo.Smith$\n"
                                     "Check Security permissions for Shares for invaild name\n"));
}

TEST_P(ResourceStages, ADeletedAccountIsLeftOutOfTheShareList) {
  create();
  const auto whole = list_of(share("Jo.Smith$").shi502_security_descriptor->dacl);
  share_permissions.push_back({false, "left long ago", "Read", ""});
  world.type_names("Al", "", "Smith");
  table("SharePerm.dat", share_permissions);
  windows::CreateUser_Click(world.session);
  EXPECT_THAT(world.log_tab().back(), HasSubstr("not found: left long ago, which gets no access"));
  expect_lights(controls::kYellow, controls::kBlue);
  EXPECT_EQ(list_of(share("Al.Smith$").shi502_security_descriptor->dacl).size(), whole.size());
  EXPECT_THAT(world.log(), HasSubstr("Error looking up Account: left long ago\n"));
}

TEST_P(ResourceStages, AShareNameInUseIsRedAndTheRunContinuesWithPermissions) {
  before_creation = [&] {
    platform::ShareInfo502 taken;
    taken.shi502_netname = "jo.smith$";
    taken.shi502_path = "D:\\Users";
    world.services.network.NetShareAdd("FS1", taken);
  };
  create();
  expect_yellow_for("Share Jo.Smith$ was not made: ");
  expect_lights(controls::kRed, controls::kBlue);
  EXPECT_THAT(world.log(), HasSubstr("NetShareSetInfo failed with error code : 2118\n"
                                     "Error Creating Shares: \\\\FS1\\Jo.Smith$\n"
                                     "Setting Permissions on "));
  EXPECT_THAT(world.log(), Not(HasSubstr("Shares: \\\\FS1\\Jo.Smith.prf$\n"))) << "that one was made";
  EXPECT_EQ(share("Jo.Smith.prf$").shi502_path, "D:\\Profiles\\Jo.Smith");
}

TEST_P(ResourceStages, AnUnknownAccountInARowIsYellowUnderABlueLight) {
  permissions.push_back({false, "nobody", "Read", ""});
  create();
  expect_yellow_for("nobody on ");
  expect_lights(controls::kBlue, controls::kBlue);
  EXPECT_THAT(world.log(), HasSubstr("Failed to set Permissions for nobody\n"));
  EXPECT_THAT(world.log(), HasSubstr("Set Directory Permissions OK\n"));
}

TEST_P(ResourceStages, WithoutAPermissionTableTheLightIsRed) {
  before_creation = [&] { std::filesystem::remove(world.folder.path() / "db/Permissions.dat"); };
  create();
  expect_yellow_for(
      "Security Failed for D:\\Users\\Jo.Smith; Security Failed for D:\\Profiles\\Jo.Smith; No Users found "
      "in permissions file");
  expect_lights(controls::kBlue, controls::kRed);
  EXPECT_THAT(world.log(), HasSubstr("No Users found in permissions file\n"
                                     "Security Failed for D:\\Users\\Jo.Smith\n"
                                     "No Users found in permissions file\n"
                                     "Security Failed for D:\\Profiles\\Jo.Smith\nUser Created.\n"));
}

TEST_P(ResourceStages, WithoutDirectoriesThereIsNothingToSecure) {
  world.staff.HomeDirPath = world.staff.ProfileDirPath = "";
  world.staff.ProfileShare = world.staff.HomeShare = "";
  permissions.clear();
  create();
  EXPECT_THAT(world.log_tab(), ElementsAre("GREEN Jo.Smith Created User "));
  expect_lights(controls::kBlue, controls::kBlue);
  EXPECT_THAT(world.log(), Not(HasSubstr("Permissions")));
}

TEST_P(ResourceStages, AnAccountThatIsNotMadeStillGetsTheStagesForTheTypedName) {
  world.set("UM", "UserAccount", "No");
  create();
  expect_yellow_for("not found: Jo.Smith, which gets no access");
  expect_lights(controls::kYellow, controls::kBlue);
  EXPECT_THAT(world.log(), HasSubstr("Failed to set Permissions for "));
  EXPECT_THAT(world.log(), HasSubstr("Setting Owner failed\n"));
}

}  // namespace
}  // namespace twk::creation
