#include "batch/change_property.hpp"

#include "batch/property_world.hpp"
#include "session/ad_properties.hpp"
#include "session/multi_user.hpp"

namespace twk::batch {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::UnorderedElementsAre;

TEST(ChangeProperty, SetsTheValueWithItsNameForEveryChosenUser) {
  PropertyWorld world;
  world.change({"jo", "ann"}, "title", "Clerk %username%, 100% of %UserName% %Domain%");
  EXPECT_EQ(world.property("jo", "title"), "Clerk jo Lee, 100% of jo Lee %Domain%");
  EXPECT_EQ(world.property("ann", "title"), "Clerk ann Lee, 100% of ann Lee %Domain%");
  EXPECT_EQ(world.property("kim", "title"), "");
  EXPECT_THAT(world.outcomes, ElementsAre("jo", "ann"));
  EXPECT_EQ(world.status(), "Properties changed for 2 users.");
  EXPECT_THAT(world.log_tab(), ElementsAre("GREEN  AD Property changed for 2 users."));
  EXPECT_EQ(world.session.ad_properties.CHANGE_AD.caption, std::string("C&hange"));
}

TEST(ChangeProperty, WritesABlockToTheLog) {
  PropertyWorld world;
  world.services.files.write(world.session.dbpath + "Log.txt", "");
  world.change({"jo"}, "title", "Clerk");
  EXPECT_EQ(world.log(),
            "*****************************************\n31/12/2026 09:05:00\nUser:admin\n"
            "Change property:'title' to 'Clerk' for jo Lee\n");
}

TEST(ChangeProperty, LogsPropertyAndTextWhenStartedForDebugging) {
  PropertyWorld world("/DEBUG");
  world.change({"jo"}, "title", "Clerk of %UserName%");
  EXPECT_THAT(world.log(), HasSubstr("User:admin\nAD_property = title\nChange Text = Clerk of %UserName%\n"
                                     "Change property:'title' to 'Clerk of jo Lee' for jo Lee\n"));
  PropertyWorld quiet;
  quiet.change({"jo"}, "title", "Clerk");
  EXPECT_THAT(quiet.log(), Not(HasSubstr("AD_property")));
}

TEST(ChangeProperty, NameWithEscapesIsFilledInAsItReads) {
  PropertyWorld world;
  world.add_user("CN=Lee\\, Jo", "jolee");
  world.change({"jolee"}, "title", "%UserName%");
  EXPECT_EQ(world.property("jolee", "title"), "Lee, Jo");
}

TEST(ChangeProperty, AppendAddsAValueAndReplaceLosesTheOthers) {
  PropertyWorld world;
  world.change({"jo"}, "otherTelephone", "11");
  world.change({"jo"}, "otherTelephone", "22");
  EXPECT_THAT(world.values("jo", "otherTelephone"), UnorderedElementsAre("11", "22"));
  controls::choose(world.session.ad_properties.AD_Append, world.session.ad_properties.AD_Replace, false);
  world.change({"jo"}, "otherTelephone", "33");
  EXPECT_THAT(world.values("jo", "otherTelephone"), ElementsAre("33"));
}

TEST(ChangeProperty, AppendDoesNotApplyToAPropertyOfOneValue) {
  PropertyWorld world;
  world.change({"jo"}, "title", "Clerk");
  world.change({"jo"}, "title", "Head");
  EXPECT_EQ(world.property("jo", "title"), "Head");
  EXPECT_EQ(world.counts.errors, 0);
}

TEST(ChangeProperty, NumbersBecomeTheBytesOfAnOctetString) {
  PropertyWorld world;
  for (const auto& [text, bytes] : std::vector<std::pair<std::string, base::Bytes>>{
           {"1,2,255", {1, 2, 255}}, {" 0 , 7", {0, 7}}, {"65", {65}}}) {
    world.change({"jo"}, "logonWorkstation", text);
    EXPECT_EQ(world.account("jo")->Get("logonWorkstation").bytes(), bytes) << text;
  }
}

TEST(ChangeProperty, InvalidBytesLeaveTheUserAsItIs) {
  PropertyWorld world;
  world.change({"jo"}, "logonWorkstation", "7,8");
  for (const std::string text :
       {"256", "-1", "1,,2", "1,2,", "x", "1.5", "0x10", "", ",", "99999999999", "1 2"}) {
    world.outcomes.clear();
    world.change({"jo"}, "logonWorkstation", text);
    EXPECT_THAT(world.outcomes, ElementsAre("not jo")) << text;
    EXPECT_EQ(world.account("jo")->Get("logonWorkstation").bytes(), (base::Bytes{7, 8})) << text;
  }
  EXPECT_THAT(world.log(), HasSubstr("\"256\" is not a byte: bytes are numbers from 0 to 255"));
}

TEST(ChangeProperty, BytesGoIntoAPropertyOfSeveralValuesToo) {
  PropertyWorld world;
  world.change({"jo"}, "userCertificate", "1,2");
  world.change({"jo"}, "userCertificate", "3");
  EXPECT_THAT(world.values("jo", "userCertificate"), UnorderedElementsAre("0102", "03"));
}

TEST(ChangeProperty, ValueThatBreaksTheSyntaxIsRefused) {
  PropertyWorld world;
  const struct {
    const char* property;
    const char* value;
  } cases[] = {{"countryCode", "many"}, {"msNPAllowDialin", "perhaps"}, {"accountExpires", "tomorrow"},
               {"manager", "Ann"},      {"initials", "TooManyLetters"}, {"title", ""}};
  for (const auto& one : cases) {
    world.outcomes.clear();
    world.change({"jo"}, one.property, one.value);
    EXPECT_THAT(world.outcomes, ElementsAre("not jo")) << one.property;
    EXPECT_EQ(world.property("jo", one.property), world.property("ann", one.property)) << one.property;
    EXPECT_THAT(world.log(), HasSubstr("Error changing property:'" + std::string(one.property) + "' to '" +
                                       one.value + "' for jo Lee\nError Number: "));
    EXPECT_EQ(world.status(), "Properties changed for 0 users. - errors detected check log file.");
  }
}

TEST(ChangeProperty, RefusalInTheMiddleIsCountedAndTheRunContinues) {
  PropertyWorld world;
  world.directory.before = test::fail_at("SetInfo", 2, platform::ads_error::kAccessDenied);
  world.change({"jo", "ann", "kim"}, "title", "Clerk");
  EXPECT_THAT(world.outcomes, ElementsAre("jo", "not ann", "kim"));
  EXPECT_EQ(world.property("ann", "title"), "");
  EXPECT_EQ(world.property("kim", "title"), "Clerk");
  EXPECT_THAT(world.log_tab(),
              ElementsAre(HasSubstr("2 users. - had errors: Error Number: 2147942405 refused by the test")));
  EXPECT_EQ(world.status(), "Properties changed for 2 users. - errors detected check log file.");
}

TEST(ChangeProperty, MissingUserIsCountedAndTheRunContinues) {
  PropertyWorld world;
  world.select_users({"jo", "ann"});
  world.services.directory.GetObject("LDAP://twk.test/" + std::string(test::kNewStarters))
      ->Delete("user", "CN=jo Lee");
  world.choose("title", "Clerk");
  world.press_change();
  EXPECT_THAT(world.outcomes, ElementsAre("not jo", "ann"));
  EXPECT_THAT(world.log(), HasSubstr("Error changing property:'title' to 'Clerk' for jo\n"));
}

TEST(ChangeProperty, ServerThatIsGoneEndsTheRun) {
  PropertyWorld world;
  world.select_users({"jo", "ann"});
  world.choose("title", "Clerk");
  world.directory.before = [](std::string_view operation, std::string_view path) {
    if (operation == "GetObject" && path.find("CN=") != base::npos)
      base::raise(platform::ads_error::kServerDown, "no server answers");
  };
  world.press_change();
  EXPECT_THAT(world.outcomes, IsEmpty());
  EXPECT_EQ(world.status(), "Error Retrieving Domain Info.");
  EXPECT_THAT(world.log(), HasSubstr("no server answers"));
  EXPECT_EQ(world.counts.failure, "no server answers");
  EXPECT_FALSE(session::is_running(world.session.multi_user));
  EXPECT_EQ(world.session.ad_properties.CHANGE_AD.caption, std::string("C&hange"));
}

TEST(ChangeProperty, GroupMeansItsMembersThatAreUsers) {
  PropertyWorld world;
  const platform::ObjectPtr staff = world.account("Staff");
  staff->Add(world.path_of("jo"));
  staff->Add(world.path_of("ann"));
  staff->Add(world.path_of("Readers"));
  world.session.multi_user.ListView1.add(world.path_of("Staff"), "Staff", "W2KGRP");
  world.choose("title", "Clerk of %UserName%");
  world.directory.before = test::fail_at("SetInfo", 2, platform::ads_error::kAccessDenied);
  world.press_change();
  EXPECT_EQ(world.outcomes.size(), 2U);
  EXPECT_THAT(world.outcomes, Contains(HasSubstr("not ")));
  EXPECT_EQ(world.property("kim", "title"), "");
  EXPECT_THAT(world.log(),
              testing::AnyOf(HasSubstr("Error changing property:title to Clerk of jo Lee for jo Lee\n"),
                             HasSubstr("Error changing property:title to Clerk of ann Lee for ann Lee\n")));
  EXPECT_THAT(world.log(), HasSubstr("Change property:'title' to 'Clerk of "));
}

TEST(ChangeProperty, NothingIsDoneWithoutASelectionOrAKnownProperty) {
  PropertyWorld world;
  const std::string before = world.log();
  world.change({}, "title", "Clerk");
  EXPECT_EQ(world.status(), "");
  world.change({"jo"}, "", "Clerk");
  EXPECT_EQ(world.status(), "Select the property to change first.");
  world.change({"jo"}, "titel", "Clerk");
  EXPECT_THAT(world.status(), HasSubstr("\"titel\" is not a property"));
  EXPECT_THAT(world.outcomes, IsEmpty());
  EXPECT_EQ(world.log(), before);
}

}  // namespace
}  // namespace twk::batch
