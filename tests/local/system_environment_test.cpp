#include "local/system_environment.hpp"

#include <pwd.h>
#include <unistd.h>

#include "support/variable.hpp"

namespace twk::local {
namespace {

TEST(SystemEnvironmentTest, VariableIsReturnedAsUtf8) {
  SystemEnvironment environment;
  EXPECT_EQ(environment.variable("TWK_TEST_VARIABLE"), "");
  const test::Variable set("TWK_TEST_VARIABLE", "caf\xC3\xA9 \xE9");
  EXPECT_EQ(environment.variable("TWK_TEST_VARIABLE"), "caf\xC3\xA9 \xEF\xBF\xBD");
  EXPECT_EQ(environment.variable(""), "");
}

TEST(SystemEnvironmentTest, UserNameFallsBackStepByStep) {
  SystemEnvironment environment;
  const char* const names[] = {"LOGNAME", "USER", "USERNAME"};
  test::Variable variables[] = {test::Variable(names[0]), test::Variable(names[1]), test::Variable(names[2])};
  const passwd* const account = getpwuid(geteuid());
  EXPECT_EQ(environment.variable("USERNAME"), account == nullptr ? "" : account->pw_name);
  for (std::size_t i = 0; i < std::size(names); ++i) {
    variables[i].put(names[i]);
    EXPECT_EQ(environment.variable("USERNAME"), names[i]);
  }
}

}  // namespace
}  // namespace twk::local
