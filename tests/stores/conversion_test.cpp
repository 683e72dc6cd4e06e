#include "stores/conversion.hpp"

#include "records/old_records.hpp"
#include "records/records.hpp"
#include "support/world.hpp"
#include "windows/state/editor_windows.hpp"
#include "windows/state/form1.hpp"

namespace twk::stores {
namespace {

constexpr const char* kTemplateText =
    "TWK dectected an older version of Template.dat file\r\nThis can cause unpredictable results if used"
    "\r\n\r\nTWK will now convert it to the new format.\r\nYour original file will be renamed Template.v23";
constexpr const char* kSiteText =
    "TWK dectected an older version of Site.dat/Template.dat files\r\nThis can cause unpredictable results "
    "if "
    "used\r\n\r\nTWK will now convert them to the new format.\r\nYour original files will be renamed "
    "Template.v23 & Site.v22";
constexpr const char* kPermissionText =
    "TWK dectected older versions of Permissions.dat & SharePerm.dat file\r\nThis can cause unpredictable "
    "results if used\r\n\r\nTWK will now convert them to the new format.\r\nYour original files will be "
    "renamed with a .v24 extension";

/// An old record: zero words, then a name, then blanks.
std::string old_record(std::string_view name, std::size_t size, bool deleted = false) {
  std::string bytes(deleted ? "\xFF\xFF\0\0" : "\0\0\0\0", 4);
  bytes += name;
  bytes.resize(size, ' ');
  return bytes;
}

class ConversionTest : public test::TestWorld {
 protected:
  [[nodiscard]] std::string directory_name() const { return session.dbpath; }
  /// Old files of every kind for the generation.
  void put_all(records::TemplateGeneration generation) {
    put("Site.dat", old_record("London", records::kOldSiteRecordSize));
    put("Template.dat", old_record("Staff", records::old_template_record_size(generation)));
    put("Permissions.dat", std::string(records::kOldPermissionRecordSize, ' '));
    put("SharePerm.dat", std::string(records::kOldPermissionRecordSize, ' '));
  }

