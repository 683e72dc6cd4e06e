#include "stores/side_tables.hpp"

#include "records/layout.hpp"
#include "support/world.hpp"
#include "windows/load_databases.hpp"
#include "windows/state/form1.hpp"

namespace twk::stores {
namespace {

class SideTablesTest : public test::TestWorld {
 protected:
  /// Rows as "icon:text=value".
  static std::vector<std::string> rows(const controls::ListView& list) {
    std::vector<std::string> out;
    for (std::size_t i = 0; i < list.size(); ++i)
      out.push_back(list.at(i).icon + ":" + list.at(i).text + "=" + list.at(i).sub_items.at(0));
    return out;
  }

  windows::Form1& form1 = session.form1;
};

TEST_F(SideTablesTest, AFreshMailTableHasItsThreeRows) {
  windows::Load_Databases(session);
  EXPECT_EQ(
      get("Mail.dat"),
      "Container,Recipients\r\nTarget-Address,%first%.%last%@mail.example\r\nReplication-Sensitivity,20\r\n");
  EXPECT_EQ(rows(form1.ListView8),
            (std::vector<std::string>{"MAIL:Container=Recipients",
                                      "MAIL:Target-Address=%first%.%last%@mail.example",
                                      "MAIL:Replication-Sensitivity=20"}));
  EXPECT_FALSE(files.exists(database / "W2K.dat"));
  EXPECT_FALSE(files.exists(database / "Site.dat"));
  EXPECT_TRUE(form1.ListView1.empty());
}

TEST_F(SideTablesTest, MailRowsSplitAtTheFirstComma) {
  put("Mail.dat", "a,b,c\r\nno comma\r\n,empty name\nM\xFCller,\x80");
  load_mail_table(session);
  EXPECT_EQ(rows(form1.ListView8),
            (std::vector<std::string>{"MAIL:a=b,c", "MAIL:=empty name", "MAIL:Müller=€"}));
}

TEST_F(SideTablesTest, FiftiethLineOfTheMailTableIsNotReadAndLostWithTheNextWrite) {
  std::string lines = "no row\r\n";
  for (int i = 2; i <= 50; ++i)
    lines += "n" + base::to_text(i) + ",v\r\n";
  put("Mail.dat", lines);
  load_mail_table(session);
  EXPECT_EQ(form1.ListView8.size(), 48U);
  save_mail_table(session);
  EXPECT_EQ(get("Mail.dat"), lines.substr(8, lines.find("n50") - 8));
}

TEST_F(SideTablesTest, DirectoryRowsHaveAKind) {
  put("W2K.dat", "p,title,Dr, med\r\nm,proxy,x\r\nP,big,x\r\nx\r\n\r\np,novalue\r\np,,x\r\n");
  load_w2k_table(session);
  const std::vector<std::string> expected = {"USER:title=Dr, med", "MAIL:proxy=x", "MAIL:big=x", "USER:=x"};
  EXPECT_EQ(rows(form1.ListView7), expected);
  save_w2k_table(session);
  EXPECT_EQ(get("W2K.dat"), "p,title,Dr, med\r\nm,proxy,x\r\nm,big,x\r\np,,x\r\n");
  load_w2k_table(session);
  EXPECT_EQ(rows(form1.ListView7), expected);
}

TEST_F(SideTablesTest, TerminalServerValuesFillTheFixedRows) {
  ASSERT_EQ(form1.ListView9.size(), 13U);
  EXPECT_EQ(form1.ListView9.at(10).text, "End a Dissconnected sessions");
  EXPECT_EQ(form1.ListView9.at(10).key, "s5t");
  put("WTS.dat", "\\\\%server%\\p\r\n\r\nH:\r\n");
  load_wts_table(session);
  EXPECT_EQ(form1.ListView9.at(0).sub_items.at(0), "\\\\%server%\\p");
  EXPECT_EQ(form1.ListView9.at(2).sub_items.at(0), "H:");
  form1.ListView9.set_sub_item(form1.ListView9.at(12), 1, "2 days");
  save_wts_table(session);
  EXPECT_EQ(get("WTS.dat"), "\\\\%server%\\p\r\n\r\nH:\r\n\r\n\r\n\r\n\r\n\r\n\r\n\r\n\r\n\r\n2 days\r\n");
  put("WTS.dat", std::string(100, '\n'));
  load_wts_table(session);
  EXPECT_EQ(form1.ListView9.at(12).sub_items.at(0), "");
}

TEST_F(SideTablesTest, AMissingTableLeavesItsList) {
  form1.ListView7.add({}, "kept", "USER", {"x"});
  load_w2k_table(session);
  EXPECT_EQ(form1.ListView7.size(), 1U);
}

TEST_F(SideTablesTest, ALineBreakInAValueDoesNotBreakTheTable) {
  form1.ListView8.add({}, "a", "MAIL", {"b\r\nc"});
  save_mail_table(session);
  EXPECT_EQ(get("Mail.dat"), "a,b<U+000D><U+000A>c\r\n");
}

TEST_F(SideTablesTest, PermissionsAreWrittenWholeAndReadBack) {
  const std::vector<records::PermissionRecord> records = {
      {true, "Administrators", "Full Control", "Administrators"}, {false, "%UserName%", "Change", ""}};
  write_permissions(session, kPermissionFile, records);
  EXPECT_EQ(test::dump_records("permission", database / "Permissions.dat"),
            "NewSecurity=-1|Account=Administrators|Access=Full Control|Owner=Administrators\n"
            "Account=%UserName%|Access=Change\n");
  EXPECT_EQ(read_permissions(session, kPermissionFile), records);
  write_permissions(session, kPermissionFile, std::span(records).first(1));
  EXPECT_EQ(read_permissions(session, kPermissionFile).size(), 1U);
  write_permissions(session, kPermissionFile, {});
  EXPECT_TRUE(read_permissions(session, kPermissionFile).empty());
}

TEST_F(SideTablesTest, AShareAlwaysHasAnEntryUnderEitherNameOfItsFile) {
  write_permissions(session, "SharePerm.dat", {});
  EXPECT_EQ(read_permissions(session, "Shareperm.dat"),
            (std::vector<records::PermissionRecord>{{false, "Everyone", "Full Control", ""}}));
  const std::vector<records::PermissionRecord> one = {{false, "Users", "Read", ""}};
  write_permissions(session, "Shareperm.dat", one);
  EXPECT_EQ(read_permissions(session, "SharePerm.dat"), one);
  EXPECT_EQ(files.list(database.path().string()).size(), 1U);
}

TEST_F(SideTablesTest, AFullDiskKeepsTheOldPermissions) {
  const std::vector<records::PermissionRecord> old = {{false, "Users", "Read", ""}};
  write_permissions(session, kPermissionFile, old);
  files.fail_from(1, base::error::kDiskFull);
  EXPECT_THROW(write_permissions(session, kPermissionFile, {}), base::RuntimeError);
  files.fail_from(0, 0);
  EXPECT_EQ(read_permissions(session, kPermissionFile), old);
}

TEST_F(SideTablesTest, LoadingReadsEverythingAndReportsWhatItCannot) {
  ASSERT_TRUE(test::make_records("site", database / "Site.dat", "Name=Berlin|NTServer=FS\n"));
  test::put_file(database / "Template.dat", records::encode_template({}));
  put("Mail.dat", "a,b\r\n");
  put("W2K.dat", "p,a,b\r\n");
  windows::Load_Databases(session);
  windows::Load_Databases(session);
  EXPECT_EQ(form1.ListView8.size(), 1U);
  EXPECT_EQ(form1.ListView7.size(), 1U);
  EXPECT_EQ(form1.templatelst.items().size(), 2U);
  EXPECT_TRUE(form1.ListView1.empty());
  files.fail_from(1, base::error::kPermissionDenied);
  windows::Load_Databases(session);
  EXPECT_EQ(form1.ListView1.size(), 3U);
  EXPECT_EQ(form1.ListView8.size(), 1U);
}

}  // namespace
}  // namespace twk::stores
