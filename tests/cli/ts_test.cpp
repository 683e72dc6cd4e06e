#include "cli/twk_fixture.hpp"

namespace twk::test {
namespace {

class TsCommands : public TwkLab {
 protected:
  TsCommands() { play("$ user create $STAFF John Fred Smith"); }
};

constexpr char kShowsNoSettings[] = R"(
$ ts show John.Smith
{"user": "John.Smith", "profile": "", "home": "", "drive": "", "allowLogon": true, "program": "", "startIn": "",
 "inheritProgram": true, "drives": true, "printers": true, "defaultPrinter": true, "idleLimit": 0,
 "disconnectedLimit": 0, "activeLimit": 0}
)";

TEST_F(TsCommands, SettingsAreShownAndSetByTheirNames) {
  play(kShowsNoSettings);
  play(R"(
$ ts set John.Smith profile=\\FS1\P=1 WTSTerminalServerHomeDir=\\FS1\Łuk drive=w: allowlogon=NO
  InheritInitialProgram=no program=menu.exe startIn=C:\ drives=0 printers=false defaultPrinter=yes
  "activeLimit=1 MIN" "WTSTimeoutSettingsDisconnections=2 days" "idleLimit=5 mins"
> GREEN  John.Smith: Saved...
$ ts show John.Smith
{"user": "John.Smith", "profile": "\\\\FS1\\P=1", "home": "\\\\FS1\\Łuk", "drive": "w:", "allowLogon": false,
 "inheritProgram": false, "program": "menu.exe", "startIn": "C:\\", "drives": false, "printers": false,
 "defaultPrinter": true, "activeLimit": 60000, "disconnectedLimit": 172800000, "idleLimit": 300000}
$ ts set john.smith drive=X: idleLimit=never --dry-run
> Set the terminal-server settings of John.Smith: WTSTerminalServerHomeDirDrive = X:
> Set the terminal-server settings of John.Smith: WTSTimeoutSettingsIdle = 0
$ ts show John.Smith
{"drive": "w:", "idleLimit": 300000}
$ ts show john.smith
| Idle session limit          5 mins
| May log on                  no
$ ts set John.Smith profile= drive= idleLimit=never
$ ts show John.Smith
{"profile": "", "drive": "", "idleLimit": 0}
)");
}

TEST_F(TsCommands, InvalidSettingsAreReportedBeforeAnyIsWritten) {
  play(R"(
$ ts set John.Smith home=changed "idlelimt=1 min"
  => 64 no terminal-server setting "idlelimt". Near: "idleLimit"
$ ts set John.Smith home=changed colour=red => 64 Settings: profile, home, drive
$ ts set John.Smith home=changed =x => 64 is not NAME=VALUE
$ ts set John.Smith home=changed drive => 64 is not NAME=VALUE
$ ts set John.Smith home=changed drive=W => 64 drive takes a letter and a colon
$ ts set John.Smith home=changed drive=1: => 64 drive takes a letter and a colon
$ ts set John.Smith home=changed allowLogon=maybe => 64 allowLogon takes yes or no, not "maybe"
$ ts set John.Smith home=changed "idleLimit=5 minutes"
  => 64 idleLimit does not take the time "5 minutes", but Never, 1 min
$ ts set John.Smith home=changed "WTSTimeoutSettingsIdle=1 mins" => 64 Near: "1 min"
$ ts set John.Smith home=changed activeLimit= => 64 activeLimit does not take the time
$ ts set John.Smith home=changed program=$LONG => 64 program takes a text of at most
)",
       {{"$LONG", {std::string(257, 'x')}}});
  play(kShowsNoSettings);
}

TEST_F(TsCommands, AnUnknownUserIsRefused) {
  play(R"(
$ ts show Jon.Smith => 2
$ ts set Jon.Smith drive=W: => 2
$ ts show Staff => 2
$ ts set John.Smith => 64
$ ts => 64
)");
}

TEST_F(TsCommands, AnUnreadableAttributeIsReportedAndKept) {
  play(R"(
$ lab import -
< dn: CN=John.Smith,$NEW
< changetype: modify
< replace: userParameters
< userParameters: $TORN
< -
$ ts show John.Smith => 2 settings of John.Smith cannot be read
$ ts set John.Smith drive=W: --dry-run => 2
| RED  John.Smith: drive is refused:
$ ts set John.Smith drive=W: => 2
| RED  John.Smith: drive is refused:
| (error 13)
$ lab export
| userParameters: $TORN
)",
       {{"$TORN", {std::string(48, '.') + "P"}}});
}

class TsCommandsInNt : public TwkLab {
 protected:
  static void SetUpTestSuite() { make("nt"); }
};

TEST_F(TsCommandsInNt, TheSettingsAreThoseOfTheAccount) {
  play(R"(
$ user create $STAFF John Fred Smith
$ ts set john.smith "idleLimit=1 hour"
$ ts show John.Smith
{"idleLimit": 3600000}
)");
}

}  // namespace
}  // namespace twk::test
