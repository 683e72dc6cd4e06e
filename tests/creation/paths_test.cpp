#include "creation/paths.hpp"

#include "support/world.hpp"
#include "windows/create_user.hpp"
#include "windows/state/form1.hpp"

namespace twk::creation {
namespace {

class Paths : public test::TestWorld {
 protected:
  windows::NewUserView view{session.form1};
};

TEST(NetworkPath, HasItsServerAndItsShare) {
  struct Case {
    std::string path;
    std::string server;
    std::string share;
  };
  const std::vector<Case> cases = {
      {"\\\\srv\\share", "srv", "share"},
      {"\\\\srv\\share\\a\\b", "srv", "share"},
      {"\\\\srv", "", ""},
      {"C:\\x", "", ""},
      {"", "", ""},
      {"\\", "", ""},
      {"\\\\", "", ""},
      {"\\\\\\", "", ""},
      {"\\\\srv\\", "srv", ""},
  };
  for (const Case& one : cases) {
    EXPECT_EQ(Get_Server_Name(one.path), one.server) << one.path;
    EXPECT_EQ(Get_Share_Name(one.path), one.share) << one.path;
  }
}

TEST_F(Paths, ADriveLetterPathGoesThroughTheAdministrativeShare) {
  CreationRun run(session, {}, view);
  run.site.server = "S";
  run.user_template.ProfileDir = "D:\\Profiles\\%username%";
  run.user_template.ProfilePath = "\\\\%Server%\\P\\%UserName%";
  run.SamName = "jo ";
  ResolvePaths(run);
  EXPECT_EQ(run.paths.ProfileLocalDir, "D:\\Profiles\\jo");
  EXPECT_EQ(run.paths.ProfileShareDir, "\\\\S\\D$\\Profiles\\jo");
  EXPECT_EQ(run.paths.ProfileText, "\\\\S\\P\\jo");
  EXPECT_TRUE(run.paths.WantProfileDir);
  EXPECT_FALSE(run.paths.WantHomeDir);
  EXPECT_EQ(run.paths.HomeDirText, "");
}

TEST_F(Paths, ASharePointIsFollowedByTheLastPartOfThePath) {
  CreationRun run(session, {}, view);
  run.site.server = "S";
  run.user_template.HomeDir = "D:\\Users\\%UserName%";
  run.user_template.HomeSharePoint = "homes\\";
  run.SamName = "jo";
  ResolvePaths(run);
  EXPECT_EQ(run.paths.HomeShareDir, "\\\\S\\homes\\jo");
  run.user_template.HomeSharePoint = "%UserName%$\\";
  ResolvePaths(run);
  EXPECT_EQ(run.paths.HomeShareDir, "\\\\S\\jo$\\jo");
}

}  // namespace
}  // namespace twk::creation
