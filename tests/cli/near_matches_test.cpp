#include "cli/parser/near_matches.hpp"

#include "cli/terminal/failures.hpp"

namespace twk::cli {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(NearMatches, AreListedNearestFirstAndAtMostThree) {
  EXPECT_THAT(near_matches("staf", {"Stuff", "Staff", "Sales", "Stag", "Stab"}),
              ElementsAre("Staff", "Stag", "Stab"));
}

TEST(NearMatches, IncludeNamesThatContainTheRequestedOne) {
  EXPECT_THAT(near_matches("sales", {"OU=Sales,DC=twk,DC=test", "Personnel"}),
              ElementsAre("OU=Sales,DC=twk,DC=test"));
}

TEST(NearMatches, LeaveOutWhatHasLittleInCommon) {
  EXPECT_THAT(near_matches("London", {"Paris", "Rome"}), IsEmpty());
  EXPECT_THAT(near_matches("", {"Paris"}), IsEmpty());
}

TEST(FindName, ReturnsTheNameAsSpelledInTheList) {
  EXPECT_EQ(find_name("template", " ÉTÉ", {"Hiver   ", "Été     "}), "Été     ");
  EXPECT_THROW(find_name("template", "Ete", {"Été"}), Refused);
}

}  // namespace
}  // namespace twk::cli
