#include "creation/command_text.hpp"

#include <gmock/gmock.h>

#include "support/lab_session.hpp"
#include "windows/state/import_windows.hpp"

namespace twk::creation {
namespace {

using Words = std::vector<std::string>;

TEST(CommandText, QuotesHoldWordsTogether) {
  const struct {
    std::string text;
    Words words;
    std::string shown;
  } cases[] = {
      {"", {}, ""},
      {" \t ", {}, ""},
      {"a  b\tc ", {"a", "b", "c"}, "a b c"},
      {"\"C:\\My Scripts\\a.cmd\" \"x y\"z",
       {"C:\\My Scripts\\a.cmd", "x yz"},
       "\"C:\\My Scripts\\a.cmd\" \"x yz\""},
      {"a \"\" b", {"a", "", "b"}, "a \"\" b"},
      {"a \"b c", {"a", "b c"}, "a \"b c\""},
      {"it's $HOME", {"it's", "$HOME"}, "it's $HOME"},
  };
  for (const auto& one : cases) {
    EXPECT_EQ(split_command(one.text), one.words) << one.text;
    EXPECT_EQ(shown_command(one.words), one.shown);
  }
}

TEST(CommandText, AValueNeverMakesOrEndsAWord) {
  test::StartedLab world;
  const controls::ListView& variables = world.session.variables.ListView1;
  const_cast<controls::ListView&>(variables).add({}, "Home Town", {}, {"x\" y"});
  const std::string values[] = {"Ann\" --role admin --x \"",
                                "\"",
                                "\"\"",
                                "a b",
                                "a\tb",
                                "-rf",
                                "--",
                                "",
                                "$(id)",
                                "`id`",
                                "a;b",
                                "a|b",
                                "a&&b",
                                "a>b",
                                "*",
                                "~",
                                "\\",
                                "a\\",
                                "\\\"",
                                "'",
                                "a' 'b",
                                "a\nb",
                                "${HOME}",
                                "Zo\xC3\xAB",
                                "\xE2\x80\xAE"
                                "a",
                                "=",
                                "a=b",
                                "@file",
                                "/etc/passwd",
                                "..\\..\\x",
                                "a,b",
                                "(",
                                "\xC2\xA0",
                                "\" \" \" \"",
                                "-- -x",
                                "\"-x"};
  for (const std::string& value : values) {
    EXPECT_EQ(
        command_words(world.session,
                      R"(run %UserName% "%username%" --first=%first% "a b %LAST% c" x%middle%"y z" "" " " )"
                      R"(%home town% -- %Last%)",
                      {value, value, value, value}, {}),
        (Words{"run", value, value, "--first=" + value, "a b " + value + " c", "x" + value + "y z", "", " ",
               "x\" y", "--", value}))
        << value;
  }
  // A tag, or the sign that formats drop, may change a value, and never the number of words.
  for (const std::string value :
       {"%DOMAIN%", "%UserName%", "%first%", "%home town%", "100%", "#", "#U", "%", "%%"})
    EXPECT_EQ(command_words(world.session, "run %first% \"%last%\" end", {"jo", value, "", value}, {}).size(),
              4U)
        << value;
}

}  // namespace
}  // namespace twk::creation
