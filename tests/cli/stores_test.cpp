#include "cli/twk_fixture.hpp"

namespace twk::test {
namespace {

using testing::HasSubstr;

using Stores = TwkLab;

TEST_F(Stores, ASiteIsAddedChangedAndFoundInAnyCase) {
  ASSERT_EQ(run({"site", "add", "London", "--nt-server", "LON1"}).exit_code, 0);
  const nlohmann::json changed =
      result_of({"site", "edit", "LONDON", "--exchange2000", "--exchange-server", "EX", "--exchange-org", "O",
                 "--exchange-site", "S", "--mail-store", "M"});
  EXPECT_EQ(changed, nlohmann::json({{"name", "London"},
                                     {"ntServer", "LON1"},
                                     {"exchange2000", true},
                                     {"exchangeServer", "EX"},
                                     {"exchangeOrg", "O"},
                                     {"exchangeSite", "S"},
                                     {"mailStore", "M"}}));
  EXPECT_EQ(result_of({"site", "show", "london"}), changed);
  EXPECT_EQ(result_of({"site", "edit", "London", "--mail-store", "M"}), changed);
  EXPECT_EQ(result_of({"site", "edit", "London", "--exchange55"})["exchange2000"], false);
}

struct RefusedStore {
  const char* what;
  Arguments arguments;
  const char* message;
};

class RefusedStores : public TwkLab, public testing::WithParamInterface<RefusedStore> {};

TEST_P(RefusedStores, SayWhyInTheSystemsWords) {
  const ProgramResult result = run(GetParam().arguments);
  EXPECT_EQ(result.exit_code, 2);
  EXPECT_EQ(result.out, "");
  EXPECT_THAT(result.err, HasSubstr(GetParam().message));
}

INSTANTIATE_TEST_SUITE_P(
    Stores, RefusedStores,
    testing::Values(
        RefusedStore{
            "SiteWithoutServer", {"site", "add", "London"}, "Must Enter a Site Name, And a Home Server"},
        RefusedStore{"SiteOfATakenName", {"site", "add", "HEAD OFFICE", "--nt-server", "S"}, "already used"},
        RefusedStore{"SiteWithALongName",
                     {"site", "add", "123456789012345678901", "--nt-server", "S"},
                     "Site name too long (20 chrs max)"},
        RefusedStore{"SiteWithHalfAnExchange",
                     {"site", "edit", "Head Office", "--exchange-org="},
                     "Must enter all three vaules for exchange."},
        RefusedStore{"SiteThatIsNot", {"site", "show", "Haed Office"}, "Near: \"Head Office\""},
        RefusedStore{"SiteOutsideTheCodePage",
                     {"site", "add", "Łódź", "--nt-server", "S"},
                     "\"Łódź\" cannot be stored: code page 1252 has no place for Ł (U+0141)"},
        RefusedStore{"ServerOutsideTheCodePage", {"site", "add", "L", "--nt-server", "Ж"}, "no place for Ж"},
        RefusedStore{"ScriptOutsideTheCodePage",
                     {"template", "add", "X", "--logon-script", "ż.cmd"},
                     "no place for ż"},
        RefusedStore{"VariableOutsideTheCodePage",
                     {"template", "edit", "Staff", "--variable", "A=Ж"},
                     "no place for Ж"},
        RefusedStore{"TemplateOfATakenName", {"template", "add", "staff"}, "Already Exist"},
        RefusedStore{"TemplateWithABadDrive",
                     {"template", "edit", "Staff", "--home-drive", "1:"},
                     "Home Drive Format Incorrect"},
        RefusedStore{"TemplateWithAnUnknownGroup",
                     {"template", "edit", "Staff", "--group", "Stuff"},
                     "no group \"Stuff\". Near: \"Staff\""},
        RefusedStore{"PrimaryGroupOutsideTheTemplate",
                     {"template", "add", "X", "--primary-group", "Domain Guests"},
                     "must be one of the template's groups"}),
    [](const auto& named) { return named.param.what; });

TEST_F(Stores, ATemplateIsAddedCopiedAndChanged) {
  const std::string hours = "000000" + std::string(36, 'F');
  ASSERT_EQ(run({"template", "add", "Sales", "--home-dir", "\\\\%Server%\\x", "--home-drive", "S:", "--group",
                 "Staff", "--primary-group", "staff", "--variable", "Dept=Sales", "--variable",
                 "Floor=", "--logon-hours", hours})
                .exit_code,
            0);
  const nlohmann::json copy = result_of({"template", "copy", "sales", "Sales 2"});
  EXPECT_EQ(copy["logonHours"], hours);
  EXPECT_EQ(copy["primaryGroup"], "Staff");
  EXPECT_EQ(copy["variables"], (nlohmann::json{"Dept=Sales", "Floor="}));
  const nlohmann::json changed = result_of({"template", "edit", "sales 2", "--group=", "--variable", "A=B"});
  EXPECT_EQ(changed["groups"], nlohmann::json::array());
  EXPECT_EQ(changed["variables"], nlohmann::json{"A=B"});
  EXPECT_EQ(changed["homeDir"], copy["homeDir"]);
  EXPECT_EQ(result_of({"template", "edit", "Sales 2", "--variable="})["variables"], nlohmann::json::array());
}

struct TableCase {
  const char* name;
  const char* rows;
  const char* shown;
};

class SideTables : public TwkLab, public testing::WithParamInterface<TableCase> {};

TEST_P(SideTables, ReturnWhatWasSet) {
  const ProgramResult set = run({"table", "set", GetParam().name}, GetParam().rows);
  EXPECT_EQ(set.exit_code, 0) << set.err;
  EXPECT_EQ(run({"table", "show", GetParam().name}).out, GetParam().shown);
}

INSTANTIATE_TEST_SUITE_P(
    Stores, SideTables,
    testing::Values(TableCase{"mail", "A,b,c\r\nD,\n", "A,b,c\nD,\n"},
                    TableCase{"w2k", "p,title,%IMPORT5%\nm,x,Płac", "p,title,%IMPORT5%\nm,x,Płac\n"},
                    TableCase{"permissions", "%UserName%,full control\nD\\x\tRead\towner\tyes\n",
                              "%UserName%\tFull Control\t\tno\nD\\x\tRead\towner\tyes\n"},
                    TableCase{"share-permissions", "", "Everyone\tFull Control\t\tno\n"}),
    [](const auto& named) {
      std::string name = named.param.name;
      std::erase(name, '-');
      return name;
    });

TEST_F(Stores, ABadRowOfATableIsNamedAndNothingIsWritten) {
  const ProgramResult result = run({"table", "set", "permissions"}, "a,Read\nb,Full\n");
  EXPECT_EQ(result.exit_code, 65);
  EXPECT_THAT(result.err, HasSubstr("line 2"));
  const ProgramResult outside = run({"table", "set", "permissions"}, "a,Read\nZieliński,Read\n");
  EXPECT_EQ(outside.exit_code, 65);
  EXPECT_THAT(outside.err, HasSubstr("line 2: \"Zieliński\" cannot be stored"));
  EXPECT_THAT(run({"table", "show", "permissions"}).out, HasSubstr("Domain Admins"));
}

TEST_F(Stores, TableOfSharesTakesNoDenial) {
  const ProgramResult result = run({"table", "set", "share-permissions"}, "a,Change\nb,No Access\n");
  EXPECT_EQ(result.exit_code, 65);
  EXPECT_THAT(result.err, HasSubstr("line 2"));
  EXPECT_EQ(run({"table", "set", "permissions"}, "a,Change\nb,No Access\n").exit_code, 0);
}

TEST_F(Stores, SettingsGoOutAndComeBackAsText) {
  ASSERT_EQ(run({"settings", "set", "Custom", "Menu", "Über \"uns\""}).exit_code, 0);
  const std::string text = run({"settings", "export"}).out;
  ASSERT_EQ(run({"settings", "set", "Custom", "Menu", "other"}).exit_code, 0);
  EXPECT_EQ(run({"settings", "import", "-"}, text).exit_code, 0);
  EXPECT_EQ(result_of({"settings", "get", "custom", "MENU"})["value"], "Über \"uns\"");
}

TEST_F(Stores, ASettingThatNoReaderAcceptsIsRefusedUnlessForced) {
  for (const auto& [arguments, message] : std::vector<std::pair<Arguments, const char*>>{
           {{"settings", "set", "Setup", "IncNumber", "banana"}, "takes a number from 0 to 32767"},
           {{"settings", "set", "Stup", "SetupID", "foo"}, "Near: \"Setup\\SetupID\""}}) {
    const ProgramResult result = run(arguments);
    EXPECT_EQ(result.exit_code, 64);
    EXPECT_THAT(result.err, HasSubstr(message));
  }
  const std::string root =
      "Windows Registry Editor Version 5.00\n[HKEY_LOCAL_MACHINE\\Software\\Oxbrook\\TWK";
  EXPECT_EQ(run({"settings", "import", "-"}, root + "\\Setup]\n\"Profiles\"=\"n.dat\"\n").exit_code, 0);
  EXPECT_EQ(run({"settings", "import", "-"}, root + "\\Stup]\n\"a\"=\"b\"\n").exit_code, 64);
  EXPECT_EQ(run({"settings", "set", "Stup", "SetupID", "foo", "--force"}).exit_code, 0);
  EXPECT_EQ(run({"settings", "get", "Setup", "Profiles"}).out, "n.dat\n");
  EXPECT_EQ(run({"settings", "unset", "setup", "PROFILES"}).exit_code, 0);
  EXPECT_EQ(run({"settings", "get", "Setup", "Profiles"}).exit_code, 2);
  EXPECT_EQ(run({"settings", "unset", "Setup", "Profiles"}).exit_code, 2);
}

TEST_F(Stores, UnreadableSettingsStopEveryCommandAndStay) {
  const std::string path = lab() + "/settings/HKEY_LOCAL_MACHINE.reg";
  put_file(path, "REGEDIT4\n[half\n");
  for (const Arguments& arguments : {Arguments{"template", "list"}, Arguments{"settings", "list"}}) {
    const ProgramResult result = run(arguments);
    EXPECT_EQ(result.exit_code, 65);
    EXPECT_THAT(result.err, HasSubstr("HKEY_LOCAL_MACHINE.reg, line 2"));
  }
  EXPECT_EQ(get_file(path), "REGEDIT4\n[half\n");
}

TEST_F(Stores, AReadingCommandThatMetTroubleSaysSoByItsExitCode) {
  ASSERT_EQ(run({"site", "add", "S", "--nt-server", "OLD"}).exit_code, 0);
  ASSERT_EQ(run({"--yes", "site", "delete", "S"}).exit_code, 0);
  ASSERT_EQ(run({"site", "add", "S", "--nt-server", "NEW"}).exit_code, 0);
  const ProgramResult shadowed = run({"site", "show", "S"});
  EXPECT_EQ(shadowed.exit_code, 1);
  EXPECT_THAT(shadowed.err, HasSubstr("YELLOW: Site.dat holds a deleted site \"S\""));
  EXPECT_EQ(run({"template", "add", "X", "--home-drive", "H:"}).exit_code, 64);
}

TEST_F(Stores, SettingsOfAnotherProgramAreNotImported) {
  const ProgramResult result =
      run({"settings", "import", "-"}, "REGEDIT4\n\n[HKEY_LOCAL_MACHINE\\Software\\Other]\n\"a\"=\"b\"\n");
  EXPECT_EQ(result.exit_code, 65);
  EXPECT_THAT(result.err, HasSubstr("nothing was imported"));
}

TEST_F(Stores, SettingsAreDescribedWithWhatTheyTakeAndCountAs) {
  const auto rows = json_lines(run({"--json", "settings", "describe", "um"}).out);
  ASSERT_EQ(rows.size(), 6U);
  EXPECT_EQ(rows.front()["name"], "UM\\CreateDirs");
  EXPECT_EQ(rows.front()["takes"], "Yes or No");
  EXPECT_EQ(rows.front()["default"], "Yes");
  EXPECT_EQ(run({"settings", "describe", "Nothing"}).exit_code, 64);
}

TEST_F(Stores, TheLogIsShownAndDeleted) {
  ASSERT_EQ(create({"--ou", kNewStarters, "John", "Smith"}).exit_code, 0);
  EXPECT_EQ(run({"log", "show", "--tail", "1"}).out, "User Created.\n");
  EXPECT_EQ(run({"log", "clear"}).exit_code, 2);
  EXPECT_EQ(run({"--yes", "log", "clear"}).exit_code, 0);
  EXPECT_EQ(run({"log", "show"}).out, "");
}

TEST_F(Stores, CompactionDropsADeletedSiteAndPrunesByOption) {
  ASSERT_EQ(run({"site", "add", "London", "--nt-server", "LON1"}).exit_code, 0);
  ASSERT_EQ(run({"--yes", "site", "delete", "London"}).exit_code, 0);
  ASSERT_EQ(get_file(database_file("Site.dat")).size(), 2 * 154U);
  EXPECT_EQ(run({"--no-input", "db", "compact"}).exit_code, 2);
  ASSERT_EQ(get_file(database_file("Site.dat")).size(), 2 * 154U);
  EXPECT_EQ(result_of({"db", "compact", "--keep-groups"}), nlohmann::json({{"compacted", true}}));
  EXPECT_EQ(get_file(database_file("Site.dat")).size(), 154U);
  EXPECT_EQ(run({"--yes", "db", "compact"}).exit_code, 0);
}

TEST_F(Stores, BackupCopiesOldFilesAsTheyAreAndConversionKeepsThem) {
  const WorkingDirectory working(lab());  // of Convert.log
  ASSERT_EQ(run({"settings", "set", "Version", "DBVersion", "2.3"}).exit_code, 0);
  const std::string old_rows(64, ' ');
  put_file(database_file("Permissions.dat"), old_rows);
  put_file(database_file("SharePerm.dat"), old_rows);
  EXPECT_EQ(run({"db", "backup"}).exit_code, 0);
  EXPECT_EQ(get_file(database_file("Permissions.bak")), old_rows);
  EXPECT_EQ(get_file(database_file("Permissions.dat")), old_rows);
  const ProgramResult converted = run({"db", "convert"});
  EXPECT_EQ(converted.exit_code, 0) << converted.err;
  EXPECT_THAT(converted.err, HasSubstr("older versions of Permissions.dat & SharePerm.dat"));
  EXPECT_EQ(get_file(database_file("Permissions.v24")), old_rows);
  EXPECT_EQ(get_file(database_file("Permissions.dat")).size(), 114U);
  EXPECT_EQ(result_of({"db", "convert"}), nlohmann::json({{"converted", false}, {"version", "2.4"}}));
  // Every stage from the named one on.
  put_file(database_file("Permissions.dat"), old_rows);
  EXPECT_EQ(run({"db", "convert", "--from", "2.2"}).exit_code, 0);
  EXPECT_EQ(get_file(database_file("Permissions.dat")).size(), 114U);
  EXPECT_EQ(run({"db", "convert", "--from", "3"}).exit_code, 64);
}

}  // namespace
}  // namespace twk::test
