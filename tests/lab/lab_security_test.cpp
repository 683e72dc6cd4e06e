#include <fstream>

#include "lab_world.hpp"

namespace twk::lab {
namespace {

using contract::make_user;
using contract::number_of;
namespace information = platform::security_information;
namespace security_error = platform::security_error;

constexpr const char* kUsers = "\\\\FS1\\D$\\Users";

class LabSecurityTest : public testing::Test {
 protected:
  /// Puts records into "server.ldif" and opens the lab again.
  void add_server_records(const std::string& records) {
    std::ofstream(w_.folder() / "servers/FS1/server.ldif", std::ios::app) << records;
    w_.reopen();
  }
  void write_list(const std::string& path, const platform::Ace& ace) {
    w_.security().SetFileSecurity(path, information::kDacl, test::with_list({ace}));
  }
  platform::SecurityDescriptor descriptor_of(const std::string& path) {
    return w_.security().GetFileSecurity(path, information::kOwner | information::kDacl, 4000);
  }
  void share(const std::string& name, const std::string& path) {
    w_.network().NetShareAdd("FS1", contract::share_of(name, path));
  }

  test::LabWorld w_;
  const platform::Ace users_read_{platform::ace_type::kAllow, 3, 0x1200A9, platform::well_known::users()};
};

TEST_F(LabSecurityTest, ServerOutsideTheDomainKnowsOnlyItsOwnAccounts) {
  add_server_records(
      "dn: CN=Server\nobjectClass: fileServer\ndomainMember: FALSE\n\n"
      "dn: CN=Scanner,CN=Accounts\nobjectClass: serverAccount\nobjectSid: S-1-5-21-1-2-3-1001\n\n");
  platform::Security& security = w_.security();
  const auto scanner = security.LookupAccountName("FS1", "fs1\\scanner");
  EXPECT_EQ(scanner.sid.text(), "S-1-5-21-1-2-3-1001");
  EXPECT_EQ(scanner.domain, "FS1");
  EXPECT_EQ(security.LookupAccountSid("FS1", scanner.sid), "FS1\\Scanner");
  EXPECT_EQ(number_of([&] { security.LookupAccountName("FS1", "Administrator"); }),
            security_error::kNoneMapped);
  EXPECT_EQ(number_of([&] { security.LookupAccountName("DC1", "Scanner"); }), security_error::kNoneMapped);
  EXPECT_EQ(security.LookupAccountName("FS1", "System").sid, platform::well_known::local_system());
}

TEST_F(LabSecurityTest, PrivilegeThatTheTokenDoesNotHoldIsRefused) {
  w_.configure("privileges = SeBackupPrivilege\n");
  platform::Security& security = w_.security();
  const auto token = security.OpenProcessToken();
  token->AdjustTokenPrivileges(security.LookupPrivilegeValue("sebackupprivilege"), true);
  EXPECT_EQ(number_of([&] {
              token->AdjustTokenPrivileges(security.LookupPrivilegeValue("SeRestorePrivilege"), true);
            }),
            security_error::kNotAllAssigned);
  EXPECT_EQ(number_of([&] { token->AdjustTokenPrivileges(99, true); }), security_error::kNotAllAssigned);
}

TEST_F(LabSecurityTest, OrdinaryLogonMayDoWhatTheListsSay) {
  make_user(w_, "Jo Smith", "jsmith");
  w_.files().make_directory(std::string(kUsers) + "\\drop");
  write_list(std::string(kUsers) + "\\drop",
             {platform::ace_type::kAllow, 3, 0x1301BF, w_.security().LookupAccountName({}, "jsmith").sid});
  w_.configure("logon = TWK\\jsmith\n");
  platform::Files& files = w_.files();
  EXPECT_EQ(number_of([&] { files.make_directory(std::string(kUsers) + "\\mine"); }),
            base::error::kPermissionDenied);
  EXPECT_TRUE(files.list(kUsers).size() == 1U);
  files.make_directory(std::string(kUsers) + "\\drop\\mine");
  EXPECT_EQ(descriptor_of(std::string(kUsers) + "\\drop\\mine").owner,
            w_.security().LookupAccountName({}, "jsmith").sid);
  EXPECT_EQ(number_of([&] { share("Mine", "D:\\Users\\drop\\mine"); }), security_error::kAccessDenied);
  EXPECT_EQ(number_of([&] { write_list(kUsers, users_read_); }), security_error::kAccessDenied);
}

TEST_F(LabSecurityTest, LogonWithoutAnAccountIsReportedWhenFirstNeeded) {
  w_.configure("logon = nobody\n");
  const auto list = [&] { w_.files().list(kUsers); };
  EXPECT_EQ(number_of(list), security_error::kNoneMapped);
  EXPECT_THAT(test::complaint_of(list), testing::HasSubstr("lab.conf: \"logon\""));
}

TEST_F(LabSecurityTest, LockedFileIsNeitherWrittenNorRemovedNorSecured) {
  const std::string file = std::string(kUsers) + "\\ntuser.dat";
  w_.files().write(file, "hive");
  add_server_records("dn: CN=NTUSER.DAT,CN=Users,CN=D,CN=Folders\nobjectClass: fileObject\nlocked: TRUE\n\n");
  EXPECT_EQ(number_of([&] { write_list(file, users_read_); }), security_error::kSharingViolation);
  EXPECT_EQ(number_of([&] { w_.files().write(file, "other"); }), base::error::kPermissionDenied);
  EXPECT_EQ(number_of([&] { w_.files().remove(file); }), base::error::kPermissionDenied);
  EXPECT_EQ(w_.files().read(file), "hive");
}

TEST_F(LabSecurityTest, DescriptorGoesWithItsFileAndNotToItsSuccessor) {
  platform::Files& files = w_.files();
  const std::string old_file = std::string(kUsers) + "\\old.txt";
  const std::string new_file = std::string(kUsers) + "\\new.txt";
  files.write(old_file, "x");
  const auto fresh = descriptor_of(old_file);
  write_list(old_file, users_read_);
  const auto written = descriptor_of(old_file);
  EXPECT_NE(written, fresh);
  files.rename(old_file, new_file);
  EXPECT_EQ(descriptor_of(new_file), written);
  files.write(old_file, "y");
  EXPECT_EQ(descriptor_of(old_file), fresh);
  files.remove(new_file);
  files.write(new_file, "z");
  EXPECT_EQ(descriptor_of(new_file), fresh);
}

TEST_F(LabSecurityTest, DescriptorsAreSeenByOtherProgramsAndTheNextRun) {
  test::OtherProgram other(w_);
  write_list(kUsers, users_read_);
  share("Homes", "D:\\Users");
  const auto there = other.platform();
  EXPECT_EQ(there.security.GetFileSecurity(kUsers, information::kDacl, 4000).dacl->entries(),
            std::vector{users_read_});
  EXPECT_EQ(there.network.NetShareGetInfo("FS1", "Homes").shi502_path, "D:\\Users");
  EXPECT_EQ(number_of([&] { there.files.remove("\\\\FS1\\D$\\Users"); }), base::error::kPathFileAccess);
  w_.reopen();
  EXPECT_EQ(descriptor_of(kUsers).dacl->entries(), std::vector{users_read_});
}

TEST_F(LabSecurityTest, ListOfAShareHoldsForWhatGoesThroughIt) {
  platform::ShareInfo502 info = contract::share_of("Readable");
  info.shi502_security_descriptor =
      test::with_list({{platform::ace_type::kAllow, 0, 0xA0000000, platform::well_known::everyone()}});
  w_.network().NetShareAdd("FS1", info);
  EXPECT_EQ(number_of([&] { w_.files().make_directory("\\\\FS1\\Readable\\jo"); }),
            base::error::kPermissionDenied);
  w_.files().make_directory("\\\\FS1\\D$\\Users\\jo");
  EXPECT_EQ(w_.files().list("\\\\FS1\\Readable").size(), 1U);
}

TEST_F(LabSecurityTest, RecordsOfSharesWithoutTheirContainerAreRead) {
  add_server_records("dn: CN=Homes,CN=Shares\nobjectClass: fileShare\npath: D:\\Users\nmaxUserCount: 5\n\n");
  EXPECT_EQ(w_.network().NetShareGetInfo("FS1", "homes").shi502_max_uses, 5);
  share("More", "D:\\Profiles");
  EXPECT_EQ(w_.network().NetShareEnum("FS1").size(), 4U);
  w_.network().NetShareDel("FS1", "Homes");
  w_.files().make_directory("\\\\FS1\\D$\\Users\\jo");
  EXPECT_EQ(w_.network().NetShareEnum("FS1").size(), 3U);
}

TEST_F(LabSecurityTest, FolderIsHeldAsLongAsOneOfItsSharesExists) {
  platform::Files& files = w_.files();
  const std::string home = std::string(kUsers) + "\\jo";
  files.make_directory(home);
  share("jo$", "D:\\Users\\jo");
  share("jo2$", "d:\\users\\JO\\");
  const auto is_held = [&](const std::string& path) {
    return number_of([&] { files.rename(path, path + "2", false); }) == base::error::kPathFileAccess;
  };
  EXPECT_TRUE(is_held(home));
  w_.network().NetShareDel("FS1", "jo$");
  EXPECT_TRUE(is_held(home));
  w_.network().NetShareDel("FS1", "jo2$");
  files.make_directory(std::string(kUsers) + "\\j");
  share("other$", "D:\\Users\\j");
  EXPECT_FALSE(is_held(home));
}

TEST_F(LabSecurityTest, DamagedDescriptorIsReportedByNumber) {
  add_server_records(
      "dn: CN=Users,CN=D,CN=Folders\nobjectClass: fileObject\nnTSecurityDescriptor:: AQAEgP//\n\n");
  EXPECT_EQ(number_of([&] { descriptor_of(kUsers); }), security_error::kInvalidDescriptor);
}

TEST_F(LabSecurityTest, LogonServerIsTheController) {
  EXPECT_EQ(w_.platform().environment.variable("LOGONSERVER"), "\\\\DC1");
}

}  // namespace
}  // namespace twk::lab
