#include "cli/twk_fixture.hpp"

namespace twk::test {
namespace {

using testing::HasSubstr;

class TsCommands : public TwkLab {
 protected:
  TsCommands() { EXPECT_EQ(create({"--ou", kNewStarters, "John", "Fred", "Smith"}).exit_code, 0); }
  [[nodiscard]] ProgramResult set(Arguments assignments) const {
    assignments.insert(assignments.begin(), {"ts", "set", "John.Smith"});
    return run(assignments);
  }
  [[nodiscard]] nlohmann::json settings() const { return result_of({"ts", "show", "John.Smith"}); }
};

const nlohmann::json kWithout = {
    {"user", "John.Smith"},   {"profile", ""},    {"home", ""},     {"drive", ""},
    {"allowLogon", true},     {"program", ""},    {"startIn", ""},  {"inheritProgram", true},
    {"drives", true},         {"printers", true}, {"idleLimit", 0}, {"defaultPrinter", true},
    {"disconnectedLimit", 0}, {"activeLimit", 0}};

TEST_F(TsCommands, SettingsAreShownAndSetByTheirNames) {
  EXPECT_EQ(settings(), kWithout);
  const ProgramResult result =
      set({"profile=\\\\FS1\\P=1", "WTSTerminalServerHomeDir=\\\\FS1\\Łuk", "drive=w:", "allowlogon=NO",
           "InheritInitialProgram=no", "program=menu.exe", "startIn=C:\\", "drives=0", "printers=false",
           "defaultPrinter=yes", "activeLimit=1 MIN", "WTSTimeoutSettingsDisconnections=2 days",
           "idleLimit=5 mins"});
  EXPECT_EQ(result.exit_code, 0) << result.err;
  EXPECT_EQ(result.out, "GREEN  John.Smith: Saved...\n");
  const nlohmann::json expected = {{"user", "John.Smith"},
                                   {"profile", "\\\\FS1\\P=1"},
                                   {"home", "\\\\FS1\\Łuk"},
                                   {"drive", "w:"},
                                   {"allowLogon", false},
                                   {"inheritProgram", false},
                                   {"program", "menu.exe"},
                                   {"startIn", "C:\\"},
                                   {"drives", false},
                                   {"printers", false},
                                   {"defaultPrinter", true},
                                   {"activeLimit", 60000},
                                   {"disconnectedLimit", 172800000},
                                   {"idleLimit", 300000}};
  EXPECT_EQ(settings(), expected);
  const std::string shown = run({"ts", "show", "john.smith"}).out;
  EXPECT_THAT(shown, HasSubstr("Idle session limit          5 mins\n"));
  EXPECT_THAT(shown, HasSubstr("May log on                  no\n"));
  EXPECT_EQ(set({"profile=", "drive=", "idleLimit=never"}).exit_code, 0);
  EXPECT_EQ(settings()["profile"], "");
  EXPECT_EQ(settings()["idleLimit"], 0);
}

TEST_F(TsCommands, InvalidSettingsAreReportedBeforeAnyIsWritten) {
  const struct {
    const char* assignment;
    const char* says;
  } cases[] = {{"idlelimt=1 min", "no terminal-server setting \"idlelimt\". Near: \"idleLimit\""},
               {"colour=red", "Settings: profile, home, drive"},
               {"=x", "is not NAME=VALUE"},
               {"drive", "is not NAME=VALUE"},
               {"drive=W", "drive takes a letter and a colon"},
               {"drive=1:", "drive takes a letter and a colon"},
               {"allowLogon=maybe", "allowLogon takes yes or no, not \"maybe\""},
               {"idleLimit=5 minutes", "idleLimit does not take the time \"5 minutes\", but Never, 1 min"},
               {"WTSTimeoutSettingsIdle=1 mins", "Near: \"1 min\""},
               {"activeLimit=", "activeLimit does not take the time"}};
  for (const auto& [assignment, says] : cases) {
    const ProgramResult result = set({"home=changed", assignment});
    EXPECT_EQ(result.exit_code, 64) << assignment;
    EXPECT_THAT(result.err, HasSubstr(says));
  }
  EXPECT_THAT(set({"program=" + std::string(257, 'x')}).err, HasSubstr("program takes a text of at most"));
  EXPECT_EQ(settings(), kWithout);
}

TEST_F(TsCommands, AnUnknownUserIsRefused) {
  for (const Arguments& arguments : {Arguments{"ts", "show", "Jon.Smith"},
                                     {"ts", "set", "Jon.Smith", "drive=W:"},
                                     {"ts", "show", "Staff"}})
    EXPECT_EQ(run(arguments).exit_code, 2) << arguments.at(2);
  EXPECT_EQ(run({"ts", "set", "John.Smith"}).exit_code, 64);
  EXPECT_EQ(run({"ts"}).exit_code, 64);
}

TEST_F(TsCommands, AnUnreadableAttributeIsReportedAndKept) {
  const std::string torn =
      "dn: CN=John.Smith,OU=New Starters,DC=twk,DC=test\nchangetype: modify\n"
      "replace: userParameters\nuserParameters: " +
      std::string(48, '.') + "P\n-\n";
  ASSERT_EQ(run({"lab", "import", "-"}, torn).exit_code, 0);
  const ProgramResult shown = run({"ts", "show", "John.Smith"});
  EXPECT_EQ(shown.exit_code, 2);
  EXPECT_THAT(shown.err, HasSubstr("settings of John.Smith cannot be read"));
  const ProgramResult changed = set({"drive=W:"});
  EXPECT_EQ(changed.exit_code, 2);
  EXPECT_THAT(changed.out, HasSubstr("RED  John.Smith: drive is refused: "));
  EXPECT_THAT(changed.out, HasSubstr("(error 13)"));
  EXPECT_THAT(run({"lab", "export"}).out, HasSubstr("userParameters: " + std::string(48, '.') + "P\n"));
}

class TsCommandsInNt : public TwkLab {
 protected:
  static void SetUpTestSuite() { make("nt"); }
};

TEST_F(TsCommandsInNt, TheSettingsAreThoseOfTheAccount) {
  ASSERT_EQ(create({"John", "Fred", "Smith"}).exit_code, 0);
  EXPECT_EQ(run({"ts", "set", "john.smith", "idleLimit=1 hour"}).exit_code, 0);
  EXPECT_EQ(result_of({"ts", "show", "John.Smith"})["idleLimit"], 3600000);
}

}  // namespace
}  // namespace twk::test
