#include "cli/terminal/display.hpp"

#include "cli/terminal/output.hpp"

namespace twk::cli {
namespace {

struct WidthCase {
  const char* what;
  const char* text;
  std::size_t width;
};

class DisplayWidth : public testing::TestWithParam<WidthCase> {};

TEST_P(DisplayWidth, IsTheNumberOfColumns) {
  EXPECT_EQ(display_width(GetParam().text), GetParam().width);
}

INSTANTIATE_TEST_SUITE_P(Display, DisplayWidth,
                         testing::Values(WidthCase{"Nothing", "", 0}, WidthCase{"Plain", "Smith", 5},
                                         WidthCase{"Accented", "Zürich", 6},
                                         WidthCase{"CombiningMark", "Zu\xCC\x88rich", 6},
                                         WidthCase{"Wide", "東京", 4}, WidthCase{"Korean", "서울", 4},
                                         WidthCase{"Pictograph", "😀", 2},
                                         WidthCase{"BrokenBytes", "a\xFF", 2}),
                         [](const auto& named) { return named.param.what; });

TEST(Display, APieceIsCutBetweenCharacters) {
  EXPECT_EQ(clip("東京都", 5), "東京");
  EXPECT_EQ(clip("Zürich", 2), "Zü");
  EXPECT_EQ(clip("Ann", 9), "Ann");
}

TEST(Display, ParagraphsAreBrokenBetweenWords) {
  const std::string word(40, 'x');
  EXPECT_EQ(fill("  a: " + word + " " + word + " b", 5), "  a: " + word + "\n     " + word + " b");
  EXPECT_EQ(fill("- " + word + word, 2), "- " + word + word);
}

TEST(Display, WhatATerminalWouldObeyIsMadeVisible) {
  EXPECT_EQ(printable("a\x1b[2Jb\nc"), "a<U+001B>[2Jb<U+000A>c");
  EXPECT_EQ(printable("a\r\nb\x07", true), "a\nb<U+0007>");
  EXPECT_EQ(printable("jo\u202exof \u200c"), "jo<U+202E>xof \u200c");
  EXPECT_EQ(printable("a\xFF"), "a\uFFFD");
}

class OutputText : public testing::Test {
 protected:
  /// What the use of an output writes to standard output.
  static std::string written(bool json, const std::function<void(Output&)>& use) {
    testing::internal::CaptureStdout();
    Output output;
    output.set_json(json);
    use(output);
    output.finish();
    return testing::internal::GetCapturedStdout();
  }

  const std::vector<Column> columns_ = {{"name", "Name"}, {"on", "On"}, {"groups", "Groups"}};
  const std::vector<Json> rows_ = {{{"name", "東京"}, {"on", true}, {"groups", Json::array({"a", "b"})}},
                                   {{"name", "Zoë\x1b"}, {"on", false}, {"groups", Json::array()}}};
};

TEST_F(OutputText, ColumnsStandUnderTheirHeadings) {
  EXPECT_EQ(written(false, [&](Output& output) { output.table(columns_, rows_); }),
            "Name         On   Groups\n"
            "東京         yes  a, b\n"
            "Zoë<U+001B>  no   \n");
}

TEST_F(OutputText, JsonIsOneObjectPerLineWithItsKeysInOrder) {
  EXPECT_EQ(written(true, [&](Output& output) { output.table(columns_, {rows_.front()}); }),
            "{\"name\":\"東京\",\"on\":true,\"groups\":[\"a\",\"b\"]}\n");
  EXPECT_EQ(written(true,
                    [&](Output& output) {
                      output.result({{"a", "\xFF"}}, "text");
                    }),
            "{\"a\":\"\uFFFD\"}\n");
}

TEST_F(OutputText, NoRowsGiveNoHeading) {
  EXPECT_EQ(written(false, [&](Output& output) { output.table(columns_, {}); }), "");
}

}  // namespace
}  // namespace twk::cli
