
#include "session/log_tab.hpp"
#include "support/world.hpp"
#include "windows/state/form1.hpp"

namespace twk::session {
namespace {

class Log : public test::TestWorld {
 protected:
  std::string file() { return posix_files.read(session.dbpath + "Log.txt"); }
};

TEST_F(Log, ARowHoldsLightMessageDateAndTime) {
  LOG_TAB(session, kGreen, "done");
  LOG_TAB(session, kRed, "stopped");
  const controls::ListView& rows = session.form1.ListView1;
  EXPECT_EQ(rows.at(0).icon, "GREEN");
  EXPECT_EQ(rows.at(0).text, "done");
  EXPECT_EQ(rows.at(0).sub_items.at(0), "31/12/2026 09:05:00");
  EXPECT_EQ(dialogs.beeps, 1) << "only RED beeps";
  session.log.reason("Error Deleting: x", "in use");
  session.log.reason("Error Deleting: x: in use");
  EXPECT_EQ(LOG_TAB(session, kYellow, "Jo deleted."), "Jo deleted.: Error Deleting: x: in use");
  for (const char* const one : {"a", "b", "c", "d", "e", "f"})
    session.log.remember(one);
  EXPECT_EQ(LOG_TAB(session, kYellow, "Created User "), "Created User - a; b; c; d; e; and 1 more");
  EXPECT_THROW(LOG_TAB(session, "Red", "no such light"), base::RuntimeError);
}

TEST_F(Log, ABlockBeginsWithAsterisksTimeAndPerson) {
  session.log.begin_block();
  session.log.line("Creating User:Zoë");
  session.log.close();
  session.log.line("after the end");
  EXPECT_EQ(file(),
            "*****************************************\r\n31/12/2026 09:05:00\r\nUser:admin\r\n"
            "Creating User:Zo\xEB\r\n");
}

TEST_F(Log, NothingThatIsTypedBreaksALine) {
  session.log.open();
  session.log.line("a\r\nGREEN forged\tline");
  EXPECT_EQ(file(), "a<U+000D><U+000A>GREEN forged<U+0009>line\r\n");
}

TEST_F(Log, AFileThatCannotBeWrittenIsReportedOnceABlock) {
  files.fail_from(1, base::error::kDiskFull);
  session.log.begin_block();
  session.log.line("lost");
  session.log.close();
  ASSERT_EQ(session.form1.ListView1.size(), 1U);
  EXPECT_THAT(session.form1.ListView1.at(0).text,
              testing::HasSubstr("Cannot write to Log.txt: the disk refuses"));
}

TEST_F(Log, ListAndFileAreClearedApart) {
  LOG_TAB(session, kGreen, "row");
  session.log.begin_block();
  session.log.close();
  Clear_log(session);
  EXPECT_TRUE(session.form1.ListView1.empty());
  EXPECT_FALSE(file().empty());
  LOG_TAB(session, kGreen, "row");
  dialogs.expect("Sure to delete the log file", platform::Answer::kNo);
  Delete_Log_File(session);
  EXPECT_FALSE(file().empty());
  for (int i = 0; i < 2; ++i) {
    dialogs.expect("Sure to delete the log file", platform::Answer::kYes);
    Delete_Log_File(session);
  }
  EXPECT_FALSE(posix_files.exists(session.dbpath + "Log.txt"));
  EXPECT_EQ(session.form1.ListView1.size(), 1U);
}

TEST_F(Log, TheViewerIsStartedOnTheFile) {
  Log_Detail(session);
  EXPECT_THAT(process.commands,
              testing::ElementsAre(testing::ElementsAre("xdg-open", database.path().string() + "/Log.txt")));
}

}  // namespace
}  // namespace twk::session
