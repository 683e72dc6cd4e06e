#include "windows/share_points_form.hpp"

#include "support/world.hpp"
#include "windows/state/form1.hpp"
#include "windows/state/import_windows.hpp"

namespace twk::windows {
namespace {

class SharePointsTest : public test::TestWorld {
 protected:
  windows::frmSharePoints& window = session.share_points;
};

TEST_F(SharePointsTest, SharePointsEndInABackslashAndLoseALeadingOne) {
  struct Case {
    std::string_view typed;
    std::string_view kept;
  };
  const Case cases[] = {{"\\homes", "homes\\"},
                        {"homes\\", "homes\\"},
                        {"\\\\homes\\a", "\\homes\\a\\"},
                        {"", ""},
                        {" %UserName%$ ", "%UserName%$\\"}};
  for (const Case& one : cases) {
    window.HomeShareName.text = std::string(one.typed);
    window.ProfileShareName.text = std::string(one.typed);
    EXPECT_TRUE(frmSharePoints_btnOK_Click(session));
    EXPECT_EQ(window.HomeSharePoint, one.kept) << one.typed;
    EXPECT_EQ(window.ProfileSharePoint, one.kept) << one.typed;
  }
}

TEST_F(SharePointsTest, CancelAndControlCharactersKeepTheOldValues) {
  window.HomeSharePoint = "homes\\";
  window.HomeShareName.text = "other\n";
  EXPECT_FALSE(frmSharePoints_btnOK_Click(session));
  EXPECT_EQ(status(), "Control character U+000A not allowed");
  frmSharePoints_btnCancel_Click(session);
  EXPECT_EQ(window.HomeSharePoint, "homes\\");
  EXPECT_EQ(window.HomeShareName.text.get(), "homes\\");
}

}  // namespace
}  // namespace twk::windows
