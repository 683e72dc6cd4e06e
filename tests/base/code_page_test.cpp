#include "base/text.hpp"

namespace twk::base {
namespace {

TEST(CodePage, EveryByteMeansOneCharacterAndNothingElseHasAPlace) {
  std::string bytes;
  for (int byte = 0; byte < 256; ++byte)
    bytes.push_back(static_cast<char>(byte));
  EXPECT_EQ(to_ansi(from_ansi(bytes)), bytes);
  EXPECT_EQ(from_ansi("\x80\x8A\xFC\xDF"), "€Šüß");
  const struct {
    const char* text;
    const char* outside;  ///< the first character with no place
  } cases[] = {{"Müller €", nullptr},
               {"Zażółć", "ż (U+017C)"},
               {"Ж", "Ж (U+0416)"},
               {"e\u0301", "\u0301 (U+0301)"},
               {"\U0001F600", "\U0001F600 (U+1F600)"},
               {"a\xFF", "\uFFFD (U+FFFD)"}};
  for (const auto& one : cases) {
    EXPECT_EQ(find_outside_ansi(one.text),
              one.outside ? std::optional<std::string>(one.outside) : std::nullopt);
    EXPECT_EQ(to_ansi(one.text).has_value(), one.outside == nullptr) << one.text;
  }
  EXPECT_EQ(to_ansi("aЖb", '?'), "a?b");
}

TEST(Characters, ThoseThatAreNotSeenAreFound) {
  const struct {
    std::string text;
    const char* control;
    const char* invisible;
  } cases[] = {{"Jörg Ōé ع", nullptr, nullptr},     {"a\tb", "U+0009", "U+0009"},
               {"\x7F", "U+007F", "U+007F"},        {std::string("a\0b", 3), "U+0000", "U+0000"},
               {"a\u0085", "U+0085", "U+0085"},     {"a\u00ADb", nullptr, "U+00AD"},
               {"jo\u200B", nullptr, "U+200B"},     {"\u202Egnp", nullptr, "U+202E"},
               {"a\u2028b", nullptr, "U+2028"},     {"\uFEFFa", nullptr, "U+FEFF"},
               {"a\U000E0041", nullptr, "U+E0041"}, {"", nullptr, nullptr}};
  const auto text_or_none = [](const char* text) {
    return text == nullptr ? std::nullopt : std::optional<std::string>(text);
  };
  for (const auto& one : cases) {
    EXPECT_EQ(find_control_character(one.text), text_or_none(one.control)) << one.text;
    EXPECT_EQ(find_invisible_character(one.text), text_or_none(one.invisible)) << one.text;
  }
}

}  // namespace
}  // namespace twk::base
