#include "creation/creation_world.hpp"

namespace twk::creation {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

class CreationFailures : public InEveryKindOfDomain {};
INSTANTIATE_TEST_SUITE_P(Kinds, CreationFailures, kKinds, test::kind_name);

/// What goes wrong before the session starts or after, and the row of the log tab and a part of the log.
struct Failure {
  const char* row;
  const char* log;
  std::function<void(CreationWorld&)> prepare;
  test::FaultyDirectory::Before fault;
};

TEST_P(CreationFailures, AreReportedAndWarnWhenTheAccountIsThere) {
  const Failure cases[] = {
      {"YELLOW Jo.Smith Created User - Error adding user to group: Staff: refused by the test",
       "Error adding user to group: Staff\n",
       {},
       test::fail_at("Add", 1, platform::ads_error::kAccessDenied)},
      {"YELLOW Jo.Smith Created User - Group not found: Dissolved",
       "Adding User to Groups\nGroup not found: Dissolved\n",
       [](CreationWorld& own) {
         own.staff.GroupCount = 2;
         own.staff.Groups[1] = "Dissolved";
       },
       {}},
      {"YELLOW Jo.Smith Created User - Could not Set Primary Group - user may not be in group: ",
       "Could not Set Primary Group - user may not be in group\n",
       [](CreationWorld& own) { own.staff.PrimaryGroup = "Readers"; },
       {}},
      {"RED Error Creating Users Account... - ",
       "Error Number: 61\n",
       {},
       test::fail_at("end_batch", 1, base::error::kDiskFull)}};
  for (const Failure& one : cases) {
    CreationWorld own(GetParam());
    if (one.prepare)
      one.prepare(own);
    own.start();
    own.directory.before = one.fault;
    own.create();
    EXPECT_THAT(own.log_tab(), ElementsAre(StartsWith(one.row)));
    EXPECT_THAT(own.log(), HasSubstr(one.log));
    EXPECT_FALSE(own.session.LastCreation.warnings.empty()) << one.row;
  }
}

TEST_P(CreationFailures, AnAccountThatCannotBeCreatedEndsRed) {
  start();
  directory.before = test::fail_at("SetInfo", 1, platform::ads_error::kAccessDenied);
  if (!is_nt())
    dialogs.expect("error: 2147942405");
  create();
  EXPECT_THAT(log_tab(), ElementsAre(testing::AllOf(StartsWith("RED Error Creating Users Account... - "),
                                                    testing::Not(HasSubstr("the account is made")))));
  EXPECT_EQ(caption(session.form1.UserAccount), "Error");
  EXPECT_EQ(session.form1.UserAccount.colour.get(), controls::kRed);
  EXPECT_EQ(session.form1.StatusBar1.panel1.get(), "Error Creating Users Account...");
  EXPECT_THAT(log(), HasSubstr("Error Creating Users Account: Jo.Smith\nError Number: 2147942405\n"));
  EXPECT_TRUE(session.form1.enabled);
  EXPECT_TRUE(services.files.is_directory("\\\\FS1\\D$\\Users\\Jo.Smith")) << "nothing is undone";
}

TEST_P(CreationFailures, ADirectoryThatCannotBeMadeEndsRed) {
  struct Case {
    std::string missing;
    std::string status;
    std::string light;
  };
  const std::vector<Case> cases = {
      {"Users", "Error Creating Users Home Dir...", ""},
      {"Profiles", "Error Creating Users Profile Dir....", "Error"},
  };
  for (const Case& one : cases) {
    StartedCreation own(GetParam());
    std::filesystem::remove_all(own.folder.path() / "servers/FS1/D" / one.missing);
    own.create();
    EXPECT_THAT(own.log_tab(), ElementsAre(StartsWith("RED " + one.status + " - ")));
    EXPECT_EQ(caption(own.session.form1.Createdirs), one.light);
    EXPECT_EQ(own.path_of("Jo.Smith").empty() || own.is_nt(), true);
  }
}

TEST_P(CreationFailures, ACommandThatFailsWarnsWithTheReason) {
  for (const std::int32_t number : {0, 1}) {
    CreationWorld own(GetParam());
    own.set("UM", "RunCmd", "Yes");
    own.set("Setup", "BatchFileCreate", "notify");
    own.process.result = {number, "no luck"};
    own.start_and_create();
    EXPECT_THAT(own.log_tab(),
                ElementsAre("YELLOW Jo.Smith Created User - Error Running Command: notify: no luck"));
    EXPECT_EQ(caption(own.session.form1.run), number == 0 ? "Error" : "Completed");
  }
}

TEST_P(CreationFailures, WithoutItsTemplateOrSiteNoAccountIsMade) {
  for (const std::string file : {"Template.dat", "Site.dat"}) {
    for (const bool as_folder : {false, true}) {
      StartedCreation own(GetParam());
      std::filesystem::remove(own.folder.path() / "db" / file);
      if (as_folder)
        std::filesystem::create_directory(own.folder.path() / "db" / file);
      own.create();
      EXPECT_THAT(own.log_tab(),
                  ElementsAre(testing::AllOf(StartsWith("RED Error Creating User... - "), HasSubstr(file))));
      EXPECT_TRUE(own.services.files.list("\\\\FS1\\D$\\Users").empty());
      EXPECT_EQ(own.session.form1.mouse_pointer.get(), 0);
    }
  }
}

TEST(WinNtCreation, APasswordThatThePolicyRefusesEndsRed) {
  CreationWorld world(DomainKind::kNt);
  world.set("Setup", "Password", "short");
  world.start_and_create();
  EXPECT_THAT(world.log_tab(),
              ElementsAre(testing::AllOf(StartsWith("RED Error Creating Users Account... - "),
                                         HasSubstr("; the account is made, but not complete: "))));
}

TEST(Creation, NamesThatADomainRefusesAreRefusedBeforeAnythingIsDone) {
  struct Case {
    DomainKind kind;
    std::string id;
    std::string logged;
  };
  const std::vector<Case> cases = {
      {DomainKind::kNative, "a/b", "Invalid Character in User Name: /\n"},
      {DomainKind::kNative, "o'brien", "Invalid Character in User Name: '\n"},
      {DomainKind::kNative, "a<b>", "Invalid Character in User Name: <\nInvalid Character in User Name: >\n"},
      {DomainKind::kNative, "a\tb", "Invalid Character in User Name: U+0009\n"},
      {DomainKind::kNative, "..", "Invalid Character in User Name: .\n"},
      {DomainKind::kNt, "smith,jo", "Invalid Character in User Name: ,\n"},
      {DomainKind::kNative, "jo.", "Invalid Character in SAMAccountName: the dot at the end of jo.\n"},
      {DomainKind::kNt, "jo.", "Invalid Character in SAMAccountName: the dot at the end of jo.\n"},
  };
  for (const Case& one : cases) {
    StartedCreation world(one.kind);
    world.session.form1.UserID_Box.text = one.id;
    world.create();
    EXPECT_EQ(world.session.form1.StatusBar1.panel1.get(), "User Name Invalid...") << one.id;
    EXPECT_THAT(world.log(), HasSubstr(one.logged)) << one.id;
    EXPECT_THAT(world.log_tab(), IsEmpty()) << one.id;
    EXPECT_EQ(world.dialogs.beeps, 1) << one.id;
    EXPECT_TRUE(world.services.files.list("\\\\FS1\\D$\\Users").empty()) << one.id;
  }
}

TEST(Creation, AnAccountNameHasOneToTwentyCharacters) {
  StartedCreation world;
  const std::string log_before = world.log();
  world.type_names("Maximiliane", "", "Oberhuber-Lindner");
  windows::CreateUser_Click(world.session);
  EXPECT_EQ(world.session.form1.StatusBar1.panel1.get(), "UserID Is too long or too Short, 1-20 chrs");
  EXPECT_EQ(world.log(), log_before);
  world.session.form1.UserID_Box.text = std::string("éééééééééééééééééééé");
  windows::CreateUser_Click(world.session);
  EXPECT_THAT(world.log_tab(), ElementsAre(HasSubstr("GREEN")));
}

TEST(Creation, AnUnsuitableSelectionIsReportedInABox) {
  struct Case {
    DomainKind kind;
    std::string key;
    bool copy;
    std::string site;
    std::string text;
  };
  const std::string unit(test::kNewStarters);
  const std::vector<Case> cases = {
      {DomainKind::kNative, unit, false, "", "You must select a Template,Site & OU in the treeview"},
      {DomainKind::kNative, "DC=twk,DC=test", false, "Head Office", "You must select a Template,Site & OU"},
      {DomainKind::kNative, unit, true, "Head Office",
       "You must select a User in the treeview to create this user\r\n"},
      {DomainKind::kNt, "root", false, "", "Must Select a Template & Site."},
      {DomainKind::kNt, "root", true, "Head Office", "You must select a User in the treeview"},
  };
  for (const Case& one : cases) {
    StartedCreation world(one.kind);
    world.select(one.key);
    world.session.form1.Copy_User.value = one.copy ? 1 : 0;
    world.session.form1.NUsitename.text = one.site;
    world.dialogs.expect(one.text);
    windows::CreateUser_Click(world.session);
    EXPECT_EQ(world.dialogs.last_title, "Can't Create User");
    EXPECT_EQ(world.dialogs.last_icon, platform::Icon::kCritical);
  }
}

TEST(Creation, AFullDiskUnderTheLogIsReportedAndStopsNothing) {
  StartedCreation world;
  std::filesystem::remove(world.folder.path() / "db/Log.txt");
  std::filesystem::create_directory(world.folder.path() / "db/Log.txt");
  world.create();
  EXPECT_THAT(world.log_tab(),
              ElementsAre(HasSubstr("YELLOW Cannot write to Log.txt: "), "GREEN Jo.Smith Created User "));
}

TEST(Creation, WhenDebuggingAFailureAfterTheFieldsStopsTheProgram) {
  CreationWorld world(DomainKind::kNt, "/DEBUG");
  world.set("Setup", "Password", "short");
  world.start();
  world.type_names("Jo", "", "Smith");
  EXPECT_THROW(windows::CreateUser_Click(world.session), base::RuntimeError);
}

TEST(Creation, ATerminalServerSettingThatIsRefusedDoesNotWarn) {
  CreationWorld world;
  world.staff.VariableNames[1] = "WTS";
  world.staff.VariableValues[1] = "Enabled";
  world.start();
  controls::ListView& rows = world.session.form1.ListView9;
  rows.set_sub_item(rows.at(2), 1, "Drive");
  world.create();
  EXPECT_THAT(world.log_tab(), ElementsAre("GREEN Jo.Smith Created User "));
  EXPECT_THAT(world.log(), HasSubstr("Setting WTS settings...\n"
                                     "WTSSetUserConfigString failed with error 87\n"));
  EXPECT_EQ(world.dialogs.beeps, 1);
}

}  // namespace
}  // namespace twk::creation
