#include "batch/change_property.hpp"

#include "batch/property_world.hpp"
#include "windows/state/ad_properties.hpp"
#include "windows/state/multi_user.hpp"

namespace twk::batch {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::UnorderedElementsAre;

class ChangeProperty : public testing::Test, public PropertyWorld {};

TEST_F(ChangeProperty, SetsTheValueWithItsNameForEveryChosenUser) {
  change({"jo", "ann"}, "title", "Clerk %username%, 100% of %UserName% %Domain%");
  EXPECT_EQ(property("jo", "title"), "Clerk jo Lee, 100% of jo Lee %Domain%");
  EXPECT_EQ(property("ann", "title"), "Clerk ann Lee, 100% of ann Lee %Domain%");
  EXPECT_EQ(property("kim", "title"), "");
  EXPECT_THAT(outcomes, ElementsAre("jo", "ann"));
  EXPECT_EQ(status(), "Properties changed for 2 users.");
  EXPECT_THAT(log_tab(), ElementsAre("GREEN  AD Property changed for 2 users."));
  EXPECT_EQ(session.ad_properties.CHANGE_AD.caption, std::string("C&hange"));
}

TEST_F(ChangeProperty, WritesABlockToTheLog) {
  services.files.write(session.dbpath + "Log.txt", "");
  change({"jo"}, "title", "Clerk");
  EXPECT_EQ(log(),
            "*****************************************\n31/12/2026 09:05:00\nUser:admin\n"
            "Change property:'title' to 'Clerk' for jo Lee\n");
}

TEST_F(ChangeProperty, LogsPropertyAndTextWhenStartedForDebugging) {
  PropertyWorld world("/DEBUG");
  world.change({"jo"}, "title", "Clerk of %UserName%");
  EXPECT_THAT(world.log(), HasSubstr("User:admin\nAD_property = title\nChange Text = Clerk of %UserName%\n"
                                     "Change property:'title' to 'Clerk of jo Lee' for jo Lee\n"));
  PropertyWorld quiet;
  quiet.change({"jo"}, "title", "Clerk");
  EXPECT_THAT(quiet.log(), Not(HasSubstr("AD_property")));
}

TEST_F(ChangeProperty, NameWithEscapesIsFilledInAsItReads) {
  make_user("jolee", "Lee\\, Jo");
  change({"jolee"}, "title", "%UserName%");
  EXPECT_EQ(property("jolee", "title"), "Lee, Jo");
}

TEST_F(ChangeProperty, AppendAddsAValueAndReplaceLosesTheOthers) {
  change({"jo"}, "otherTelephone", "11");
  change({"jo"}, "otherTelephone", "22");
  EXPECT_THAT(values("jo", "otherTelephone"), UnorderedElementsAre("11", "22"));
  controls::choose(session.ad_properties.AD_Append, session.ad_properties.AD_Replace, false);
  change({"jo"}, "otherTelephone", "33");
  EXPECT_THAT(values("jo", "otherTelephone"), ElementsAre("33"));
}

TEST_F(ChangeProperty, AppendDoesNotApplyToAPropertyOfOneValue) {
  change({"jo"}, "title", "Clerk");
  change({"jo"}, "title", "Head");
  EXPECT_EQ(property("jo", "title"), "Head");
  EXPECT_EQ(counts.errors, 0);
}

TEST_F(ChangeProperty, NumbersBecomeTheBytesOfAnOctetString) {
  for (const auto& [text, bytes] : std::vector<std::pair<std::string, base::Bytes>>{
           {"1,2,255", {1, 2, 255}}, {" 0 , 7", {0, 7}}, {"65", {65}}}) {
    change({"jo"}, "logonWorkstation", text);
    EXPECT_EQ(account("jo")->Get("logonWorkstation").bytes(), bytes) << text;
  }
}

TEST_F(ChangeProperty, InvalidBytesLeaveTheUserAsItIs) {
  change({"jo"}, "logonWorkstation", "7,8");
  for (const std::string text :
       {"256", "-1", "1,,2", "1,2,", "x", "1.5", "0x10", "", ",", "99999999999", "1 2"}) {
    outcomes.clear();
    change({"jo"}, "logonWorkstation", text);
    EXPECT_THAT(outcomes, ElementsAre("not jo")) << text;
    EXPECT_EQ(account("jo")->Get("logonWorkstation").bytes(), (base::Bytes{7, 8})) << text;
  }
  EXPECT_THAT(log(), HasSubstr("\"256\" is not a byte: bytes are numbers from 0 to 255"));
}

TEST_F(ChangeProperty, BytesGoIntoAPropertyOfSeveralValuesToo) {
  change({"jo"}, "userCertificate", "1,2");
  change({"jo"}, "userCertificate", "3");
  EXPECT_THAT(values("jo", "userCertificate"), UnorderedElementsAre("0102", "03"));
}

TEST_F(ChangeProperty, ValueThatBreaksTheSyntaxIsRefused) {
  const struct {
    const char* property;
    const char* value;
  } cases[] = {{"countryCode", "many"}, {"msNPAllowDialin", "perhaps"}, {"accountExpires", "tomorrow"},
               {"manager", "Ann"},      {"initials", "TooManyLetters"}, {"title", ""}};
  for (const auto& one : cases) {
    outcomes.clear();
    change({"jo"}, one.property, one.value);
    EXPECT_THAT(outcomes, ElementsAre("not jo")) << one.property;
    EXPECT_EQ(property("jo", one.property), property("ann", one.property)) << one.property;
    EXPECT_THAT(log(), HasSubstr("Error changing property:'" + std::string(one.property) + "' to '" +
                                 one.value + "' for jo Lee\nError Number: "));
    EXPECT_EQ(status(), "Properties changed for 0 users. - errors detected check log file.");
  }
}

TEST_F(ChangeProperty, RefusalInTheMiddleIsCountedAndTheRunContinues) {
  directory.before = test::fail_at("SetInfo", 2, platform::ads_error::kAccessDenied);
  change({"jo", "ann", "kim"}, "title", "Clerk");
  EXPECT_THAT(outcomes, ElementsAre("jo", "not ann", "kim"));
  EXPECT_EQ(property("ann", "title"), "");
  EXPECT_EQ(property("kim", "title"), "Clerk");
  EXPECT_THAT(log_tab(),
              ElementsAre(HasSubstr("2 users. - had errors: Error Number: 2147942405 refused by the test")));
  EXPECT_EQ(status(), "Properties changed for 2 users. - errors detected check log file.");
}

TEST_F(ChangeProperty, MissingUserIsCountedAndTheRunContinues) {
  select_users({"jo", "ann"});
  place()->Delete("user", "CN=jo Lee");
  choose("title", "Clerk");
  press_change();
  EXPECT_THAT(outcomes, ElementsAre("not jo", "ann"));
  EXPECT_THAT(log(), HasSubstr("Error changing property:'title' to 'Clerk' for jo\n"));
}

TEST_F(ChangeProperty, ServerThatIsGoneEndsTheRun) {
  select_users({"jo", "ann"});
  choose("title", "Clerk");
  directory.before = [](std::string_view operation, std::string_view path) {
    if (operation == "GetObject" && path.find("CN=") != base::npos)
      base::raise(platform::ads_error::kServerDown, "no server answers");
  };
  press_change();
  EXPECT_THAT(outcomes, IsEmpty());
  EXPECT_EQ(status(), "Error Retrieving Domain Info.");
  EXPECT_THAT(log(), HasSubstr("no server answers"));
  EXPECT_EQ(counts.failure, "no server answers");
  EXPECT_FALSE(windows::is_running(session.multi_user));
  EXPECT_EQ(session.ad_properties.CHANGE_AD.caption, std::string("C&hange"));
}

TEST_F(ChangeProperty, GroupMeansItsMembersThatAreUsers) {
  const platform::ObjectPtr group = account("Staff");
  group->Add(path_of("jo"));
  group->Add(path_of("ann"));
  group->Add(path_of("Readers"));
  session.multi_user.ListView1.add(path_of("Staff"), "Staff", "W2KGRP");
  choose("title", "Clerk of %UserName%");
  directory.before = test::fail_at("SetInfo", 2, platform::ads_error::kAccessDenied);
  press_change();
  EXPECT_EQ(outcomes.size(), 2U);
  EXPECT_THAT(outcomes, Contains(HasSubstr("not ")));
  EXPECT_EQ(property("kim", "title"), "");
  EXPECT_THAT(log(),
              testing::AnyOf(HasSubstr("Error changing property:title to Clerk of jo Lee for jo Lee\n"),
                             HasSubstr("Error changing property:title to Clerk of ann Lee for ann Lee\n")));
  EXPECT_THAT(log(), HasSubstr("Change property:'title' to 'Clerk of "));
}

TEST_F(ChangeProperty, NothingIsDoneWithoutASelectionOrAKnownProperty) {
  const std::string before = log();
  change({}, "title", "Clerk");
  EXPECT_EQ(status(), "");
  change({"jo"}, "", "Clerk");
  EXPECT_EQ(status(), "Select the property to change first.");
  change({"jo"}, "titel", "Clerk");
  EXPECT_THAT(status(), HasSubstr("\"titel\" is not a property"));
  EXPECT_THAT(outcomes, IsEmpty());
  EXPECT_EQ(log(), before);
}

}  // namespace
}  // namespace twk::batch
