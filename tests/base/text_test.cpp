#include "base/text.hpp"

#include <array>
#include <random>

namespace twk::base {
namespace {

/// An "é" that is one byte of code page 1252, and not UTF-8.
constexpr const char* kBadByte = "caf\xE9";

TEST(Text, CaseCountsForNothing) {
  for (const auto& [a, b] : std::vector<std::pair<const char*, const char*>>{{"Straße", "STRAßE"},
                                                                             {"Élan ÿ", "éLAN Ÿ"},
                                                                             {"ŁÓDŹ", "łódź"},
                                                                             {"ΣΊΣΥΦΟΣ", "σίσυφοσ"},
                                                                             {"Σίσυφος", "ΣΊΣΥΦΟΣ"},
                                                                             {"ǅ ǆ µ", "Ǆ Ǆ Μ"},
                                                                             {"NGUYỄN ƠN", "nguyễn ơn"},
                                                                             {"Ἰθάκη Ӂ Ҋ", "ἰθάκη ӂ ҋ"},
                                                                             {"Ａ Ⅳ Ա", "ａ ⅳ ա"},
                                                                             {"ЖУК", "жук"}}) {
    EXPECT_TRUE(equals_fold(a, b)) << a;
    EXPECT_EQ(compare_fold(a, b), 0) << a;
    EXPECT_EQ(hash_fold(a), hash_fold(b)) << a;
    EXPECT_EQ(find_fold(std::string("x") + a, b), 1U) << a;
    EXPECT_TRUE(starts_with_fold(a, b));
    EXPECT_EQ(upper(b).size(), std::string_view(b).size()) << "byte positions stay";
    EXPECT_TRUE(equals_fold(lower(a), upper(b)));
  }
  EXPECT_FALSE(equals_fold("e", "é"));
  EXPECT_FALSE(equals_fold("ab", "abc"));
  EXPECT_LT(compare_fold("Ann", "bob"), 0);
  EXPECT_GT(compare_fold("ab", "a"), 0);
  // As the upper-case texts do, wherever characters begin and whether the bytes are text.
  constexpr std::array<std::string_view, 8> kParts = {"a", "A", "é", "É", "è", "\xC3", "longer than a word",
                                                      "ß"};
  std::mt19937 random(4);
  for (int i = 0; i < 5000; ++i) {
    std::array<std::string, 2> texts;
    for (std::string& text : texts) {
      for (auto parts = random() % 5; parts > 0; --parts)
        text += kParts.at(random() % kParts.size());
    }
    const int expected = upper(texts[0]).compare(upper(texts[1]));
    const int compared = compare_fold(texts[0], texts[1]);
    ASSERT_EQ(compared < 0 ? -1 : compared > 0, expected < 0 ? -1 : expected > 0)
        << texts[0] << " " << texts[1];
  }
  EXPECT_EQ(find_fold("abc", ""), 0U);
  EXPECT_EQ(find_fold("abcABC", "c", 3), 5U);
  EXPECT_EQ(find_fold("abc", "d"), npos);
  EXPECT_EQ(upper(kBadByte), "CAF\xE9");
}

TEST(Text, PiecesAreCutByCharacters) {
  EXPECT_EQ(length("Ł€𝄞a"), 4U);
  EXPECT_EQ(length(kBadByte), 4U);
  EXPECT_EQ(left("Łódź", 2), "Łó");
  EXPECT_EQ(right("Łódź", 2), "dź");
  EXPECT_EQ(left("Ł", 9), "Ł");
  EXPECT_EQ(right(kBadByte, 1), "\xE9");
  EXPECT_EQ(mid("CN=Łódź", 4, 2), "Łó");
  EXPECT_EQ(mid("abc", 2), "bc");
  EXPECT_EQ(mid("abc", 4), "");
  EXPECT_EQ(reverse("aŁ€"), "€Ła");
  EXPECT_EQ(trim("  a b\t "), "a b\t") << "blanks, nothing else";
  EXPECT_EQ(trim_right(" a "), " a");
  EXPECT_EQ(trim("   "), "");
}

TEST(Text, Utf8IsDistinguishedFromOtherBytes) {
  for (const char* const bad : {kBadByte, "\x80", "\xC0\xAF", "\xE2\x82", "\xED\xA0\x80", "\xF4\x90\x80\x80",
                                "\xF8\x88\x80\x80\x80"}) {
    EXPECT_FALSE(is_valid_utf8(bad));
    EXPECT_TRUE(is_valid_utf8(to_valid_utf8(bad)));
    EXPECT_NE(to_valid_utf8(bad).find("\uFFFD"), npos);
  }
  const std::string good = "a\u00E9\u20AC\U0001D11E\U0010FFFF";
  EXPECT_TRUE(is_valid_utf8(good));
  EXPECT_EQ(to_utf8(to_utf32(good)), good);
  EXPECT_EQ(to_utf32(kBadByte), U"caf\uFFFD");
}

TEST(Text, PiecesBetweenSeparators) {
  using Pieces = std::vector<std::string>;
  EXPECT_EQ(split("", ','), Pieces());
  EXPECT_EQ(split("a", ','), Pieces{"a"});
  EXPECT_EQ(split(",a,,b,", ','), (Pieces{"", "a", "", "b", ""}));
}

TEST(Text, NumbersAreReadAsFarAsTheyGo) {
  const struct {
    const char* text;
    std::int32_t value;
    std::optional<std::int32_t> whole;
  } cases[] = {{"42", 42, 42},
               {"  -7 ", -7, -7},
               {"12abc", 12, std::nullopt},
               {"", 0, std::nullopt},
               {"x", 0, std::nullopt},
               {"1.5", 1, std::nullopt},
               {"2147483647", 2147483647, 2147483647},
               {"99999999999", 2147483647, std::nullopt},
               {"-99999999999", -2147483647, std::nullopt}};
  for (const auto& one : cases) {
    EXPECT_EQ(val(one.text), one.value) << one.text;
    EXPECT_EQ(to_number(one.text), one.whole) << one.text;
  }
  EXPECT_EQ(to_text(7, 3), "007");
  EXPECT_EQ(to_text(-1234), "-1234");
  EXPECT_EQ(to_text(INT64_MIN), "-9223372036854775808");
  EXPECT_EQ(hex_byte(0xAF), "AF");
  EXPECT_EQ(hex_digit('f'), 15U);
  EXPECT_EQ(hex_digit('g'), std::nullopt);
  EXPECT_EQ(to_hex(0x80071392), "0x80071392");
}

}  // namespace
}  // namespace twk::base
