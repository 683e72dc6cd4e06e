#include "records/records.hpp"

#include <gtest/gtest.h>

#include "base/errors.hpp"
#include "records/layout.hpp"

namespace twk::records {
namespace {

using test::dump_records;
using test::get_file;
using test::make_records;
using test::put_file;

class RecordsTest : public testing::Test {
 protected:
  test::TemporaryDirectory folder_;
  std::string path_ = folder_ / "records.dat";
};

constexpr std::string_view kSiteLine =
    "Deleted=-1|Exchange2000=-1|Name=Köln|NTServer=FS1|ExchangeServer=EX1|ExchangeOrg=Org|"
    "ExchangeSite=Storage €|MailStore=Store\n";

SiteRecord site() {
  SiteRecord record;
  record.Deleted = true;
  record.Exchange2000 = true;
  record.Name = "Köln";
  record.NTServer = "FS1";
  record.ExchangeServer = "EX1";
  record.ExchangeOrg = "Org";
  record.ExchangeSite = "Storage €";
  record.MailStore = "Store";
  return record;
}

TEST_F(RecordsTest, SiteHasTheLayoutOfItsFile) {
  put_file(path_, encode_site(site()));
  EXPECT_EQ(dump_records("site", path_), kSiteLine);
  ASSERT_TRUE(make_records("site", path_, kSiteLine));
  EXPECT_EQ(decode_site(get_file(path_)), site());
}

TEST_F(RecordsTest, TemplateHasTheLayoutOfItsFile) {
  TemplateRecord record;
  record.GroupCount = 75;
  record.Name = "Büro";
  record.ProfilePath = "profile";
  record.HomeDir = "home";
  record.ProfileDirPath = "profile dir";
  record.HomeDirPath = "home dir";
  record.ProfileShare = "ps";
  record.HomeShare = "hs";
  record.HomeSharePoint = "hp";
  record.ProfileSharePoint = "pp";
  record.LogonScript = "logon.cmd";
  record.HomeDrive = "H:";
  for (std::size_t i = 0; i < platform::kLogonHoursSize; ++i)
    record.LogonHours[i] = static_cast<std::uint8_t>(i * 12);
  record.PrimaryGroup = "Domain Users";
  record.Groups[0] = "first";
  record.Groups[75] = "spare";
  record.VariableNames[1] = "Dept";
  record.VariableNames[50] = "last name";
  record.VariableValues[1] = "Sales";
  record.VariableValues[50] = "last value";
  const std::string line =
      "GroupCount=75|Name=Büro|ProfilePath=profile|HomeDir=home|ProfileDirPath=profile dir|HomeDirPath=home "
      "dir|"
      "ProfileShare=ps|HomeShare=hs|HomeSharePoint=hp|ProfileSharePoint=pp|LogonScript=logon.cmd|HomeDrive=H:"
      "|"
      "LogonHours=000c1824303c4854606c7884909ca8b4c0ccd8e4f0|PrimaryGroup=Domain "
      "Users|Group0=first|Group75=spare|"
      "VariableName1=Dept|VariableName50=last name|VariableValue1=Sales|VariableValue50=last value\n";
  put_file(path_, encode_template(record));
  EXPECT_EQ(dump_records("template", path_), line);
  ASSERT_TRUE(make_records("template", path_, line));
  EXPECT_EQ(decode_template(get_file(path_)), record);
}

TEST_F(RecordsTest, PermissionHasTheLayoutOfItsFile) {
  const PermissionRecord record{true, "Everyone", "Full Control", "Administrators"};
  const std::string line = "NewSecurity=-1|Account=Everyone|Access=Full Control|Owner=Administrators\n";
  put_file(path_, encode_permission(record));
  EXPECT_EQ(dump_records("permission", path_), line);
  ASSERT_TRUE(make_records("permission", path_, line));
  EXPECT_EQ(decode_permission(get_file(path_)), record);
}

TEST_F(RecordsTest, LongTextsAreCutAtTheirCharactersAndForeignOnesRefusedByName) {
  SiteRecord record;
  record.Name = "ÄÖÜäöüÄÖÜäöüÄÖÜäöüÄÖÜ";
  EXPECT_EQ(decode_site(encode_site(record)).Name, "ÄÖÜäöüÄÖÜäöüÄÖÜäöüÄÖ");
  record.NTServer = "Łódź";
  base::Trap trap;
  trap([&] { encode_site(record); });
  EXPECT_EQ(trap.description(), "\"Łódź\" cannot be stored: code page 1252 has no place for Ł (U+0141)");
}

TEST_F(RecordsTest, ShortBytesAreRefused) {
  EXPECT_THROW(decode_site(std::string(kSiteRecordSize - 1, ' ')), base::RuntimeError);
  EXPECT_THROW(decode_template(std::string(kTemplateRecordSize - 1, ' ')), base::RuntimeError);
  EXPECT_THROW(decode_permission({}), base::RuntimeError);
}

TEST_F(RecordsTest, GroupCountBeyondTheSlotsReadsAsTheNearest) {
  TemplateRecord record;
  record.GroupCount = 32000;
  EXPECT_EQ(decode_template(encode_template(record)).GroupCount, 75);
  record.GroupCount = -1;
  EXPECT_EQ(decode_template(encode_template(record)).GroupCount, 0);
}

TEST_F(RecordsTest, WhatASearchLooksAtComesFromTheBytes) {
  TemplateRecord record;
  record.Name = "Büro";
  std::string bytes = encode_template(record);
  EXPECT_FALSE(is_deleted(bytes));
  EXPECT_EQ(listed_template_name(bytes), padded_template_name("Büro"));
  EXPECT_EQ(padded_template_name("Büro"), "Büro" + std::string(21, ' '));
  mark_deleted(bytes);
  EXPECT_TRUE(is_deleted(bytes));
  record.Deleted = true;
  EXPECT_EQ(decode_template(bytes), record);
}

}  // namespace
}  // namespace twk::records
