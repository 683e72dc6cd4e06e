#include "format/variables.hpp"
#include "format/replace.hpp"

#include "format/filling.hpp"
#include "format/tags.hpp"
#include "support/world.hpp"
#include "windows/state/import_windows.hpp"

namespace twk::format {
namespace {

class VariablesTest : public test::TestWorld {
 protected:
  void row(std::string name, std::string value) {
    session.variables.ListView1.add({}, std::move(name), {}, {std::move(value)});
  }
  std::string expand(std::string text) { return Replace_Variables(session, std::move(text)); }
};

TEST(FRString, ReplacesEveryOccurrenceOnceFromLeftToRight) {
  struct Case {
    std::string_view text;
    std::string_view find;
    std::string_view replacement;
    std::string_view result;
  };
  const Case cases[] = {
      {"aaa", "a", "aa", "aaaaaa"},
      {"%Server%\\%SERVER%", "%server%", "FS1", "FS1\\FS1"},
      {"aaaa", "aa", "a", "aa"},
      {"abc", "", "x", "abc"},
      {"", "a", "x", ""},
      {"a", "aa", "x", "a"},
      {"Ärger ÄRGER", "ärger", "Ruhe", "Ruhe Ruhe"},
      {"x%UserName%", "%UserName%", "%username%", "x%username%"},
      {"abab", "ab", "", ""},
  };
  for (const Case& one : cases)
    EXPECT_EQ(FRString(one.text, one.find, one.replacement), one.result) << one.text;
}

TEST(FRString, AnExcessiveResultLeavesTheText) {
  const std::string text(2000, 'a');
  EXPECT_EQ(FRString(text, "a", std::string(kMostText / 1000, 'b')), text);
}

TEST_F(VariablesTest, TagsOfTheTemplateAreReplacedInAnyCase) {
  row("Dept", " Sales ");
  row(" Größe ", "L");
  EXPECT_EQ(expand("%dept%/%DEPT%/%GRÖßE%"), "Sales/Sales/L");
  EXPECT_EQ(expand("%none%"), "%none%");
}

TEST_F(VariablesTest, WithoutRowsTheTextStands) {
  EXPECT_EQ(expand("%Dept% 100%"), "%Dept% 100%");
}

TEST_F(VariablesTest, AValueMayHoldTheTagOfALaterRowOnly) {
  row("first", "%second%");
  row("second", "2 %first%");
  EXPECT_EQ(expand("%first%"), "2 %first%");
}

TEST_F(VariablesTest, ABlankNameAndABlankValueAreRowsLikeAnyOther) {
  row("", "!");
  row("gone", "");
  EXPECT_EQ(expand("100%% sure%gone%"), "100! sure");
}

TEST_F(VariablesTest, ATagCompletedByAValueIsExpanded) {
  row("ab", "");
  EXPECT_EQ(expand("%a%ab%b%x"), "x");
}

TEST_F(VariablesTest, TheExpansionOfAValueWithItsOwnTagEnds) {
  row("loop", "%loop%");
  row("grow", "%grow%%grow%x");
  EXPECT_EQ(expand("%loop%"), "%loop%");
  EXPECT_LE(expand("%grow%").size(), 2 * kMostText);
}

TEST_F(VariablesTest, ImportFieldsAreThoseThatTheLineHasAndHoldNoTags) {
  const auto filled = [this](std::string text) {
    return Filling(session, std::move(text)).import_fields().take();
  };
  session.import.ImportFieldCount = 2;
  session.import.ImportFields[1] = "%IMPORT2%";
  session.import.ImportFields[2] = "100%";
  session.import.ImportFields[3] = "left from the line before";
  EXPECT_EQ(filled("%IMPORT1%"), "%IMPORT1%");
  session.import.Importing = true;
  EXPECT_EQ(filled("%import1%,%IMPORT2%,%IMPORT3%,%IMPORT12%"), "%IMPORT2%,100%,%IMPORT3%,%IMPORT12%");
  session.import.ImportFieldCount = 1000;
  session.import.ImportFields[100] = "hundred";
  EXPECT_EQ(filled("%IMPORT100%%IMPORT101%"), "hundred%IMPORT101%");
}

TEST_F(VariablesTest, FieldsUnderHeadingsReachTextsAndNames) {
  session.import.columns_by_heading = {{"ROOM #2", 101}, {"FIRST", 1}, {"GONE", 103}};
  session.import.fields_of_record.resize(102);
  session.import.fields_of_record[0] = "%IMPORT:Room #2%";
  session.import.fields_of_record[100] = "7#";
  const std::string text = "%IMPORT: first %/%import:ROOM  #2%/%IMPORT:Gone%/%IMPORT:no";
  EXPECT_EQ(Filling(session, text).import_fields().take(), text);
  session.import.Importing = true;
  const std::string filled = "%IMPORT:Room #2%/7#/%IMPORT:Gone%/%IMPORT:no";
  EXPECT_EQ(Filling(session, text).import_fields().take(), filled);
  EXPECT_EQ(Filling(session, text + "1%first%").names("Ann", "", "").take(), filled + "A");
}

}  // namespace
}  // namespace twk::format
