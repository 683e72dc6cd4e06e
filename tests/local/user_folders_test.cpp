#include "local/user_folders.hpp"

#include "support/variable.hpp"

namespace twk::local {
namespace {

TEST(UserFolders, AreThoseOfTheVariables) {
  const test::Variable config("XDG_CONFIG_HOME", "/c");
  const test::Variable data("XDG_DATA_HOME", "/d");
  EXPECT_EQ(user_config_folder(), "/c/tarnwick");
  EXPECT_EQ(user_data_folder(), "/d/tarnwick");
}

TEST(UserFolders, LieInTheHomeWithoutThem) {
  test::Variable home("HOME", "/home/jo");
  const test::Variable config("XDG_CONFIG_HOME");
  const test::Variable data("XDG_DATA_HOME", "relative/is/passed/over");
  EXPECT_EQ(user_config_folder(), "/home/jo/.config/tarnwick");
  EXPECT_EQ(user_data_folder(), "/home/jo/.local/share/tarnwick");
  home.put(std::nullopt);
  EXPECT_EQ(user_config_folder().front(), '/') << "in the home of the account";
  EXPECT_TRUE(user_data_folder().ends_with("/.local/share/tarnwick"));
}

}  // namespace
}  // namespace twk::local
