#include "windows/import_options.hpp"

#include "support/world.hpp"
#include "windows/state/import_windows.hpp"

namespace twk::windows {
namespace {

class ImportOptionsTest : public test::TestWorld {
 protected:
  windows::ImportGrps& window = session.import_grps;
};

TEST_F(ImportOptionsTest, TheRangeChoosesTheButton) {
  struct Case {
    std::string_view start;
    std::string_view finish;
    int button;
  };
  const Case cases[] = {{"0", "0", 0}, {"0", "99", 1}, {"3", "7", 2}, {"0", "5", 2}, {"x", "0", 2}};
  ImportGrps_Load(session);
  EXPECT_EQ(window.Grp_Range.index.get(), 0);
  EXPECT_EQ(window.UpperRange.text.get(), "0");
  for (const Case& one : cases) {
    set("Setup", "ImportGroupsStart", one.start);
    set("Setup", "ImportGroupsFinish", one.finish);
    set("Setup", "AccountExpire", "%IMPORT9%");
    ImportGrps_Load(session);
    EXPECT_EQ(window.Grp_Range.index.get(), one.button) << one.start << "-" << one.finish;
    EXPECT_EQ(window.LowerRange.enabled.get(), one.button == 2);
    EXPECT_EQ(window.LowerRange.text.get(), one.start);
    EXPECT_EQ(window.Expiredate.text.get(), "%IMPORT9%");
  }
}

TEST_F(ImportOptionsTest, AButtonSetsTheRange) {
  const std::string_view upper[] = {"0", "99", "99"};
  for (int button = 0; button < 3; ++button) {
    window.Grp_Range.index = button;
    Grp_Range_Click(session);
    EXPECT_EQ(window.LowerRange.text.get(), "0");
    EXPECT_EQ(window.UpperRange.text.get(), upper[button]);
    EXPECT_EQ(window.UpperRange.enabled.get(), button == 2);
  }
}

TEST_F(ImportOptionsTest, ALimitIsANumberUpToNinetyNine) {
  for (const char* const bad : {"", "x", "-1", "100", "1,5"}) {
    window.LowerRange.text = bad;
    dialogs.expect("Enter Number 0-99");
    LowerRange_Change(session);
    window.UpperRange.text = bad;
    dialogs.expect("Enter Number 0-99");
    UpperRange_Change(session);
  }
  window.LowerRange.text = "0";
  LowerRange_Change(session);
  window.UpperRange.text = "99";
  UpperRange_Change(session);
}

TEST_F(ImportOptionsTest, ARangeIsStoredOnlyWhenItIsOne) {
  window.LowerRange.text = "7";
  window.UpperRange.text = "3";
  window.Expiredate.text = "31/12/2027";
  dialogs.expect("Start value cannot be greater then Finish value");
  EXPECT_FALSE(ImportGrps_OK(session));
  window.UpperRange.text = "x";
  dialogs.expect("Enter Number 0-99");
  EXPECT_FALSE(ImportGrps_OK(session));
  EXPECT_EQ(setting("Setup", "ImportGroupsStart"), "(none)");
  window.UpperRange.text = "10";
  window.Expiredate.text = "1.2.30";
  dialogs.expect("\"1.2.30\" is 1/02/1930, which is before 1970: write the year with four digits.");
  EXPECT_FALSE(ImportGrps_OK(session));
  window.Expiredate.text = "31/12/2027";
  EXPECT_TRUE(ImportGrps_OK(session));
  EXPECT_EQ(setting("Setup", "ImportGroupsStart"), "7");
  EXPECT_EQ(setting("Setup", "ImportGroupsFinish"), "10");
  EXPECT_EQ(setting("Setup", "AccountExpire"), "31/12/2027");
  window.LowerRange.text = "9";
  ImportGrps_Cancel(session);
  EXPECT_EQ(setting("Setup", "ImportGroupsStart"), "7");
  EXPECT_EQ(window.LowerRange.text.get(), "7");
}

}  // namespace
}  // namespace twk::windows
