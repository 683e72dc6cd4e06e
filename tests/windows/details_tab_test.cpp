#include "directory/details_parts.hpp"
#include "support/details_world.hpp"
#include "support/world.hpp"
#include "windows/state/form1.hpp"

namespace twk::windows {
namespace {

using lab::DomainKind;
using test::LabSession;
using test::texts;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

constexpr std::string_view kJo = "LDAP://twk.test/CN=Jo Smith,OU=New Starters,DC=twk,DC=test";

/// A session that shows the account "jo".
struct Shown {
  explicit Shown(DomainKind kind = DomainKind::kNative, const std::function<void(LabSession&)>& before = {})
      : world(kind) {
    test::add_jo(world);
    if (before)
      before(world);
    world.start();
    show();
  }
  void show() { ASSERT_TRUE(show_user_details(world.session, test::node_of_jo(world))) << status(); }
  [[nodiscard]] std::string status() const { return world.session.form1.StatusBar1.panel1; }
  [[nodiscard]] std::string stored(std::string_view name) { return world.property("jo", name); }
  /// Staged values of the account reach the directory from another place.
  void put(std::string_view name, const platform::Value& value) {
    test::store(world.account("jo"), {{name, value}});
  }
  [[nodiscard]] std::int32_t flags() {
    return world.services.directory.GetObject("WinNT://TWK/jo")->Get("UserFlags").integer();
  }
  void put_flags(std::int32_t flags) {
    test::store(world.services.directory.GetObject("WinNT://TWK/jo"), {{"UserFlags", flags}});
  }
  /// Presses "Save" and counts what is written.
  int save() {
    int writes = 0;
    world.directory.before = [&writes](std::string_view operation, std::string_view) {
      writes += operation == "SetInfo" ? 1 : 0;
    };
    Userman_Save_Click(world.session);
    world.directory.before = {};
    return writes;
  }

