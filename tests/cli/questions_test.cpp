#include "cli/twk_fixture.hpp"

namespace twk::test {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

struct QuestionCase {
  const char* what;
  Arguments options;
  bool terminal;
  const char* typed;
  bool deleted;
};

class DeletingASite : public TwkLab, public testing::WithParamInterface<QuestionCase> {};

TEST_P(DeletingASite, DependsOnTheAnswer) {
  Arguments arguments = GetParam().options;
  arguments.insert(arguments.end(), {"site", "delete", "head office"});
  ProgramRun how;
  how.terminal = GetParam().terminal;
  // A slow machine tells first how far it is.
  how.awaited = *GetParam().typed == '\0' ? "" : "Sure to Delete";
  const ProgramResult result = run(arguments, GetParam().typed, how);
  EXPECT_EQ(result.exit_code, GetParam().deleted ? 0 : 2);
  EXPECT_THAT(GetParam().terminal ? result.out : result.err, HasSubstr("Sure to Delete Site Record"));
  EXPECT_EQ(run({"site", "list"}).out.empty(), GetParam().deleted);
}

INSTANTIATE_TEST_SUITE_P(Questions, DeletingASite,
                         testing::Values(QuestionCase{"YesOption", {"--yes"}, false, "", true},
                                         QuestionCase{"NobodyToAsk", {}, false, "", false},
                                         QuestionCase{"YesInAPipeIsNoAnswer", {}, false, "yes\n", false},
                                         QuestionCase{"NoInputOnATerminal", {"--no-input"}, true, "", false},
                                         QuestionCase{"TypedYes", {}, true, "perhaps\ny\n", true},
                                         QuestionCase{"TypedNo", {}, true, "n\n", false},
                                         QuestionCase{"CtrlC", {}, true, "\x03", false}),
                         [](const auto& named) { return named.param.what; });

using Passwords = TwkLab;

TEST_F(Passwords, FromStandardInputAreUsedExactlyAsTheyAre) {
  play(R"(
$ user create $STAFF --password-stdin Al Bo => 1
< short
$ user create $STAFF --password-stdin Cy Day
< %first%-Prompt-1
$ user create $STAFF --password-stdin Ed Fox => 65
$ user show Ed.Fox => 2
)");
}

TEST_F(Passwords, ThatAreTypedDoNotShow) {
  ASSERT_EQ(run({"settings", "set", "Setup", "Password", "PROMPT"}).exit_code, 0);
  const ProgramResult result = run(
      {"user", "create", "--template", "Staff", "--site", "Head Office", "--ou", kNewStarters, "Al", "Bo"},
      "Sesame-Open-1\n", at_terminal());
  EXPECT_EQ(result.exit_code, 0) << result.out;
  EXPECT_THAT(result.out, AllOf(HasSubstr("Enter User Password:"), Not(HasSubstr("Sesame"))));
}

TEST_F(Passwords, AreNeitherTakenFromTheCommandLineNorShownUnasked) {
  play(R"(
$ settings set Setup Password Sesame-Open-1 => 64
$ settings set Setup Password
< Sesame-Open-1
)");
  for (const Arguments& command : {Arguments{"get", "setup", "password"}, {"list"}, {"export"}}) {
    play("$ settings $COMMAND\n- Sesame\n$ settings $COMMAND --show-secrets\n| Sesame-Open-1\n",
         {{"$COMMAND", command}});
  }
}

}  // namespace
}  // namespace twk::test
