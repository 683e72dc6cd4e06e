#include "local/system_environment.hpp"

#include <pwd.h>
#include <unistd.h>

#include <cstdlib>

namespace twk::local {
namespace {

/// Sets the variables of a person's name, and restores them.
class SystemEnvironmentTest : public testing::Test {
 protected:
  void SetUp() override {
    for (const char* const name : {"USERNAME", "USER", "LOGNAME"}) {
      const char* const value = std::getenv(name);
      if (value != nullptr)
        before_[name] = value;
      unsetenv(name);
    }
  }
  void TearDown() override {
    for (const char* const name : {"USERNAME", "USER", "LOGNAME"})
      unsetenv(name);
    for (const auto& [name, value] : before_)
      setenv(name.c_str(), value.c_str(), 1);
    unsetenv("TWK_TEST_VARIABLE");
  }

  SystemEnvironment environment_;
  std::map<std::string, std::string> before_;
};

TEST_F(SystemEnvironmentTest, VariableIsReturnedAsUtf8) {
  EXPECT_EQ(environment_.variable("TWK_TEST_VARIABLE"), "");
  setenv("TWK_TEST_VARIABLE", "caf\xC3\xA9 \xE9", 1);
  EXPECT_EQ(environment_.variable("TWK_TEST_VARIABLE"), "caf\xC3\xA9 \xEF\xBF\xBD");
  EXPECT_EQ(environment_.variable(""), "");
}

TEST_F(SystemEnvironmentTest, UserNameFallsBackStepByStep) {
  const passwd* const account = getpwuid(geteuid());
  EXPECT_EQ(environment_.variable("USERNAME"), account == nullptr ? "" : account->pw_name);
  for (const char* const name : {"LOGNAME", "USER", "USERNAME"}) {
    setenv(name, name, 1);
    EXPECT_EQ(environment_.variable("USERNAME"), name);
  }
}

}  // namespace
}  // namespace twk::local