  LabSession world;
  windows::Form1& form = world.session.form1;
};

class UserDetails : public testing::TestWithParam<DomainKind> {};
INSTANTIATE_TEST_SUITE_P(Kinds, UserDetails, testing::Values(DomainKind::kNative, DomainKind::kNt),
                         test::kind_name);

TEST_P(UserDetails, ShowTheAccountAndItsGroups) {
  Shown jo(GetParam());
  EXPECT_EQ(jo.form.SSTab1, windows::tab::kDetails);
  EXPECT_EQ(jo.status(), "Ready.");
  EXPECT_EQ(jo.form.mouse_pointer, 0);
  EXPECT_EQ(jo.form.USERID.text.get(), jo.world.is_nt() ? "jo" : "Jo Smith");
  EXPECT_EQ(jo.form.UM_Full_Name.text.get(), "Jo Smith");
  EXPECT_EQ(jo.form.UM_Description.text.get(), "Clerk");
  EXPECT_EQ(jo.form.AccExpires.text.get(), "Never");
  EXPECT_THAT(texts(jo.form.ListView4), ElementsAre("Domain Users", "Staff"));
  EXPECT_THAT(jo.form.ListView4.at(0).sub_items, ElementsAre(directory::kPrimaryGroup));
  EXPECT_THAT(texts(jo.form.ListView3), Contains("Readers"));
  EXPECT_THAT(texts(jo.form.ListView3), Not(Contains("Staff")));
  EXPECT_EQ(jo.form.StatusBar1.panel2.get(),
            jo.world.is_nt() ? "jo Primary Group is 'Domain Users'" : "2000-Native Mode");
}

TEST_P(UserDetails, AChosenNodeThatIsNotAUserEmptiesTheTabAndReturnsTheGroups) {
  Shown jo(GetParam());
  node_chosen(jo.world.session, *jo.form.TreeView1.first());
  EXPECT_EQ(jo.form.UM_Full_Name.text.get(), "");
  EXPECT_TRUE(jo.form.ListView4.empty());
  EXPECT_THAT(texts(jo.form.ListView3), Contains("Staff"));
  EXPECT_FALSE(jo.form.Userman_Save.enabled);
  EXPECT_EQ(jo.save(), 0) << "an empty tab emptied the account that was on it";
  EXPECT_EQ(jo.stored("Description"), "Clerk");
}

TEST_P(UserDetails, FieldsAreSavedAndClearedOnesAreEmptied) {
  Shown jo(GetParam());
  jo.form.UM_Full_Name.text = std::string("Jo Miller");
  jo.form.UM_Description.text = std::string();
  jo.form.UM_Drive_Letter.text = std::string("H:");
  jo.form.UM_Home_Dir.text = std::string("\\\\FS1\\Users\\jo");
  jo.form.AccExpires.text = std::string("31/12/2026");
  jo.save();
  EXPECT_EQ(jo.status(), "Saved...");
  EXPECT_EQ(jo.stored("FullName"), "Jo Miller");
  EXPECT_EQ(jo.stored("Description"), "");
  EXPECT_EQ(jo.stored("HomeDirectory"), "\\\\FS1\\Users\\jo");
  EXPECT_EQ(jo.stored("HomeDirDrive"), "H:");
  jo.show();
  EXPECT_EQ(jo.form.AccExpires.text.get(), "31/12/2026");
  jo.form.AccExpires.text = std::string("nEVER");
  jo.save();
  jo.show();
  EXPECT_EQ(jo.form.AccExpires.text.get(), "Never");
}

TEST_P(UserDetails, AWrongDriveLetterIsRefusedBeforeAnythingIsWritten) {
  Shown jo(GetParam());
  for (const char* const wrong : {"h:", "H", "HH", "H:\\", "1:", "[:"}) {
    jo.form.UM_Drive_Letter.text = std::string(wrong);
    jo.form.UM_Description.text = std::string("changed");
    EXPECT_EQ(jo.save(), 0) << wrong;
    EXPECT_EQ(jo.status(), "Home Drive Format Incorrect");
  }
  EXPECT_EQ(jo.world.dialogs.beeps, 6);
  jo.form.UM_Drive_Letter.text = std::string("@:");
  EXPECT_GT(jo.save(), 0);
}

TEST_P(UserDetails, FlagsKeepTheirNeighbours) {
  constexpr std::int32_t kNotRequired = platform::kFlagPasswordNotRequired;
  Shown jo(GetParam());
  jo.put_flags(jo.flags() | kNotRequired);
  jo.show();
  jo.form.chkCantChange.value = 1;
  jo.form.chkPwdNever.value = 1;
  jo.form.chkAcctDisabled.value = 1;
  jo.save();
  EXPECT_EQ(jo.status(), "Saved...");
  EXPECT_EQ(jo.flags(), platform::kFlagNormalAccount | kNotRequired | platform::kFlagAccountDisabled |
                            platform::kFlagCannotChangePassword | platform::kFlagPasswordNeverExpires);
  jo.show();
  EXPECT_TRUE(jo.form.chkCantChange.on() && jo.form.chkPwdNever.on() && jo.form.chkAcctDisabled.on());
  jo.form.chkCantChange.value = 0;
  jo.form.chkPwdNever.value = 0;
  jo.form.chkMustChange.value = 1;
  jo.save();
  EXPECT_EQ(jo.flags(), platform::kFlagNormalAccount | kNotRequired | platform::kFlagAccountDisabled);
  jo.show();
  EXPECT_TRUE(jo.form.chkMustChange.on());
  EXPECT_FALSE(jo.form.chkCantChange.on() || jo.form.chkPwdNever.on());
}

TEST_P(UserDetails, ALockOutIsLiftedByItsBoxWhichIsEnabledOnlyForALockedAccount) {
  Shown jo(GetParam());
  EXPECT_FALSE(jo.form.chkAcctLockedOut.enabled);
  test::lock_jo(jo.world);
  jo.show();
  EXPECT_TRUE(jo.form.chkAcctLockedOut.enabled && jo.form.chkAcctLockedOut.on());
  jo.form.chkAcctDisabled.value = 1;
  jo.save();
  jo.show();
  EXPECT_TRUE(jo.form.chkAcctLockedOut.on()) << "lifted without being asked";
  jo.form.chkAcctLockedOut.value = 0;
  jo.save();
  jo.show();
  EXPECT_FALSE(jo.form.chkAcctLockedOut.on() || jo.form.chkAcctLockedOut.enabled);
}

TEST_P(UserDetails, GroupsAreAddedAndRemovedAtOnceAndRefusedOnesStay) {
  Shown jo(GetParam());
  windows::Desktop& session = jo.world.session;
  controls::ListView& others = jo.form.ListView3;
  jo.form.ListView4.select(&jo.form.ListView4.at(1));
  for (const char* const name : {"Readers", "Domain Guests"})
    others.set_selected(others.at(others.place_of(*others.find_text(name).front())), true);
  ListView3_Click(session);
  EXPECT_EQ(jo.form.ListView4.selected(), nullptr);
  EXPECT_TRUE(jo.form.UM_ADD_GROUP.enabled && !jo.form.UM_REMOVE_GROUP.enabled);
  jo.world.directory.before = test::fail_at("Add", 1, platform::ads_error::kAccessDenied);
  UM_ADD_GROUP_Click(session);
  EXPECT_THAT(jo.status(), HasSubstr("refused by the test"));
  EXPECT_EQ(jo.form.ListView4.size(), 3U);
  UM_ADD_GROUP_Click(session);  // what was refused is still selected
  EXPECT_EQ(jo.form.ListView4.size(), 4U);
  EXPECT_EQ(jo.world.groups_of("jo").size(), jo.world.is_nt() ? 4U : 3U);

  jo.form.ListView4.select(&jo.form.ListView4.at(1));
  ListView4_Click(session);
  EXPECT_TRUE(!jo.form.UM_ADD_GROUP.enabled && jo.form.UM_REMOVE_GROUP.enabled);
  ListView4_DblClick(session);
  EXPECT_THAT(jo.world.groups_of("jo"), Not(Contains(HasSubstr("Staff"))));
  EXPECT_THAT(texts(others), Contains("Staff"));
}

TEST_P(UserDetails, AnAccountThatIsGoneIsReportedAndLeavesTheTabEmpty) {
  Shown jo(GetParam());
  controls::TreeNode& node = test::node_of_jo(jo.world);
  jo.world.services.directory
      .GetObject(jo.world.is_nt() ? "WinNT://TWK" : "LDAP://" + std::string(test::kNewStarters))
      ->Delete("user", jo.world.is_nt() ? "jo" : "CN=Jo Smith");
  jo.form.UM_Description.text = std::string("changed");
  jo.save();
  EXPECT_THAT(jo.status(), HasSubstr("Error saving user: "));
  EXPECT_FALSE(show_user_details(jo.world.session, node));
  EXPECT_THAT(jo.status(), HasSubstr("Error reading user: "));
  EXPECT_EQ(jo.form.USERID.text.get(), "");
  EXPECT_EQ(jo.form.mouse_pointer, 0);
}

TEST_P(UserDetails, GroupsThatCannotBeReadLeaveTheTabEmpty) {
  Shown jo(GetParam());
  jo.world.directory.before = test::fail_at("Groups", 1, platform::ads_error::kServerDown);
  EXPECT_FALSE(show_user_details(jo.world.session, test::node_of_jo(jo.world)));
  EXPECT_THAT(jo.status(), HasSubstr("refused by the test"));
  EXPECT_EQ(jo.form.USERID.text.get(), "");
  EXPECT_THAT(texts(jo.form.ListView3), Contains("Domain Users"));
}

TEST(AdUserDetails, OnlyTheGroupsOfFieldsThatWereChangedAreWritten) {
  Shown jo;
  EXPECT_EQ(jo.save(), 1) << "the last write alone";
  jo.put("Description", "changed elsewhere");
  jo.put("scriptPath", "elsewhere.cmd");
  jo.form.UM_Profile_Dir.text = std::string("\\\\FS1\\Profiles\\jo");
  EXPECT_EQ(jo.save(), 1);
  EXPECT_EQ(jo.stored("Profile"), "\\\\FS1\\Profiles\\jo");
  EXPECT_EQ(jo.stored("scriptPath"), "") << "of the same group, as the tab shows it";
  EXPECT_EQ(jo.stored("Description"), "changed elsewhere");
}

TEST(AdUserDetails, NamesOfTheLogonAreSplitAtTheSignAndPutTogetherAgain) {
  Shown jo;
  EXPECT_EQ(jo.form.UM_Logon_Name.text.get(), "jo");
  EXPECT_EQ(jo.form.UM_W2KDomain_Name.text.get(), "@twk.test");
  jo.form.UM_Logon_Name.text = std::string("jo.miller");
  jo.form.UM_MailAddress.text = std::string("jo@twk.test");
  jo.form.UM_PreW2K.text = std::string();
  jo.save();
  EXPECT_EQ(jo.stored("userPrincipalName"), "jo.miller@twk.test");
  EXPECT_EQ(jo.stored("mail"), "jo@twk.test");
  EXPECT_EQ(jo.stored("samAccountName"), "jo") << "never cleared";
  jo.form.UM_Logon_Name.text = std::string();
  jo.save();
  EXPECT_EQ(jo.stored("userPrincipalName"), "");
}

TEST(AdUserDetails, ANewPre2000NameAndFlagsAreSavedTogether) {
  Shown jo;
  jo.form.UM_PreW2K.text = std::string("jom");
  jo.form.chkCantChange.value = 1;
  jo.save();
  EXPECT_EQ(jo.status(), "Saved...");
  jo.show();
  EXPECT_EQ(jo.form.UM_PreW2K.text.get(), "jom");
  EXPECT_TRUE(jo.form.chkCantChange.on());
}

TEST(AdUserDetails, WhatMeansNeverIsShownAsTheWordInEveryZone) {
  Shown jo;
  for (const auto& [stored, shown] :
       std::vector<std::pair<const char*, const char*>>{{"468000000000", "Never"},
                                                        {"0", "Never"},
                                                        {"9223372036854775807", "Never"},
                                                        {"432000000000", "1/01/1601 04:00:00"},
                                                        {"134431776000000000", "31/12/2026"}}) {
    jo.world.clock.seconds_ahead = -8 * 3600;
    jo.put("accountExpires", stored);
    jo.show();
    EXPECT_EQ(jo.form.AccExpires.text.get(), shown) << stored;
    jo.form.UM_MailAddress.text = std::string(stored) + "@twk.test";
    jo.save();
    EXPECT_EQ(jo.stored("accountExpires"), stored) << "what was not changed stays to the letter";
  }
}

TEST(AdUserDetails, TheAgeOfThePasswordStaysUntilItsChangeIsOrdered) {
  const std::string since = "133000000000000000";
  Shown jo(DomainKind::kNative, [&](LabSession& world) { test::journal_jo(world, "pwdLastSet", since); });
  const auto save = [&](controls::CheckBox& box, int value) {
    box.value = value;
    jo.save();
    return jo.stored("pwdLastSet");
  };
  EXPECT_EQ(save(jo.form.chkPwdNever, 1), since);
  EXPECT_EQ(save(jo.form.chkMustChange, 1), "0");
  EXPECT_EQ(save(jo.form.chkPwdNever, 0), "0");
  EXPECT_GT(save(jo.form.chkMustChange, 0), since);
}

TEST(AdUserDetails, ARefusedExpiryIsReportedInABoxAndTheRestIsSaved) {
  Shown jo;
  jo.form.AccExpires.text = std::string("soon");
  jo.form.UM_First.text = std::string("Joanna");
  jo.world.dialogs.expect("Error setting expiration date: 13");
  jo.save();
  EXPECT_EQ(jo.status(),
            "Saved... but not AccountExpirationDate: Type mismatch: \"soon\" is neither a day such as "
            "31/12/2026 or 2026-12-31 nor \"Never\"");
  EXPECT_EQ(jo.stored("FirstName"), "Joanna");
}

TEST(AdUserDetails, WhatIsRefusedIsNamedAndTheRestIsSaved) {
  Shown jo;
  jo.form.AccExpires.text = std::string("31/12/2026");
  jo.form.UM_First.text = std::string("Joanna");
  jo.form.UM_Initails.text = std::string("seven letters");
  jo.form.chkPwdNever.value = 1;
  Userman_Save_Click(jo.world.session);
  EXPECT_THAT(jo.status(), testing::StartsWith("Saved... but not initials: "));
  EXPECT_EQ(jo.stored("FirstName"), "Joanna");
  EXPECT_NE(jo.flags() & platform::kFlagPasswordNeverExpires, 0);
  jo.show();
  EXPECT_EQ(jo.form.AccExpires.text.get(), "31/12/2026");
  jo.form.UM_Initails.text = std::string("seven letters");
  jo.world.directory.before = [](std::string_view operation, std::string_view) {
    if (operation == "SetInfo")
      base::raise(platform::ads_error::kAccessDenied, "refused by the test");
  };
  Userman_Save_Click(jo.world.session);
  EXPECT_THAT(jo.status(), HasSubstr("Error saving user: refused by the test"));
}

TEST(AdUserDetails, CustomValuesAreJoinedWhenReadAndThoseThatChangedAreWrittenAsOneValue) {
  const auto add_fields = [](LabSession& world) {
    world.set("Custom", "Custom1", "Licences");
    world.set("Custom", "Property1", "carLicense");
    world.set("Custom", "Custom2", "Number");
    world.set("Custom", "Property2", "employeeID");
    test::store(world.account("jo"), {{"carLicense", platform::ValueList{"A1", "B2"}}, {"employeeID", "7"}});
  };
  Shown jo(DomainKind::kNative, add_fields);
  EXPECT_THAT(jo.form.Custom_Value[0].text.get(), testing::AnyOf("A1,B2", "B2,A1"));
  EXPECT_EQ(jo.form.Custom_Value[1].text.get(), "7");
  jo.form.Custom_Value[1].text = std::string();
  jo.save();
  EXPECT_TRUE(jo.world.account("jo")->Get("carLicense").is_list());
  jo.form.Custom_Value[0].text = std::string("A1,B3");
  jo.save();
  EXPECT_FALSE(jo.world.account("jo")->Get("carLicense").is_list());
  EXPECT_EQ(jo.stored("carLicense"), "A1,B3");
  EXPECT_EQ(jo.stored("employeeID"), "");

  jo.form.Custom_Value[1].text = std::string(17, '9');  // one more than the attribute holds
  jo.world.dialogs.expect("Error setting a custom value");
  jo.save();
  EXPECT_EQ(jo.world.dialogs.last_title, "Error saving settings");
  EXPECT_EQ(jo.world.dialogs.last_icon, platform::Icon::kCritical);
  EXPECT_EQ(jo.stored("employeeID"), "");
}

TEST(AdUserDetails, WithoutLoadedGroupsNoneIsReturned) {
  Shown jo(DomainKind::kNative, [](LabSession& world) { world.set("ADO", "SkipGroups", "True"); });
  EXPECT_FALSE(jo.form.ListView4.empty());
  Clear_UM(jo.world.session);
  EXPECT_TRUE(jo.form.ListView4.empty());
  EXPECT_TRUE(jo.form.ListView3.empty());
}

TEST(AdUserDetails, AGroupWithACommaInItsNameIsShownAsItIs) {
  Shown jo(DomainKind::kNative, [](LabSession& world) {
    const platform::ObjectPtr group = test::store(
        world.services.directory.GetObject("LDAP://twk.test")->Create("group", "CN=Sales\\, North"),
        {{"samAccountName", "Sales North"}, {"groupType", -2147483646}});
    group->Add(kJo);
  });
  EXPECT_THAT(texts(jo.form.ListView4), Contains("Sales, North"));
  EXPECT_THAT(texts(jo.form.ListView3), Not(Contains(HasSubstr("Sales"))));
}

TEST(NtUserDetails, EverySaveWritesAllFields) {
  Shown jo(DomainKind::kNt);
  jo.put("Description", "changed elsewhere");
  EXPECT_EQ(jo.save(), 2) << "the fields, then the flags";
  EXPECT_EQ(jo.stored("Description"), "Clerk");
}

TEST(NtUserDetails, AFlagIsWrittenByItselfSoThatItsFailureLeavesTheFields) {
  Shown jo(DomainKind::kNt);
  jo.form.UM_Description.text = std::string("Manager");
  jo.form.chkCantChange.value = 1;
  jo.world.directory.before = test::fail_at("SetInfo", 3, platform::ads_error::kAccessDenied);
  Userman_Save_Click(jo.world.session);
  EXPECT_THAT(jo.status(), HasSubstr("Error saving user: refused by the test"));
  EXPECT_EQ(jo.stored("Description"), "Manager");
  EXPECT_EQ(jo.flags() & platform::kFlagCannotChangePassword, 0);
}

TEST(NtUserDetails, AnInvalidExpiryIsRefusedBeforeAnythingIsWritten) {
  Shown jo(DomainKind::kNt);
  jo.form.AccExpires.text = std::string("soon");
  EXPECT_EQ(jo.save(), 0);
  EXPECT_EQ(jo.status(),
            "Error saving user: Type mismatch: \"soon\" is neither a day such as 31/12/2026 or "
            "2026-12-31 nor \"Never\"");
}

}  // namespace
}  // namespace twk::windows
