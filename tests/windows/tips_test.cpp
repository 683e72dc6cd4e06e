#include "windows/tips.hpp"

#include <gmock/gmock.h>

#include "support/lab_session.hpp"
#include "windows/start_up.hpp"

namespace twk::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(TipsOfTheDay, AreTheLinesOfTheFileInTheDatabaseDirectoryOrTheShippedOnes) {
  test::StartedLab lab;
  const std::string path = lab.session.dbpath + std::string(windows::kTipFile);
  EXPECT_THAT(windows::read_tips(lab.session, "One.\n\nTwo.\n"), ElementsAre("One.", "Two."));
  for (const auto& [bytes, tips] : std::vector<std::pair<std::string, std::vector<std::string>>>{
           {"First\r\n  Second  \r\n\r\n", {"First", "Second"}},
           {"caf\xE9", {"café"}},
           {"\xEF\xBB\xBF"
            "café",
            {"café"}},
           {"", {}}}) {
    lab.services.files.write(path, bytes);
    EXPECT_EQ(windows::read_tips(lab.session, "One."), tips) << bytes;
  }
}

TEST(ScreenCheck, ChecksOnlyTheWidth) {
  ScriptedDialogs dialogs;
  EXPECT_TRUE(windows::screen_is_wide_enough(dialogs, 1024));
  dialogs.expect("Video Resoultion must be 1024x768 or greater\r\nto run this program.");
  EXPECT_FALSE(windows::screen_is_wide_enough(dialogs, 1023));
  EXPECT_EQ(dialogs.last_title, "TWK - Video Resolution");
  EXPECT_EQ(dialogs.last_icon, platform::Icon::kCritical);
}

}  // namespace
}  // namespace twk::test
