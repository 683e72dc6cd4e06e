#include "batch/property_file.hpp"

#include "batch/property_world.hpp"
#include "support/kept_view.hpp"
#include "windows/state/ad_properties.hpp"
#include "windows/state/multi_user.hpp"

namespace twk::batch {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

/// The users are in the list under their logon names.
class FileWorld : public PropertyWorld {
 public:
  explicit FileWorld(std::string_view command_line = "") : PropertyWorld(command_line) {
    session.multi_user.ListView2.clear();
    for (const std::string name : {"jo", "ann", "kim"})
      session.multi_user.ListView2.add(path_of(name), name, "USER");
    choose("title");
  }
  std::string file(std::string_view bytes) {
    const std::string path = (folder.path() / "titles.csv").string();
    std::ofstream(path, std::ios::binary) << bytes;
    return path;
  }
  bool run(std::string_view bytes, const FileRules& rules = {}) {
    test::KeptView view(session);
    PropertyOrder order = windows::property_order(session).value();
    order.user_done = take_outcome();
    counts = change_from_file(session, order, "titles.csv", bytes, view, rules);
    return counts.failure.empty();
  }
  /// Presses the button and says yes to the question.
  void press(std::string_view bytes) {
    dialogs.expect(
        "This will import AD properties for the users in the csv file\r\n"
        "Format must be Username,ADValue");
    dialogs.expect_input("Open file to import", file(bytes));
    counts = windows::DELIMPORT_Click(session, take_outcome());
  }
};

class PropertyFile : public testing::Test, public FileWorld {};

TEST_F(PropertyFile, SetsASeparateValueForEachUser) {
  press("jo,Clerk\r\n ann ,Head of Sales\nkim,Clerk of %UserName%");
  EXPECT_EQ(property("jo", "title"), "Clerk");
  EXPECT_EQ(property("ann", "title"), "Head of Sales");
  EXPECT_EQ(property("kim", "title"), "Clerk of kim Lee");
  EXPECT_THAT(outcomes, ElementsAre("1 jo", "2 ann", "3 kim"));
  EXPECT_EQ(status(), "Import of AD Properties has completed, check log for errors");
  EXPECT_THAT(log_tab(), ElementsAre("GREEN  AD Property changed for 1 users.",
                                     "GREEN  AD Property changed for 1 users.",
                                     "GREEN  AD Property changed for 1 users."));
  EXPECT_THAT(log(), HasSubstr("Importing users to change AD value title\n"));
}

TEST_F(PropertyFile, ValueIsEverythingAfterTheFirstComma) {
  for (const auto& [line, value] : std::vector<std::pair<std::string, std::string>>{
           {"jo,Clerk, Head, and more,", "Clerk, Head, and more,"},
           {"jo,\"Clerk, Head\"", "\"Clerk, Head\""},
           {"jo,\"", "\""},
           {"jo,,Clerk", ",Clerk"},
           {"jo, Clerk ", " Clerk "},
           {"\xEF\xBB\xBFjo,Fran\xC3\xA7ois", "Fran\xC3\xA7ois"},
           {"jo,Fran\xE7ois", "Fran\xC3\xA7ois"},
           {"jo,\xF0\x9F\x98\x80", "\xF0\x9F\x98\x80"},
           {"JO,Upper", "Upper"}}) {
    EXPECT_TRUE(run(line)) << line;
    EXPECT_EQ(property("jo", "title"), value) << line;
  }
}

TEST_F(PropertyFile, UserWithAccentsIsFoundInEitherEncoding) {
  make_user("zo\xC3\xAB", "Zo\xC3\xAB");
  session.multi_user.ListView2.add(path_of("zo\xC3\xAB"), "zo\xC3\xAB", "USER");
  EXPECT_TRUE(run("zo\xEB,Latin"));
  EXPECT_EQ(property("zo\xC3\xAB", "title"), "Latin");
  EXPECT_TRUE(run("ZO\xC3\x8B,Unicode"));
  EXPECT_EQ(property("zo\xC3\xAB", "title"), "Unicode");
}

TEST_F(PropertyFile, UserWhoIsNotInTheListIsSilentlySkipped) {
  make_user("elsewhere");
  press("nobody,Clerk\nelsewhere,Clerk\n*,Clerk\n,Clerk\njo)(cn=*,Clerk\njo,Clerk\n");
  EXPECT_THAT(outcomes,
              ElementsAre("1 no nobody", "2 no elsewhere", "3 no *", "4 no ", "5 no jo)(cn=*", "6 jo"));
  EXPECT_EQ(counts.skipped, 5);
  EXPECT_THAT(log_tab(), ElementsAre("GREEN  AD Property changed for 1 users."));
  EXPECT_THAT(log(), HasSubstr("titles.csv, line 1: nobody: There is no such user in the list\n"));
  EXPECT_EQ(property("elsewhere", "title"), "");
}

TEST_F(PropertyFile, UserIsFoundByTheLogonNameWhenTheListShowsAnother) {
  controls::ListView& list = session.multi_user.ListView2;
  list.clear();
  list.add(path_of("jo"), "Lee", "USER");
  list.add(path_of("ann"), "Lee", "USER");
  EXPECT_TRUE(run("ann,Clerk\nLee,Head\n"));
  EXPECT_EQ(property("ann", "title"), "Clerk");
  EXPECT_EQ(property("jo", "title"), "") << "one of two is nobody's choice";
  EXPECT_THAT(outcomes, ElementsAre("1 ann", "2 not Lee"));
  EXPECT_THAT(log_tab().back(), HasSubstr("titles.csv, line 2: Lee: The list has 2 users of that name"));
}

TEST_F(PropertyFile, FailedLineIsReportedWithItsPlaceAndTheRunContinues) {
  choose("countryCode");
  EXPECT_TRUE(run("jo,many\n\n  \nann,\nkim,44\n"));
  EXPECT_THAT(outcomes, ElementsAre("1 not jo", "4 not ann", "5 kim"));
  EXPECT_EQ(property("kim", "countryCode"), "44");
  EXPECT_THAT(
      log_tab(),
      ElementsAre(HasSubstr("changed for 0 users. - had errors: Error Number: "),
                  HasSubstr("YELLOW  titles.csv, line 1: jo: The value of countryCode is not"),
                  HasSubstr("changed for 0 users. - had errors: Error Number: "),
                  HasSubstr("YELLOW  titles.csv, line 4: ann: "), "GREEN  AD Property changed for 1 users."));
  EXPECT_THAT(log(), HasSubstr("titles.csv, line 1: jo: The value of countryCode is not"));
  EXPECT_EQ(counts.users, 1);
  EXPECT_EQ(counts.errors, 2);
}

TEST_F(PropertyFile, LineWithoutACommaSetsNoValueAndEndsTheRun) {
  change({"jo"}, "title", "Clerk");
  choose("WTSWorkingDirectory");
  outcomes.clear();
  run("kim,D:\\\njo\nann,D:\\\n");
  EXPECT_THAT(outcomes, ElementsAre("1 kim", "2 jo"));
  EXPECT_THAT(log_tab().back(),
              HasSubstr("titles.csv, line 2: jo: There is no comma after the name; the run ends there"));
}

TEST_F(PropertyFile, StrictRulesRefuseALineWithoutACommaInstead) {
  EXPECT_TRUE(run("jo,Clerk\njo\nann,Clerk\n", {.find = {}, .strict = true}));
  EXPECT_THAT(outcomes, ElementsAre("1 jo", "2 not jo", "3 ann"));
  EXPECT_EQ(property("jo", "title"), "Clerk");
  EXPECT_EQ(counts.errors, 1);
}

TEST_F(PropertyFile, StrictRulesRefuseWordsThatNoSettingKnows) {
  const FileRules strict{.find = {}, .strict = true};
  choose("WTSTimeoutIdle");
  EXPECT_TRUE(run("jo,7 mins\nann,5 MINS\nkim,\n", strict));
  EXPECT_THAT(outcomes, ElementsAre("1 not jo", "2 ann", "3 not kim"));
  EXPECT_THAT(log_tab().front(),
              HasSubstr("titles.csv, line 1: jo: \"7 mins\" is not one of Never, 1 min, "));
  outcomes.clear();
  choose("WTSAllowLogonTerminalServer");
  EXPECT_TRUE(run("jo,1\nann,no\n", strict));
  EXPECT_THAT(outcomes, ElementsAre("1 not jo", "2 ann"));
  outcomes.clear();
  EXPECT_TRUE(run("jo,1\n")) << "which is no";
  EXPECT_THAT(outcomes, ElementsAre("1 jo"));
}

TEST_F(PropertyFile, UsersMayBeFoundElsewhere) {
  session.multi_user.ListView2.clear();
  const auto find = [&](const std::string& name) -> std::optional<std::string> {
    if (name == "two")
      base::raise(platform::ads_error::kNoSuchObject, "There are two");
    return name == "me" ? std::optional(path_of("jo")) : std::nullopt;
  };
  EXPECT_TRUE(run("me,Clerk\nyou,Clerk\ntwo,Clerk\n", {.find = find}));
  EXPECT_EQ(property("jo", "title"), "Clerk");
  EXPECT_THAT(outcomes, ElementsAre("1 jo", "2 no you", "3 not two"));
}

TEST_F(PropertyFile, SelectionAndListStayAsTheyAre) {
  session.multi_user.ListView1.add(path_of("Staff"), "Staff", "W2KGRP");
  account("Staff")->Add(path_of("kim"));
  EXPECT_TRUE(run("jo,Clerk\n"));
  EXPECT_EQ(property("kim", "title"), "") << "is selected, and not in the file";
  EXPECT_EQ(session.multi_user.ListView1.size(), 1U);
  EXPECT_EQ(session.multi_user.ListView2.size(), 3U);
}

TEST_F(PropertyFile, LogsEachLineWhenStartedForDebugging) {
  FileWorld world("/DEBUG");
  EXPECT_TRUE(world.run("jo,Clerk, Head\n"));
  EXPECT_THAT(world.log(), HasSubstr("Line=jo,Clerk, Head\nAD Property = Clerk, Head\nUser = jo\n"));
  FileWorld quiet;
  EXPECT_TRUE(quiet.run("jo,Clerk, Head\n"));
  EXPECT_THAT(quiet.log(), Not(HasSubstr("Line=")));
}

TEST_F(PropertyFile, PropertyMustBeChosenFirst) {
  choose("");
  dialogs.expect("Select the AD Propery to change first, before importing the file.");
  windows::DELIMPORT_Click(session);
  EXPECT_EQ(dialogs.last_title, "AD Propeties Import");
}

TEST_F(PropertyFile, NothingHappensWithoutConsentOrAFile) {
  dialogs.expect("This will import AD properties", platform::Answer::kCancel);
  windows::DELIMPORT_Click(session);
  EXPECT_THAT(log(), Not(HasSubstr("Importing users")));
  dialogs.expect("This will import AD properties");
  dialogs.expect_input("Open file to import", "");
  windows::DELIMPORT_Click(session);
  EXPECT_THAT(outcomes, IsEmpty());
  EXPECT_FALSE(windows::is_running(session.multi_user));
}

TEST_F(PropertyFile, FileThatCannotBeReadIsNamed) {
  dialogs.expect("This will import AD properties");
  dialogs.expect_input("Open file to import", (folder.path() / "no.csv").string());
  dialogs.expect("no.csv");
  windows::DELIMPORT_Click(session);
  EXPECT_THAT(log(), HasSubstr("no.csv"));
  EXPECT_FALSE(windows::is_running(session.multi_user));
}

/// Lets `press` happen at the second moment that a run lets events in.
void press_once(FileWorld& world, std::function<void()> press) {
  world.dialogs.on_events = [press = std::move(press), turns = 0]() mutable {
    if (++turns == 2)
      press();
  };
}

TEST_F(PropertyFile, CancelEndsTheRunBeforeTheNextLine) {
  press_once(*this, [&] {
    EXPECT_EQ(session.ad_properties.CHANGE_AD.caption, std::string("&Cancel"));
    EXPECT_FALSE(session.multi_user.DELIMPORT.enabled);
    windows::DELIMPORT_Click(session);
    windows::CHANGE_AD_Click(session);
  });
  press("jo,Clerk\nann,Clerk\nkim,Clerk\n");
  EXPECT_THAT(outcomes, ElementsAre("1 jo"));
  EXPECT_TRUE(counts.stopped);
  EXPECT_EQ(session.ad_properties.CHANGE_AD.caption, std::string("C&hange"));
  EXPECT_TRUE(session.multi_user.DELIMPORT.enabled);
}

TEST_F(PropertyFile, CancelEndsTheRunOverTheSelectionToo) {
  press_once(*this, [&] { windows::CHANGE_AD_Click(session); });
  change({"jo", "ann", "kim"}, "title", "Clerk");
  EXPECT_LT(outcomes.size(), 3U);
  EXPECT_THAT(status(), HasSubstr("Change Canceled. Properties changed for "));
  EXPECT_THAT(log_tab(), ElementsAre(HasSubstr(" users. - canceled")));
  change({"kim"}, "title", "Clerk");
  EXPECT_EQ(status(), "Properties changed for 1 users.") << "a new run is not canceled";
}

TEST_F(PropertyFile, ServerThatIsGoneEndsTheRun) {
  directory.before = [](std::string_view operation, std::string_view path) {
    if (operation == "GetObject" && path.find("CN=ann") != base::npos)
      base::raise(platform::ads_error::kServerDown, "no server answers");
  };
  EXPECT_FALSE(run("jo,Clerk\nann,Clerk\nkim,Clerk\n"));
  EXPECT_THAT(outcomes, ElementsAre("1 jo"));
  EXPECT_EQ(counts.failure, "no server answers");
  EXPECT_THAT(log_tab().back(), HasSubstr("titles.csv, line 2: ann: no server answers"));
}

}  // namespace
}  // namespace twk::batch
