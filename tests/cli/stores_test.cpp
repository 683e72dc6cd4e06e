#include "cli/twk_fixture.hpp"

namespace twk::test {
namespace {

using testing::HasSubstr;

using Stores = TwkLab;

TEST_F(Stores, ASiteIsAddedChangedAndFoundInAnyCase) {
  play(R"(
$ site add London --nt-server LON1
$ site edit LONDON --exchange2000 --exchange-server EX --exchange-org O --exchange-site S --mail-store M
{"name": "London", "mailStore": "M"}
$ site edit London --mail-store M
{"name": "London", "exchange2000": true}
$ site show london
{"name": "London", "ntServer": "LON1", "exchange2000": true, "exchangeServer": "EX", "exchangeOrg": "O",
 "exchangeSite": "S", "mailStore": "M"}
$ site edit London --exchange55
{"exchange2000": false}
)");
}

TEST_F(Stores, RefusalsAreInTheSystemsWords) {
  play(R"(
$ site add London => 2 Must Enter a Site Name, And a Home Server
>
$ site add "HEAD OFFICE" --nt-server S => 2 already used
$ site add 123456789012345678901 --nt-server S => 2 Site name too long (20 chrs max)
$ site edit "Head Office" --exchange-org= => 2 Must enter all three vaules for exchange.
$ site show "Haed Office" => 2 Near: "Head Office"
$ site add Łódź --nt-server S => 2 "Łódź" cannot be stored: code page 1252 has no place for Ł (U+0141)
$ site add L --nt-server Ж => 2 no place for Ж
$ template add X --logon-script ż.cmd => 2 no place for ż
$ template edit Staff --variable A=Ж => 2 no place for Ж
$ template add staff => 2 Already Exist
$ template edit Staff --home-drive 1: => 2 Home Drive Format Incorrect
$ template edit Staff --group Stuff => 2 no group "Stuff". Near: "Staff"
$ template add X --primary-group "Domain Guests" => 2 must be one of the template's groups
$ template add X --home-drive H: => 64
)");
}

TEST_F(Stores, ATemplateIsAddedCopiedAndChanged) {
  play(R"(
$ template add Sales --home-dir \\%Server%\x --home-drive S: --group Staff --primary-group staff
  --variable Dept=Sales --variable Floor= --logon-hours 000000FFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFF
$ template copy sales "Sales 2"
{"logonHours": "000000FFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFF", "primaryGroup": "Staff",
 "variables": ["Dept=Sales", "Floor="]}
$ template edit "sales 2" --group= --variable A=B
{"groups": [], "variables": ["A=B"], "homeDir": "\\\\%Server%\\x"}
$ template edit "Sales 2" --variable=
{"variables": []}
)");
}

TEST_F(Stores, SideTablesReturnWhatWasSet) {
  EXPECT_EQ(run({"table", "set", "mail"}, "A,b,c\r\nD,\n").exit_code, 0);
  EXPECT_EQ(
      run({"table", "set", "permissions"}, "%UserName%,full control\nD\\x\tRead\towner\tyes\n").exit_code, 0);
  play("$ table show permissions\n> %UserName%\tFull Control\t\tno\n> D\\x\tRead\towner\tyes\n");
  play(R"(
$ table show mail
> A,b,c
> D,
$ table set w2k
< p,title,%IMPORT5%
< m,x,Płac
$ table show w2k
> p,title,%IMPORT5%
> m,x,Płac
$ table set share-permissions
$ table show share-permissions
| Everyone	Full Control
)");
}

TEST_F(Stores, ABadRowOfATableIsNamedAndNothingIsWritten) {
  play(R"(
$ table set permissions => 65 line 2
< a,Read
< b,Full
$ table set permissions => 65 line 2: "Zieliński" cannot be stored
< a,Read
< Zieliński,Read
$ table show permissions
| Domain Admins
$ table set share-permissions => 65 line 2
< a,Change
< b,No Access
$ table set permissions
< a,Change
< b,No Access
)");
}

TEST_F(Stores, SettingsGoOutAndComeBackAsText) {
  play("$ settings set Custom Menu 'Über \"uns\"'");
  const std::string text = run({"settings", "export"}).out;
  play(R"(
$ settings set Custom Menu other
$ settings import $TEXT
$ settings get custom MENU
> Über "uns"
)",
       {{"$TEXT", {file("settings.reg", text)}}});
}

TEST_F(Stores, AChangedSettingIsAnsweredAsARow) {
  EXPECT_THAT(run({"--json", "settings", "set", "Setup", "IncNumber", "7"}).out,
              testing::HasSubstr(R"("name":"IncNumber","value":"7")"));
  EXPECT_THAT(run({"--json", "settings", "unset", "Setup", "IncNumber"}).out,
              testing::HasSubstr(R"("deleted":true)"));
  EXPECT_EQ(run({"--json", "custom", "clear", "1"}).out, "{\"number\":1,\"deleted\":true}\n");
}

TEST_F(Stores, ASettingThatNoReaderAcceptsIsRefusedUnlessForced) {
  play(R"(
$ settings set Setup IncNumber banana => 64 takes a number from 0 to 32767
$ settings set Stup SetupID foo => 64 Near: "Setup\SetupID"
$ settings set Stup SetupID foo --force
$ settings import - => 64
< Windows Registry Editor Version 5.00
< [HKEY_LOCAL_MACHINE\Software\Oxbrook\TWK\Stup]
< "a"="b"
$ settings import - => 65 nothing was imported
< REGEDIT4
< [HKEY_LOCAL_MACHINE\Software\Other]
< "a"="b"
$ settings import -
< Windows Registry Editor Version 5.00
< [HKEY_LOCAL_MACHINE\Software\Oxbrook\TWK\Setup]
< "Profiles"="n.dat"
$ settings get Setup Profiles
> n.dat
$ settings unset setup PROFILES
$ settings get Setup Profiles => 2
$ settings unset Setup Profiles => 2
)");
}

TEST_F(Stores, UnreadableSettingsStopEveryCommandAndStay) {
  const std::string path = lab() + "/settings/HKEY_LOCAL_MACHINE.reg";
  put_file(path, "REGEDIT4\n[half\n");
  play(R"(
$ template list => 65 HKEY_LOCAL_MACHINE.reg, line 2
$ settings list => 65 HKEY_LOCAL_MACHINE.reg, line 2
)");
  EXPECT_EQ(get_file(path), "REGEDIT4\n[half\n");
}

TEST_F(Stores, AReadingCommandThatMetTroubleSaysSoByItsExitCode) {
  play(R"(
$ site add S --nt-server OLD
$ --yes site delete S
$ site add S --nt-server NEW
$ site show S => 1 YELLOW: Site.dat holds a deleted site "S"
)");
}

TEST_F(Stores, SettingsAreDescribedWithWhatTheyTakeAndCountAs) {
  play(R"(
$ settings describe um
{"name": "UM\\CreateDirs", "takes": "Yes or No", "default": "Yes"}
{}
{}
{}
{}
{}
$ settings describe Nothing => 64
)");
}

TEST_F(Stores, TheLogIsShownAndDeleted) {
  play(R"(
$ user create $STAFF John Smith
$ log show --tail 1
> User Created.
$ log clear => 2
$ --yes log clear
$ log show
>
)");
}

TEST_F(Stores, CompactionAsksUnlessAnOptionSaysWhatToKeep) {
  play(R"(
$ --no-input db compact => 2
$ db compact --keep-groups
{"compacted": true}
$ --yes db compact
{"compacted": true}
)");
}

TEST_F(Stores, AnOlderDatabaseIsBackedUpAndConvertedOnceOrFromAVersionOn) {
  const WorkingDirectory working(lab());  // of Convert.log
  const std::string old_rows(64, ' ');
  put_file(database_file("Permissions.dat"), old_rows);
  put_file(database_file("SharePerm.dat"), old_rows);
  play(R"(
$ settings set Version DBVersion 2.3
$ db backup
$ db convert
! older versions of Permissions.dat & SharePerm.dat
$ db convert
{"converted": false, "version": "2.4"}
$ db convert --from 3 => 64
)");
  EXPECT_EQ(get_file(database_file("Permissions.bak")), old_rows);
  EXPECT_EQ(get_file(database_file("Permissions.dat")).size(), 114U);
  put_file(database_file("Permissions.dat"), old_rows);
  play("$ db convert --from 2.2");
  EXPECT_EQ(get_file(database_file("Permissions.dat")).size(), 114U);
}

}  // namespace
}  // namespace twk::test
