#include "local/user_folders.hpp"

#include <cstdlib>

namespace twk::local {
namespace {

/// The variables are restored at the end.
class UserFolders : public testing::Test {
 protected:
  void TearDown() override {
    for (const auto& [name, value] : before_) {
      if (value)
        setenv(name.c_str(), value->c_str(), 1);
      else
        unsetenv(name.c_str());
    }
  }
  void set(const std::string& name, const char* value) {
    const char* const before = std::getenv(name.c_str());
    before_.emplace(name, before == nullptr ? std::nullopt : std::optional<std::string>(before));
    if (value == nullptr)
      unsetenv(name.c_str());
    else
      setenv(name.c_str(), value, 1);
  }

 private:
  std::map<std::string, std::optional<std::string>> before_;
};

TEST_F(UserFolders, AreThoseOfTheVariables) {
  set("XDG_CONFIG_HOME", "/c");
  set("XDG_DATA_HOME", "/d");
  EXPECT_EQ(user_config_folder(), "/c/tarnwick");
  EXPECT_EQ(user_data_folder(), "/d/tarnwick");
}

TEST_F(UserFolders, LieInTheHomeWithoutThem) {
  set("HOME", "/home/jo");
  set("XDG_CONFIG_HOME", nullptr);
  set("XDG_DATA_HOME", "relative/is/passed/over");
  EXPECT_EQ(user_config_folder(), "/home/jo/.config/tarnwick");
  EXPECT_EQ(user_data_folder(), "/home/jo/.local/share/tarnwick");
}

TEST_F(UserFolders, LieInTheHomeOfTheAccountWhenNothingIsSet) {
  for (const char* const name : {"HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME"})
    set(name, nullptr);
  EXPECT_EQ(user_config_folder().front(), '/');
  EXPECT_TRUE(user_data_folder().ends_with("/.local/share/tarnwick"));
}

}  // namespace
}  // namespace twk::local
