#include "batch/import_checks.hpp"

#include "stores/side_tables.hpp"
#include "support/lab_session.hpp"
#include "windows/create_user.hpp"

namespace twk::batch {
namespace {

using test::LabSession;
using testing::HasSubstr;

/// A lab in which all that an import needs is there.
class SoundLab : public LabSession {
 public:
  explicit SoundLab(const std::function<void(SoundLab&)>& spoil = {}) {
    for (const char* const stage : {"CreateShares", "SetPermissions", "MailAccount"})
      set("UM", stage, "Yes");
    staff.HomeShare = "%UserName%$";
    site.ExchangeServer = "EX55";
    site.ExchangeOrg = "Tarnwick";
    site.ExchangeSite = "Head Office";
    for (const char* const table : {"Permissions.dat", "SharePerm.dat"})
      write_rows(table, {{false, "%UserName%", "Full Control", ""}, {false, "Readers", "Read", ""}});
    services.files.write(session.program_directory + "\\Mail.dat", "Container,Recipients\r\n");
    if (spoil)
      spoil(*this);
    start();
  }
  void write_rows(std::string_view table, const std::vector<records::PermissionRecord>& rows) {
    session.dbpath = session.program_directory + "\\";
    stores::write_permissions(session, table, rows);
  }
  ImportOrder order() {
    ImportOrder order;
    order.user = windows::new_user_request(session);
    return order;
  }
  std::vector<ImportFault> faults() { return check_import(session, order()); }
};

TEST(ImportChecks, AreSilentWhereNothingIsWrong) {
  SoundLab lab;
  for (const ImportFault& fault : lab.faults())
    ADD_FAILURE() << fault.message;
}

TEST(ImportChecks, NameEachFaultAndStopOnlyWhatEveryLineWouldFailOf) {
  const struct {
    const char* subject;
    bool stops;
    const char* message;
    std::function<void(SoundLab&)> spoil;
  } cases[] = {
      {"group", false, "A group of the template Staff, Pupils, does not exist",
       [](SoundLab& lab) { lab.staff.Groups[0] = "Pupils"; }},
      {"group", false, "The primary group of the template Staff, Pupils,",
       [](SoundLab& lab) { lab.staff.PrimaryGroup = "Pupils"; }},
      {"permissions", false, "directory permissions has no row for %UserName%",
       [](SoundLab& lab) {
         lab.write_rows("Permissions.dat", {{false, "Readers", "Read", ""}});
       }},
      {"permissions", false, "share permissions names Pupils, which is not found",
       [](SoundLab& lab) {
         lab.write_rows("SharePerm.dat", {{false, "Pupils", "Read", ""}});
       }},
      {"folder", true, "There is no folder \\\\FS1\\D$\\Homes for those of the users",
       [](SoundLab& lab) { lab.staff.HomeDirPath = "D:\\Homes\\%UserName%"; }},
      {"share", false, "The share homes$ is the same for all users",
       [](SoundLab& lab) { lab.staff.HomeShare = "homes$"; }},
      {"share", false, "The template has the share %UserName%$, but no folder for it",
       [](SoundLab& lab) { lab.staff.HomeDirPath.clear(); }},
      {"mailbox", false, "The place of the mailboxes, LDAP://EX55/CN=Recipients,OU=Nowhere",
       [](SoundLab& lab) { lab.site.ExchangeSite = "Nowhere"; }},
      {"name", true, "gives names with a character that none may hold: *",
       [](SoundLab& lab) { lab.set("Setup", "SetupID", "%first%*"); }},
      {"name", false, "\"pupil\", is the same name for all",
       [](SoundLab& lab) { lab.set("Setup", "SetupID", "pupil"); }},
  };
  for (const auto& one : cases) {
    SoundLab lab(one.spoil);
    const std::vector<ImportFault> faults = lab.faults();
    ASSERT_EQ(faults.size(), 1U) << one.message;
    EXPECT_EQ(faults.front().subject, one.subject);
    EXPECT_EQ(faults.front().stops, one.stops) << one.message;
    EXPECT_THAT(faults.front().message, HasSubstr(one.message));
    EXPECT_FALSE(faults.front().remedy.empty());
  }
}

TEST(ImportChecks, FoldersAboveThoseOfTheUsersAreMade) {
  SoundLab lab([](SoundLab& spoilt) { spoilt.staff.HomeDirPath = "D:\\New\\Homes\\%UserName%"; });
  make_parent_folders(lab.session, lab.order());
  EXPECT_TRUE(lab.services.files.is_directory("\\\\FS1\\D$\\New\\Homes"));
  EXPECT_TRUE(lab.faults().empty());
}

}  // namespace
}  // namespace twk::batch
