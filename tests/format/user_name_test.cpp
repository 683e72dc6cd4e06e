#include "format/user_name.hpp"

#include <random>

#include "base/text.hpp"
#include "format/compiled_format.hpp"
#include "format/import_headings.hpp"
#include "format/reference.hpp"
#include "format/tags.hpp"
#include "support/world.hpp"

namespace twk::format {
namespace {

class UserNameTest : public test::TestWorld {
 protected:
  std::string name(std::string_view format, std::string_view first = "John", std::string_view middle = "Fred",
                   std::string_view last = "Smith") {
    return UserName(session, std::string(format), first, middle, last);
  }
};

TEST_F(UserNameTest, FormatsGiveWhatTheirModifiersAskFor) {
  const std::pair<std::string_view, std::string_view> examples[] = {
      {"%first%.%last%", "John.Smith"},
      {"%FIRST% %Middle% %lAsT%", "John Fred Smith"},
      {"1%first%", "J"},
      {"1%first%%last%", "JSmith"},
      {"%last%#1%first%", "SmithJ"},
      {"%first%#1%last%", "JohnS"},
      {"%first%2", "hn"},
      {"%first%2%last%", "hnSmith"},
      {"%first%3%last%", "ohnSmith"},
      {"#U%first%", "JOHN"},
      {"#l%first%", "john"},
      {"#U1%first%", "J"},
      {"#L1%first%", "j"},
      {"#L%first%2", "hn"},
      {"#U%first%2", "HN"},
      {"#U1%first%#L%last%", "Jsmith"},
      {"x#U2%last%y", "xSMy"},
      {"x#L%last%2y", "xthy"},
      {"9%first%", "John"},
      {"%first%9", "John"},
      {"10%first%", "10John"},
      {"%first%0", "John0"},
      {"#%first%", "John"},
      {"a#b", "ab"},
      {"%unknown%", "%unknown%"},
      {"no tag", "no tag"},
      {"", ""},
      {"  %first%  ", "John"},
      {"%first", "%first"},
      {"%%first%%", "%John%"},
      {"%first%%first%%first%", "JohnJohnJohn"},
      {"#Ux%first%", "UJOHN"},
  };
  for (const auto& [format, result] : examples)
    EXPECT_EQ(name(format), result) << format;
}

TEST_F(UserNameTest, ExamplesOfTheReferenceGiveWhatItSays) {
  session.import.Importing = true;
  session.import.ImportFields[2] = "Sales";
  session.import.columns_by_heading = {{heading_key("Department"), 2}};
  session.import.fields_of_record = {"Ann", "Sales"};
  for (const FormatPart& part : all_format_parts()) {
    session.SerialTokenUsed = true;
    session.SerialCounter = 1;
    EXPECT_EQ(name(part.example), part.result) << part.written;
  }
}

TEST_F(UserNameTest, LettersAreCharactersAndNotBytes) {
  EXPECT_EQ(name("1%first%%last%", "Élodie", "", "Ångström"), "ÉÅngström");
  EXPECT_EQ(name("%last%4", "", "", "Ångström"), "tröm");
  EXPECT_EQ(name("#U%last%", "", "", "müller"), "MÜLLER");
  EXPECT_EQ(name("é#L2%first%", "ÖÄ"), "éöä");
  EXPECT_EQ(name("é1%first%"), "éJ");
  EXPECT_EQ(name("#Ué%first%"), "UJOHN");
}

TEST_F(UserNameTest, EmptyNamesGiveNothing) {
  EXPECT_EQ(name("1%first%.%middle%3.%last%", "", "", ""), "..");
  EXPECT_EQ(name("#U2%first%x", ""), "x");
}

TEST_F(UserNameTest, NumberSignNeverComesFromANameButFromAnImportField) {
  session.import.Importing = true;
  session.import.ImportFields[4] = "a#b";
  EXPECT_EQ(name("%first%%IMPORT4%", "J#o"), "Joa#b");
}

TEST_F(UserNameTest, ImportFieldsAreExpandedOnlyDuringAnImport) {
  session.import.ImportFields[1] = "one";
  session.import.ImportFields[99] = "last";
  session.import.ImportFields[100] = "beyond";
  const std::string format = "%import1%-%Import99%-%IMPORT100%-%IMPORT01%-%IMPORT0%";
  EXPECT_EQ(name("%IMPORT1%"), "%IMPORT1%");
  session.import.Importing = true;
  EXPECT_EQ(name(format), "one-last-%IMPORT100%-%IMPORT01%-%IMPORT0%");
}

TEST_F(UserNameTest, SerialStartsFromTheSettingWithAtLeastAsManyDigits) {
  struct Case {
    std::string_view stored;
    std::string_view format;
    std::string_view result;
  };
  const Case cases[] = {
      {"7", "%n%", "7"},
      {"7", "%NNN%", "007"},
      {"1000", "%nn%", "1000"},
      {"x", "a%n%b", "a0b"},
      {"-5", "%nn%", "-05"},
      {"99999", "%n%", "32767"},
      {"7", "%n%.%nn%.%nnn%", "7.07.007"},
  };
  for (const Case& one : cases) {
    session.SerialTokenUsed = false;
    set(session::kSetup, "IncNumber", one.stored);
    EXPECT_EQ(name(one.format), one.result) << one.stored << " " << one.format;
    EXPECT_TRUE(session.SerialTokenUsed);
  }
}

TEST_F(UserNameTest, ASerialInUseIsNotReadAgain) {
  set(session::kSetup, "IncNumber", "7");
  EXPECT_EQ(name("%n%"), "7");
  session.SerialCounter = 8;
  EXPECT_EQ(name("%n%"), "8");
  EXPECT_EQ(registry.reads, 1);
}

TEST_F(UserNameTest, WithoutASerialTagTheCounterIsFreshAndTheFlagStaysDown) {
  session.SerialCounter = 12;
  EXPECT_EQ(name("%first%"), "John");
  EXPECT_EQ(session.SerialCounter, 0);
  EXPECT_FALSE(session.SerialTokenUsed);
}

TEST_F(UserNameTest, AFormatTakenApartGivesTheSameForAllThatItTakes) {
  constexpr std::array<std::string_view, 24> kTokens = {
      "%first%", "%LAST%", "%middle%", "%first%", "%last%", "#U",   "#l",        "#",
      "1",       "3",      "9",        "0",       "%n%",    "%NN%", "%IMPORT2%", "%nn",
      "n%",      "%N%N%",  ".",        " x",      "u",      "%",    "é",         "%IMPORT07%"};
  constexpr std::array<std::string_view, 10> kNames = {"",     "a",   "U",  "Lu", "J o",
                                                       "John", "Xy7", "9a", "#u", "%n%"};
  std::minstd_rand random(11);
  const auto any = [&](const auto& texts) { return std::string(texts.at(random() % texts.size())); };
  session.import.Importing = true;
  int compared = 0;
  for (int i = 0; i < 20'000; ++i) {
    std::string format;
    for (auto tokens = 1 + random() % 6; tokens > 0; --tokens)
      format += any(kTokens);
    const std::array<std::string, 3> names = {any(kNames), any(kNames), any(kNames)};
    session.import.ImportFields[2] = any(kNames);
    const auto compiled = CompiledFormat::of(format);
    const CompiledFormat::Values values{{names[0], names[1], names[2]}, session.import.ImportFields, -12};
    if (!compiled || !compiled->takes(values))
      continue;
    session.SerialTokenUsed = true;
    session.SerialCounter = -12;
    std::string filled;
    compiled->fill(values, filled);
    ASSERT_EQ(filled, UserName(session, format, names[0], names[1], names[2])) << format;
    ++compared;
  }
  EXPECT_GT(compared, 2'000);
  const CompiledFormat::Values ada{{"Ada", "", "Byron"}, session.import.ImportFields, 0};
  for (const std::string_view plain :
       {"9%first%.9%last%", "#L1%first%#L%last%%n%", "%last%%first%2", "1%first%1%middle%%last%"})
    EXPECT_TRUE(CompiledFormat::of(plain) && CompiledFormat::of(plain)->takes(ada)) << plain;
}

TEST_F(UserNameTest, NamesHoldNoTags) {
  EXPECT_EQ(name("%first%", "%first%%first%"), "%first%%first%");
  EXPECT_EQ(name("%first%%last%", "%last%", "", "%n%"), "%last%%n%");
}

TEST_F(UserNameTest, AFormatWithManyTagsOrALongNameIsQuick) {
  std::string format;
  for (int i = 0; i < 900; ++i)
    format += "#1%first%.";
  EXPECT_EQ(name(format).size(), 1800U);
  const std::string long_name(kMostText, 'a');
  EXPECT_EQ(name("%first%", long_name).size(), long_name.size());
}

TEST_F(UserNameTest, BytesThatAreNotTextPassThrough) {
  EXPECT_EQ(name("\xFF%first%\xC3"), "\xFFJohn\xC3");
  EXPECT_EQ(name("1%first%", "\xFF\xFE"), "\xFF");
}

}  // namespace
}  // namespace twk::format
