#include "cli/command_line.hpp"

#include <regex>

#include "cli/twk_fixture.hpp"

namespace twk::test {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

struct UsageCase {
  const char* what;
  Arguments arguments;
  const char* message;
};

class RefusedCommandLine : public testing::TestWithParam<UsageCase> {};

TEST_P(RefusedCommandLine, EndsWith64AndSaysWhyOnStandardError) {
  const ProgramResult result = twk(GetParam().arguments);
  EXPECT_EQ(result.exit_code, 64);
  EXPECT_EQ(result.out, "");
  EXPECT_THAT(result.err, AllOf(StartsWith("twk: "), HasSubstr(GetParam().message)));
}

INSTANTIATE_TEST_SUITE_P(
    CommandLine, RefusedCommandLine,
    testing::Values(
        UsageCase{"NoCommand", {}, "subcommand is required"},
        UsageCase{"UnknownCommand", {"bogus"}, "unknown command or option bogus"},
        UsageCase{"UnknownOption", {"site", "list", "--colour"}, "--colour"},
        UsageCase{"NoWorld", {"user", "list"}, "--domain NAME or --lab DIR"},
        UsageCase{"NoLab", {"lab", "info"}, "needs a lab"},
        UsageCase{"NoDomain", {"doctor"}, "no domain is named"},
        UsageCase{"TwoWorlds", {"--lab", "x", "--domain", "twk.test", "user", "list"}, "exclude each other"},
        UsageCase{"LabAndLive", {"--lab", "x", "--live", "user", "list"}, "exclude each other"},
        UsageCase{"BadPort", {"--domain", "twk.test", "--port", "x", "user", "list"}, "65535"},
        UsageCase{"BadMethod", {"--domain", "twk.test", "--method", "x", "user", "list"}, "ticket, ldaps"},
        UsageCase{"NoUser", {"--domain", "twk.test", "--method", "ldaps", "user", "list"}, "needs a user"},
        UsageCase{"ImportOfNothing", {"lab", "import"}, "--live DIR. Try `twk lab import --help`."},
        UsageCase{"OptionForAValue",
                  {"template", "edit", "Staff", "--home-share", "--profile-share=P1"},
                  "--home-share needs a value"},
        UsageCase{
            "LastOptionWithoutAValue", {"user", "list", "--ou"}, "--ou needs a value. Try `twk user list"},
        UsageCase{"FlagWithAnEmptyValue", {"--yes=", "site", "list"}, "--yes takes no value"},
        UsageCase{"EmptyLab", {"--lab=", "user", "delete", "Jo", "--account"}, "--lab: an empty value"},
        UsageCase{
            "EmptyGroup", {"users", "delete", "Jo", "--account", "--group="}, "--group: an empty value"},
        UsageCase{"EmptyServer",
                  {"user", "delete", "Jo", "--account", "--exchange-server=", "--dry-run"},
                  "--exchange-server: an empty value"},
        UsageCase{"ServerWithoutMail",
                  {"--lab", "/", "user", "delete", "Jo", "--account", "--exchange-server", "EX55"},
                  "give --mail as well"},
        UsageCase{"EmptyNumber", {"log", "show", "--tail="}, "--tail takes a whole number"},
        UsageCase{"YesAndNoInput", {"--yes", "--no-input", "site", "list"}, "excludes"},
        UsageCase{"BadUtf8", {"user", "show", "a\xff"}, "argument 3 is not valid UTF-8"},
        UsageCase{"ControlCharacter", {"user", "show", "a\nb"}, "control character U+000A"},
        UsageCase{"LongField", {"site", "add", "X", "--nt-server", "123456789012345678901"}, "20 characters"},
        UsageCase{"BadHours", {"template", "add", "X", "--logon-hours", "FF"}, "42 hexadecimal digits"},
        UsageCase{"BadRange",
                  {"--lab", "/", "user", "import", "x", "--template", "T", "--site", "S", "--groups", "9-3"},
                  "--groups takes"}),
    [](const auto& named) { return named.param.what; });

/// What the program says on standard error, or to `--help`; run in this process, as there are many.
std::string said(Arguments words) {
  words.insert(words.begin(), "twk");
  std::vector<char*> argv;
  for (std::string& word : words)
    argv.push_back(word.data());
  testing::internal::CaptureStdout();
  testing::internal::CaptureStderr();
  twk::cli::run_command_line(static_cast<int>(argv.size()), argv.data());
  return testing::internal::GetCapturedStderr() + testing::internal::GetCapturedStdout();
}

/// The first words in the lines of the help.
Arguments words_of_help(const std::string& help, const char* pattern) {
  const std::regex line(pattern);
  Arguments words;
  for (std::sregex_iterator it(help.begin(), help.end(), line), end; it != end; ++it)
    words.push_back((*it)[1]);
  return words;
}

/// Passes each option of the command and of its sub-commands with an empty value and a word after it.
std::size_t try_empty_values(const Arguments& command) {
  const auto with = [&command](std::initializer_list<std::string> words) {
    Arguments all = command;
    all.insert(all.end(), words);
    return all;
  };
  const std::string help = said(with({"--help"}));
  std::size_t tried = 0;
  for (const std::string& option : words_of_help(help, "\n  (?:-\\w,)?(--[-a-z0-9]+)")) {
    const std::string told = said(with({option + "=", "--witness"}));
    const bool refused =
        told.find(option) != std::string::npos && told.find("--witness") == std::string::npos;
    EXPECT_TRUE(refused || told.find("unknown command or option --witness") != std::string::npos) << told;
    ++tried;
  }
  const std::size_t below = help.find("\nSubcommands:");
  if (below != std::string::npos) {
    for (const std::string& inner : words_of_help(help.substr(below), "\n  ([-a-z0-9]+)"))
      tried += try_empty_values(with({inner}));
  }
  return tried;
}

TEST(CommandLine, NoOptionOfAnyCommandTakesAWordForAnEmptyValue) {
  EXPECT_GT(try_empty_values({}), 300U);
}

TEST(CommandLine, HelpNamesTheCommandsButNotWhatIsNotBuilt) {
  const ProgramResult result = twk({"--help"});
  EXPECT_EQ(result.exit_code, 0);
  EXPECT_THAT(result.out, AllOf(HasSubstr("--lab"), HasSubstr("template"), HasSubstr("--domain")));
  EXPECT_EQ(result.err, "");
}

TEST(CommandLine, AFolderWithoutALabIsBadInput) {
  const TemporaryDirectory folder;
  const ProgramResult result = twk({"--lab", folder.path().string(), "lab", "info"});
  EXPECT_EQ(result.exit_code, 65);
  EXPECT_THAT(result.err, HasSubstr("is not a lab"));
}

using CommandsOnALab = TwkLab;

TEST_F(CommandsOnALab, TheEnvironmentNamesTheLabWhenTheCommandLineDoesNot) {
  ProgramRun run;
  run.environment = {{"TWK_LAB", lab()}};
  run.arguments = {TWK_BIN_DIR "/twk", "site", "list", "--json"};
  const ProgramResult result = run_program(run);
  EXPECT_EQ(result.exit_code, 0) << result.err;
  EXPECT_EQ(json_lines(result.out).at(0)["name"], "Head Office");
}

TEST_F(CommandsOnALab, AMovedLabKeepsItsDatabase) {
  std::filesystem::rename(lab(), lab() + " moved");
  const ProgramResult result = twk({"--lab", lab() + " moved", "template", "list"});
  EXPECT_EQ(result.exit_code, 0);
  EXPECT_THAT(result.out, HasSubstr("Staff"));
  std::filesystem::rename(lab() + " moved", lab());
}

TEST_F(CommandsOnALab, TheDatabaseOfOneRunIsNotStored) {
  const TemporaryDirectory other;
  EXPECT_EQ(run({"--db", other.path().string(), "site", "add", "Elsewhere", "--nt-server", "S"}).exit_code,
            0);
  EXPECT_TRUE(std::filesystem::exists(other / "Site.dat"));
  EXPECT_THAT(run({"site", "list"}).out, Not(HasSubstr("Elsewhere")));
}

TEST_F(CommandsOnALab, ColourIsForTerminalsWithoutNoColor) {
  const auto create_on = [&](const char* last, ProgramRun how) {
    return run({"user", "create", "--template", "Staff", "--site", "Head Office", "--ou", kNewStarters, "Al",
                last},
               {}, std::move(how))
        .out;
  };
  ProgramRun terminal;
  terminal.terminal = true;
  terminal.environment = {{"TERM", "xterm"}, {"NO_COLOR", ""}};
  EXPECT_THAT(create_on("Abe", terminal), HasSubstr("\x1b[32mGREEN"));
  terminal.environment = {{"TERM", "xterm"}, {"NO_COLOR", "1"}};
  EXPECT_THAT(create_on("Bo", terminal), AllOf(HasSubstr("GREEN"), Not(HasSubstr("\x1b[32m"))));
  EXPECT_EQ(create_on("Cox", {}), "GREEN  Al.Cox Created User\n");
}

TEST_F(CommandsOnALab, AFullDiskUnderTheOutputIsAFault) {
  const ProgramResult result =
      run_program({.arguments = {"/bin/sh", "-c", "exec \"$0\" --lab \"$1\" lab export >/dev/full",
                                 TWK_BIN_DIR "/twk", lab()},
                   .input = {},
                   .environment = {}});
  EXPECT_EQ(result.exit_code, 70);
  EXPECT_THAT(result.err, HasSubstr("Cannot write to standard output"));
}

TEST_F(CommandsOnALab, ALabThatCannotBeReadSaysWhere) {
  put_file(lab() + "/domain.ldif", "dn: DC=twk,DC=test\nnonsense\n");
  const ProgramResult result = run({"user", "list"});
  EXPECT_EQ(result.exit_code, 65);
  EXPECT_THAT(result.err, AllOf(HasSubstr("domain.ldif"), HasSubstr("2")));
}

}  // namespace
}  // namespace twk::test
