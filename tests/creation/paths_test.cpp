#include "creation/paths.hpp"

#include "session/form1.hpp"
#include "session/windows.hpp"
#include "support/world.hpp"

namespace twk::creation {
namespace {

using Paths = test::TestWorld;

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
  session.form1.NTSERVER.text = std::string(" S ");
  session.form1.Profilepath.text = std::string(" D:\\Profiles\\%username% ");
  session.form1.propath.text = std::string("\\\\%Server%\\P\\%UserName%");
  CreationRun run(session);
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
  session.form1.NTSERVER.text = std::string("S");
  session.form1.Homedirpath.text = std::string("D:\\Users\\%UserName%");
  session.share_points.HomeSharePoint = "homes\\";
  CreationRun run(session);
  run.SamName = "jo";
  ResolvePaths(run);
  EXPECT_EQ(run.paths.HomeShareDir, "\\\\S\\homes\\jo");
  session.share_points.HomeSharePoint = "%UserName%$\\";
  ResolvePaths(run);
  EXPECT_EQ(run.paths.HomeShareDir, "\\\\S\\jo$\\jo");
}

}  // namespace
}  // namespace twk::creation