  test::TemporaryDirectory program;
  test::WorkingDirectory working{program.path()};
};

struct Ladder {
  const char* version;
  records::TemplateGeneration generation;
  const char* first_text;  ///< before the one about permissions
};

class VersionLadder : public ConversionTest, public testing::WithParamInterface<Ladder> {};

TEST_P(VersionLadder, ReportsWhatIsOldThenConvertsIt) {
  set("Version", "DBVersion", GetParam().version);
  put_all(GetParam().generation);
  if (GetParam().first_text != nullptr) {
    dialogs.expect(GetParam().first_text);
    dialogs.expect("Conversion Complete");
  }
  dialogs.expect(kPermissionText);
  dialogs.expect("Conversion Complete");
  EXPECT_TRUE(convert_old_database(session));
  EXPECT_EQ(setting("Version", "DBVersion"), "2.4");
  const bool templates = GetParam().first_text != nullptr;
  const bool sites = templates && GetParam().first_text == kSiteText;
  EXPECT_EQ(posix_files.exists(database / "Template.v23"), templates);
  EXPECT_EQ(posix_files.exists(database / "Site.v22"), sites);
  EXPECT_EQ(get("Site.dat").size(), sites ? records::kSiteRecordSize : records::kOldSiteRecordSize);
  EXPECT_EQ(get("Template.dat").size(), templates ? records::kTemplateRecordSize
                                                  : records::old_template_record_size(GetParam().generation));
  EXPECT_EQ(get("SharePerm.dat").size(), records::kPermissionRecordSize);
  EXPECT_EQ(get("Permissions.dat").size(), records::kPermissionRecordSize);
}

INSTANTIATE_TEST_SUITE_P(Versions, VersionLadder,
                         testing::Values(Ladder{"1.3", records::TemplateGeneration::k1, kSiteText},
                                         Ladder{"2.0", records::TemplateGeneration::k20, kTemplateText},
                                         Ladder{"2.1", records::TemplateGeneration::k21, kTemplateText},
                                         Ladder{"2.2", records::TemplateGeneration::k22, kTemplateText},
                                         Ladder{"2.3", records::TemplateGeneration::k22, nullptr}));

TEST_F(ConversionTest, DatabasesOfTodayAndWithoutAVersionAreLeftAlone) {
  for (const char* const version : {"2.4", ""}) {
    set("Version", "DBVersion", version);
    put_all(records::TemplateGeneration::k22);
    EXPECT_FALSE(convert_old_database(session)) << version;
    EXPECT_EQ(get("Site.dat").size(), records::kOldSiteRecordSize);
    EXPECT_EQ(setting("Version", "DBVersion"), version);
  }
}

TEST_F(ConversionTest, AKeptFileOfAnEarlierConversionStopsAtTheRenameAndLosesNothing) {
  set("Version", "DBVersion", "2.2");
  put_all(records::TemplateGeneration::k22);
  const std::string before = get("Template.dat");
  put("Template.v23", "kept");
  dialogs.expect(kTemplateText);
  dialogs.expect("Error renaming template files. File may already exist.");
  EXPECT_THROW(convert_old_database(session), base::RuntimeError);
  EXPECT_EQ(dialogs.last_icon, platform::Icon::kCritical);
  EXPECT_EQ(get("Template.dat"), before);
  EXPECT_EQ(get("Template.v23"), "kept");
  EXPECT_EQ(get("Permissions.dat").size(), records::kOldPermissionRecordSize);
  EXPECT_EQ(setting("Version", "DBVersion"), "2.2");
}

TEST_F(ConversionTest, AFailedSecondStepIsTheFirstOfTheNextStart) {
  set("Version", "DBVersion", "2.2");
  put_all(records::TemplateGeneration::k22);
  put("Permissions.v24", "in the way");
  dialogs.expect(kTemplateText);
  dialogs.expect("Conversion Complete");
  dialogs.expect(kPermissionText);
  dialogs.expect("Error converting Permissions.dat");
  EXPECT_THROW(convert_old_database(session), base::RuntimeError);
  EXPECT_EQ(setting("Version", "DBVersion"), "2.3");
  posix_files.remove(database / "Permissions.v24");
  dialogs.expect(kPermissionText);
  dialogs.expect("Conversion Complete");
  EXPECT_TRUE(convert_old_database(session));
  EXPECT_EQ(get("Permissions.dat").size(), records::kPermissionRecordSize);
  EXPECT_EQ(get("Template.dat").size(), records::kTemplateRecordSize);
}

TEST_F(ConversionTest, AnInterruptedRenamingIsFinished) {
  put_all(records::TemplateGeneration::k1);
  const std::string converted = records::upgrade_site(get("Site.dat"));
  posix_files.rename(database / "Site.dat", database / "Site.v22", false);
  put("Site.new", converted);
  dialogs.expect("Conversion Complete");
  EXPECT_TRUE(Convert(session, directory_name(), conversion::kFrom1));
  EXPECT_EQ(get("Site.dat"), converted);
  EXPECT_FALSE(posix_files.exists(database / "Site.new"));
  EXPECT_EQ(get("Template.dat").size(), records::kTemplateRecordSize);
}

TEST_F(ConversionTest, FilesThatAnotherAdministratorConvertedAreLeftAlone) {
  // As many records as make their bytes whole records of either layout.
  records::PermissionRecord row;
  row.Account = "Everyone";
  std::string permissions;
  for (int i = 0; i < 32; ++i)
    permissions += records::encode_permission(row);
  const std::string site = records::encode_site(records::SiteRecord());
  const std::string templates = records::encode_template(records::TemplateRecord()) +
                                records::encode_template(records::TemplateRecord());
  for (const char* const version : {"1.3", "2.0", "2.1", "2.2", "2.3"}) {
    set("Version", "DBVersion", version);
    put_all(records::TemplateGeneration::k22);
    put("Site.dat", site);
    put("Template.dat", templates + "torn");
    put("Template.v23", "kept");
    put("Permissions.dat", permissions);
    if (version != std::string_view("2.3")) {
      dialogs.expect(*version == '1' ? kSiteText : kTemplateText);
      dialogs.expect("Conversion Complete");
    }
    dialogs.expect(kPermissionText);
    dialogs.expect("Conversion Complete");
    EXPECT_TRUE(convert_old_database(session)) << version;
    EXPECT_EQ(get("Site.dat"), site);
    EXPECT_EQ(get("Template.dat"), templates + "torn");
    EXPECT_EQ(get("Template.v23"), "kept");
    EXPECT_EQ(get("Permissions.dat"), permissions);
    EXPECT_EQ(get("SharePerm.dat").size(), records::kPermissionRecordSize);
    posix_files.remove(database / "SharePerm.v24");
  }
}

TEST_F(ConversionTest, FilesKeepAccessAndLinksAndWhatIsReadOnlyIsRefused) {
  namespace fs = std::filesystem;
  const std::string old_bytes = old_record("Staff", 4324);
  fs::create_directory(database / "real");
  put("real/Template.dat", old_bytes);
  fs::permissions(database / "real/Template.dat", fs::perms(0444));
  fs::create_symlink("real/Template.dat", database / "Template.dat");
  dialogs.expect("Error ");
  EXPECT_FALSE(Convert(session, directory_name(), conversion::kFrom22));
  EXPECT_EQ(get("Template.dat"), old_bytes);
  EXPECT_FALSE(posix_files.exists(database / "Template.v23"));
  fs::permissions(database / "real/Template.dat", fs::perms(0640));
  dialogs.expect("Conversion Complete");
  EXPECT_TRUE(Convert(session, directory_name(), conversion::kFrom22));
  EXPECT_TRUE(fs::is_symlink(database / "Template.dat"));
  EXPECT_EQ(get("real/Template.dat").size(), records::kTemplateRecordSize);
  EXPECT_EQ(fs::status(database / "real/Template.dat").permissions(), fs::perms(0640));
  EXPECT_EQ(get("Template.v23"), old_bytes);
}

TEST_F(ConversionTest, MissingFilesAreReportedAndTheRestIsConverted) {
  dialogs.expect("Can't find " + directory_name() + "Site.dat");
  dialogs.expect("Can't find " + directory_name() + "Template.dat");
  dialogs.expect("Conversion Complete");
  EXPECT_TRUE(Convert(session, directory_name(), conversion::kFrom1));
  EXPECT_EQ(setting("Version", "DBVersion"), "2.4");
  dialogs.expect("Conversion Complete");
  EXPECT_TRUE(Convert(session, directory_name(), conversion::kFrom23));
}

TEST_F(ConversionTest, StrayBytesAreReportedAndDeletedRecordsLeftOut) {
  put("Template.dat", old_record("Gone", 4324, true) + old_record("Staff", 4324) + "stray");
  dialogs.expect("Conversion Complete");
  EXPECT_TRUE(Convert(session, directory_name(), conversion::kFrom22));
  EXPECT_EQ(get("Template.dat").size(), records::kTemplateRecordSize);
  EXPECT_EQ(records::decode_template(get("Template.dat")).Name, "Staff");
  const std::string text = "Template.dat ends in 5 bytes that are not a whole record; they were left out";
  EXPECT_THAT(test::texts(session.form1.ListView1), testing::Contains(testing::HasSubstr(text)));
}

TEST_F(ConversionTest, ConvertLogShowsTheStepsInTheWorkingDirectory) {
  put_all(records::TemplateGeneration::k22);
  dialogs.expect("Conversion Complete");
  ASSERT_TRUE(Convert(session, directory_name(), conversion::kFrom22));
  dialogs.expect("Conversion Complete");
  ASSERT_TRUE(Convert(session, directory_name(), conversion::kFrom23));
  std::string log = test::get_file(program / "Convert.log");
  std::erase(log, '\r');
  EXPECT_TRUE(log.starts_with(std::string(41, '*') + "\n")) << log;
  for (const char* const lines :
       {"\nUser:admin\nOpening Template.new\nOpening Template.dat\n1: templates to convert\n"
        "Converting Template:Staff\nTemplate converted\n",
        "\nUser:admin\nRename Permissions.dat to Permission.v24\nRename Permissions.ner to Permissions.dat\n"
        "Rename SharePerm.dat to SharePerm.v24\nRename sharePerm.new to SharePerm.dat\n"})
    EXPECT_THAT(log, testing::HasSubstr(lines));
}

TEST_F(ConversionTest, FailureAtAnyCallLeavesOldAndNewTemplatesWhole) {
  const std::string old_bytes = old_record("Staff", 4324);
  const std::string new_bytes = records::upgrade_template(old_bytes, records::TemplateGeneration::k22);
  put("Template.dat", old_bytes);
  // Convert.log takes the first call; the conversion continues without it.
  int call = 2;
  for (bool converted = false; !converted; ++call) {
    ASSERT_LT(call, 30);
    files.fail_from(call, 61);
    dialogs.expect("");  // the failure, or that it is complete
    converted = Convert(session, directory_name(), conversion::kFrom22);
    files.fail_from(0, 0);
    if (converted)
      break;
    EXPECT_EQ(get("Template.dat"), old_bytes) << "call " << call;
    EXPECT_EQ(setting("Version", "DBVersion"), "(none)");
  }
  EXPECT_GT(call, 4);
  EXPECT_EQ(get("Template.dat"), new_bytes);
  EXPECT_EQ(get("Template.v23"), old_bytes);
}

}  // namespace
}  // namespace twk::stores
