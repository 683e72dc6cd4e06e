#include "cli/command_line.hpp"

#include <regex>

#include "cli/twk_fixture.hpp"

namespace twk::test {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

TEST(CommandLine, WhatIsRefusedEndsWith64AndSaysWhyOnStandardError) {
  play_without_lab(R"(
$ => 64 twk: 
! subcommand is required
>
$ bogus => 64 unknown command or option bogus
$ help bogus => 64 There is no command "bogus". Try `twk --help`.
$ help user improt => 64 There is no command "improt". Near: "import". Try `twk user --help`.
$ site list --colour => 64 --colour
$ user list => 64 --domain NAME or --lab DIR
$ lab info => 64 needs a lab
$ doctor => 64 no domain is named
$ --lab x --domain twk.test user list => 64 exclude each other
$ --lab x --live user list => 64 exclude each other
$ --domain twk.test --port x user list => 64 65535
$ --domain twk.test --method x user list => 64 ticket, ldaps
$ --domain twk.test --method ldaps user list => 64 needs a user
$ lab import => 64 --live DIR. Try `twk lab import --help`.
$ template edit Staff --home-share --profile-share=P1 => 64 --home-share needs a value
$ user list --ou => 64 --ou needs a value. Try `twk user list
$ --yes= site list => 64 --yes takes no value
$ --lab= user delete Jo --account => 64 --lab: an empty value
$ users delete Jo --account --group= => 64 --group: an empty value
$ user delete Jo --account --exchange-server= --dry-run => 64 --exchange-server: an empty value
$ --lab / user delete Jo --account --exchange-server EX55 => 64 give --mail as well
$ log show --tail= => 64 --tail takes a whole number
$ --yes --no-input site list => 64 excludes
$ user show $BYTES => 64 argument 3 is not valid UTF-8
$ user show $LINES => 64 control character U+000A
$ site add X --nt-server 123456789012345678901 => 64 20 characters
$ template add X --logon-hours FF => 64 42 hexadecimal digits
$ --lab / user import x --template T --site S --groups 9-3 => 64 --groups takes
)",
                   {{"$BYTES", {"a\xff"}}, {"$LINES", {"a\nb"}}});
}

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

TEST(CommandLine, HelpNamesTheCommandsAndAFolderWithoutALabIsBadInput) {
  const TemporaryDirectory folder;
  play_without_lab(R"(
$ --help
| --lab
| template
| --domain
$ --help user
| template
$ --lab $FOLDER lab info => 65 is not a lab
$ help template
| SUBCOMMAND
$ help users move-ou
| Usage: twk users move-ou
| Examples:
| container, groups [--add G]
- set-attribute PROPERTY VALUE sets
$ help format
| SmithJ
| %EXorg%
| Prints the result of a name format.
$ help user improt => 64 Near: "import"
)",
                   {{"$FOLDER", {folder.path().string()}}});
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
  play(R"(
$ --db $OTHER site add Elsewhere --nt-server S
$ --db $OTHER site list
| Elsewhere
$ site list
- Elsewhere
)",
       {{"$OTHER", {other.path().string()}}});
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
  play("$ user list => 65 domain.ldif\n! 2");
}

}  // namespace
}  // namespace twk::test
