#include "windows/create_user.hpp"

#include "platform/adsi.hpp"
#include "session/form1.hpp"
#include "session/windows.hpp"
#include "support/lab_session.hpp"

namespace twk::creation {
namespace {

using lab::DomainKind;
using test::LabSession;
using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

std::string caption(const controls::Label& light) {
  return light.caption;
}

class InEveryKindOfDomain : public testing::TestWithParam<DomainKind> {};
INSTANTIATE_TEST_SUITE_P(Kinds, InEveryKindOfDomain,
                         testing::Values(DomainKind::kNative, DomainKind::kMixed, DomainKind::kNt),
                         test::kind_name);

TEST_P(InEveryKindOfDomain, ANameBecomesAnAccountWithItsDirectories) {
  LabSession world(GetParam());
  world.start();
  world.session.form1.Description.text = std::string("new starter");
  world.type_names("josé", "q.", "núñez");
  windows::CreateUser_Click(world.session);

  EXPECT_THAT(world.log_tab(), ElementsAre("GREEN José.Núñez Created User "));
  EXPECT_EQ(caption(world.session.form1.UserAccount), "Completed");
  EXPECT_EQ(world.session.form1.UserAccount.colour.get(), controls::kBlue);
  EXPECT_EQ(caption(world.session.form1.Createdirs), "Completed");
  EXPECT_EQ(caption(world.session.form1.Sharedirs), "");
  EXPECT_EQ(world.session.form1.ProgressBar1.value.get(), 100);
  EXPECT_TRUE(world.session.form1.enabled);
  EXPECT_EQ(world.session.form1.mouse_pointer.get(), 0);

  const std::string user = "José.Núñez";
  EXPECT_EQ(world.property(user, "FullName"), "José Q. Núñez");
  EXPECT_EQ(world.property(user, "Description"), "new starter");
  EXPECT_EQ(world.property(user, "HomeDirectory"), "\\\\FS1\\Users\\José.Núñez");
  EXPECT_EQ(world.property(user, "Profile"), "\\\\FS1\\Profiles\\José.Núñez");
  EXPECT_EQ(world.property(user, "LoginScript"), "staff.cmd");
  EXPECT_EQ(world.property(user, world.is_nt() ? "HomeDirDrive" : "HomeDrive"), "H:");
  EXPECT_THAT(world.groups_of(user), testing::Contains(world.is_nt() ? "Staff" : "CN=Staff"));
  EXPECT_TRUE(world.services.files.is_directory("\\\\FS1\\D$\\Users\\José.Núñez"));
  EXPECT_TRUE(world.services.files.is_directory("\\\\FS1\\D$\\Profiles\\José.Núñez"));
  EXPECT_TRUE(world.session.form1.TreeView1.has_text(world.is_nt() ? user : "José Q. Núñez"));
}

TEST_P(InEveryKindOfDomain, TheLogHasEachStepInOrder) {
  LabSession world(GetParam());
  world.start();
  std::filesystem::remove(world.folder.path() / "db/Log.txt");
  world.type_names("Jo", "", "Smith");
  windows::CreateUser_Click(world.session);
  EXPECT_EQ(world.log(),
            "*****************************************\n"
            "31/12/2026 09:05:00\n"
            "User:admin\n"
            "Creating User:Jo.Smith\n"
            "Site: Head Office\n"
            "Template: Staff\n"
            "Locate PDC: DC1\n"
            "Created Home Directory: \\\\FS1\\D$\\Users\\Jo.Smith\n"
            "Created Profile Directory: \\\\FS1\\D$\\Profiles\\Jo.Smith\n"
            "NT User Account Created\n"
            "Adding User to Groups\n" +
                std::string(world.is_nt() ? "" : "Setting W2K Properties\n") + "User Created.\n");
}

TEST_P(InEveryKindOfDomain, TheFlagsOfThePreferencesReachTheAccount) {
  LabSession world(GetParam());
  world.set("Preferences", "AccountDisabled", "Yes");
  world.set("Preferences", "PasswdNVRExpire", "yes");
  world.set("Preferences", "CantChangePWD", "yes");
  world.start();
  world.type_names("Jo", "", "Smith");
  windows::CreateUser_Click(world.session);
  const platform::User user(world.account("Jo.Smith"));
  EXPECT_TRUE(user.AccountDisabled());
  const auto flags = world.services.directory.GetObject("WinNT://TWK/Jo.Smith")->Get("UserFlags").integer();
  EXPECT_NE(flags & platform::kFlagPasswordNeverExpires, 0);
  EXPECT_NE(flags & platform::kFlagCannotChangePassword, 0);
}

TEST_P(InEveryKindOfDomain, AMustChangePasswordIsMarkedSo) {
  LabSession world(GetParam());
  world.set("Preferences", "ForcePasswdChange", "Yes");
  world.start();
  world.type_names("Jo", "", "Smith");
  windows::CreateUser_Click(world.session);
  EXPECT_EQ(world.services.directory.GetObject("WinNT://TWK/Jo.Smith")->Get("PasswordExpired").integer(), 1);
}

TEST_P(InEveryKindOfDomain, ATakenNameWithoutAnotherFormatIsRefused) {
  LabSession world(GetParam());
  world.start();
  world.type_names("Jo", "", "Smith");
  windows::CreateUser_Click(world.session);
  world.session.form1.ListView1.clear();
  world.session.form1.UserID_Box.text = std::string("jo.smith");
  world.dialogs.expect("User jo.smith Already Exist \r\nChange the UserID and Continue.");
  windows::CreateUser_Click(world.session);
  EXPECT_EQ(world.dialogs.last_title, "User Exist");
  EXPECT_THAT(world.log_tab(), ElementsAre("RED  User Name jo.smith already exist"));
  EXPECT_THAT(world.log(), HasSubstr("User : jo.smith  Already Exist \n"));
  EXPECT_TRUE(world.session.form1.enabled);
}

TEST_P(InEveryKindOfDomain, TheSecondFormatAndThenItsSerialNumberFindAFreeName) {
  LabSession world(GetParam());
  world.set("Setup", "AltSetupID", "%first%.%last%%n%");
  world.set("Setup", "IncNumber", "7");
  world.start();
  for (int i = 0; i < 3; ++i) {
    world.session.share_points.HomeSharePoint.clear();
    world.type_names("Jo", "", "Smith");
    windows::CreateUser_Click(world.session);
    world.session.form1.nutemplate.text = records::padded_template_name("Staff");
  }
  EXPECT_THAT(world.log_tab(),
              testing::IsSupersetOf({"GREEN Jo.Smith Created User ", "GREEN Jo.Smith7 Created User ",
                                     "GREEN Jo.Smith8 Created User "}));
  EXPECT_THAT(world.log(), HasSubstr("User ID Jo.Smith7 already exists\nChanging User ID to Jo.Smith8\n"));
}

TEST_P(InEveryKindOfDomain, ACopiedUsersGroupsAreCopiedToo) {
  LabSession world(GetParam());
  world.start();
  world.type_names("Jo", "", "Smith");
  windows::CreateUser_Click(world.session);
  world.services.directory
      .GetObject(world.is_nt() ? "WinNT://TWK/Readers" : "LDAP://twk.test/CN=Readers,DC=twk,DC=test")
      ->Add(world.path_of("Jo.Smith"));
  world.select(world.is_nt() ? "Jo.Smith" : "LDAP://twk.test/CN=Jo.Smith," + std::string(test::kNewStarters));
  world.session.form1.Copy_User.value = 1;
  world.type_names("Ann", "", "Lee");
  windows::CreateUser_Click(world.session);
  EXPECT_THAT(world.log(), HasSubstr("Copy User groups from user: "));
  EXPECT_THAT(world.groups_of("Ann.Lee"), testing::IsSupersetOf(world.groups_of("Jo.Smith")));
}

TEST_P(InEveryKindOfDomain, AGroupThatRefusesWarnsAndTheRunContinues) {
  LabSession world(GetParam());
  world.start();
  world.type_names("Jo", "", "Smith");
  world.directory.before = test::fail_at("Add", 1, platform::ads_error::kAccessDenied);
  windows::CreateUser_Click(world.session);
  EXPECT_THAT(
      world.log_tab(),
      ElementsAre(AllOf(HasSubstr("YELLOW Jo.Smith Created User - Error adding user to group: Staff: "),
                        HasSubstr("(access is denied; use an account"))));
  EXPECT_THAT(world.session.LastCreation.warnings,
              ElementsAre(HasSubstr("Error adding user to group: Staff")));
  EXPECT_THAT(world.log(), HasSubstr("Error adding user to group: Staff\n"));
  EXPECT_EQ(caption(world.session.form1.UserAccount), "Completed");
}

TEST_P(InEveryKindOfDomain, AGroupOfTheTemplateThatTheDomainLacksWarns) {
  LabSession world(GetParam());
  world.staff.GroupCount = 2;
  world.staff.Groups[1] = "Dissolved";
  world.start();
  world.type_names("Jo", "", "Smith");
  windows::CreateUser_Click(world.session);
  EXPECT_THAT(world.log_tab(), ElementsAre("YELLOW Jo.Smith Created User - Group not found: Dissolved"));
  EXPECT_THAT(world.log(), HasSubstr("Adding User to Groups\nGroup not found: Dissolved\n"));
}

TEST_P(InEveryKindOfDomain, APrimaryGroupIsSetOnceTheAccountIsItsMember) {
  LabSession world(GetParam());
  world.staff.PrimaryGroup = "Staff";
  world.start();
  world.type_names("Jo", "", "Smith");
  windows::CreateUser_Click(world.session);
  EXPECT_THAT(world.log_tab(), ElementsAre("GREEN Jo.Smith Created User "));
  EXPECT_THAT(world.log(), HasSubstr("Setting Primary Group: Staff.\n"));
  EXPECT_NE(world.property("Jo.Smith", "primaryGroupID"), "513");
}

TEST_P(InEveryKindOfDomain, APrimaryGroupWithoutMembershipWarns) {
  LabSession world(GetParam());
  world.staff.PrimaryGroup = "Readers";
  world.start();
  world.type_names("Jo", "", "Smith");
  windows::CreateUser_Click(world.session);
  EXPECT_THAT(
      world.log_tab(),
      ElementsAre(StartsWith(
          "YELLOW Jo.Smith Created User - Could not Set Primary Group - user may not be in group: ")));
  EXPECT_THAT(world.log(), HasSubstr("Could not Set Primary Group - user may not be in group\n"));
}

TEST_P(InEveryKindOfDomain, AnAccountThatCannotBeCreatedEndsRed) {
  LabSession world(GetParam());
  world.start();
  world.type_names("Jo", "", "Smith");
  world.directory.before = test::fail_at("SetInfo", 1, platform::ads_error::kAccessDenied);
  if (!world.is_nt())
    world.dialogs.expect("error: 2147942405");
  windows::CreateUser_Click(world.session);
  EXPECT_THAT(world.log_tab(), ElementsAre(StartsWith("RED Error Creating Users Account... - ")));
  EXPECT_EQ(caption(world.session.form1.UserAccount), "Error");
  EXPECT_EQ(world.session.form1.UserAccount.colour.get(), controls::kRed);
  EXPECT_EQ(world.session.form1.StatusBar1.panel1.get(), "Error Creating Users Account...");
  EXPECT_THAT(world.log(), HasSubstr("Error Creating Users Account: Jo.Smith\nError Number: 2147942405\n"));
  EXPECT_TRUE(world.session.form1.enabled);
  EXPECT_TRUE(world.services.files.is_directory("\\\\FS1\\D$\\Users\\Jo.Smith")) << "nothing is undone";
}

TEST_P(InEveryKindOfDomain, AccountsThatCannotBeMadeDurableAreNotReportedGreen) {
  LabSession world(GetParam());
  world.start();
  world.type_names("Jo", "", "Smith");
  world.directory.before = test::fail_at("end_batch", 1, base::error::kDiskFull);
  windows::CreateUser_Click(world.session);
  EXPECT_THAT(world.log_tab(), ElementsAre(StartsWith("RED Error Creating Users Account... - ")));
}

TEST_P(InEveryKindOfDomain, ADirectoryThatCannotBeMadeEndsRed) {
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
    LabSession world(GetParam());
    world.start();
    std::filesystem::remove_all(world.folder.path() / "servers/FS1/D" / one.missing);
    world.type_names("Jo", "", "Smith");
    windows::CreateUser_Click(world.session);
    EXPECT_THAT(world.log_tab(), ElementsAre(StartsWith("RED " + one.status + " - ")));
    EXPECT_EQ(caption(world.session.form1.Createdirs), one.light);
    EXPECT_EQ(world.path_of("Jo.Smith").empty() || world.is_nt(), true);
  }
}

TEST_P(InEveryKindOfDomain, ADirectoryThatIsThereIsUsedOnYesAndEndsTheRunOnNo) {
  for (const platform::Answer answer : {platform::Answer::kYes, platform::Answer::kNo}) {
    LabSession world(GetParam());
    world.start();
    world.services.files.make_directory("\\\\FS1\\D$\\Users\\Jo.Smith");
    world.dialogs.expect("Home Dir  Already Exist \r\nContinue ?", answer);
    world.type_names("Jo", "", "Smith");
    windows::CreateUser_Click(world.session);
    EXPECT_EQ(world.dialogs.last_title, "Error Creating Dir");
    if (answer == platform::Answer::kYes) {
      EXPECT_THAT(world.log_tab(), ElementsAre("GREEN Jo.Smith Created User "));
    } else {
      EXPECT_THAT(world.log_tab(), IsEmpty());
      EXPECT_EQ(caption(world.session.form1.progress), "Progress");
      EXPECT_TRUE(world.session.form1.enabled);
    }
  }
}

TEST_P(InEveryKindOfDomain, TheCommandRunsWithItsTagsFilled) {
  LabSession world(GetParam());
  world.set("UM", "RunCmd", "Yes");
  world.set("Setup", "BatchFileCreate", "notify %Domain% %Server% %UserName% %first%");
  world.start();
  world.type_names("Jo", "", "Smith");
  windows::CreateUser_Click(world.session);
  EXPECT_THAT(world.process.commands,
              ElementsAre(ElementsAre("notify", world.session.DomainName, "FS1", "Jo.Smith", "Jo")));
  EXPECT_EQ(caption(world.session.form1.run), "Completed");
}

TEST_P(InEveryKindOfDomain, ACommandThatFailsWarnsWithTheReason) {
  for (const std::int32_t number : {0, 1}) {
    LabSession world(GetParam());
    world.set("UM", "RunCmd", "Yes");
    world.set("Setup", "BatchFileCreate", "notify");
    world.process.result = {number, "no luck"};
    world.start();
    world.type_names("Jo", "", "Smith");
    windows::CreateUser_Click(world.session);
    EXPECT_THAT(world.log_tab(),
                ElementsAre("YELLOW Jo.Smith Created User - Error Running Command: notify: no luck"));
    EXPECT_EQ(caption(world.session.form1.run), number == 0 ? "Error" : "Completed");
  }
}

TEST_P(InEveryKindOfDomain, WithoutItsTemplateOrSiteNoAccountIsMade) {
  for (const std::string file : {"Template.dat", "Site.dat"}) {
    for (const bool folder : {false, true}) {
      LabSession world(GetParam());
      world.start();
      world.type_names("Jo", "", "Smith");
      std::filesystem::remove(world.folder.path() / "db" / file);
      if (folder)
        std::filesystem::create_directory(world.folder.path() / "db" / file);
      windows::CreateUser_Click(world.session);
      EXPECT_THAT(world.log_tab(),
                  ElementsAre(testing::AllOf(StartsWith("RED Error Creating User... - "), HasSubstr(file))));
      EXPECT_TRUE(world.services.files.list("\\\\FS1\\D$\\Users").empty());
      EXPECT_EQ(world.session.form1.mouse_pointer.get(), 0);
    }
  }
}

TEST(WinNtCreation, APasswordThatThePolicyRefusesEndsRed) {
  LabSession world(DomainKind::kNt);
  world.set("Setup", "Password", "short");
  world.start();
  world.type_names("Jo", "", "Smith");
  windows::CreateUser_Click(world.session);
  EXPECT_THAT(world.log_tab(), ElementsAre(StartsWith("RED Error Creating Users Account... - ")));
}

TEST(DirectoryCreation, APasswordThatThePolicyRefusesOnlyWarns) {
  LabSession world;
  world.set("Setup", "Password", "short");
  world.set("Preferences", "AccountDisabled", "Yes");
  world.set("Preferences", "PasswdNVRExpire", "Yes");
  world.start();
  world.type_names("Jo", "", "Smith");
  windows::CreateUser_Click(world.session);
  EXPECT_THAT(
      world.log_tab(),
      ElementsAre(StartsWith("YELLOW Jo.Smith Created User - Error:- Unable to set User password: ")));
  EXPECT_THAT(world.log(), HasSubstr("Error:- Unable to set User password\n"));
  const platform::User user(world.account("Jo.Smith"));
  EXPECT_FALSE(user.AccountDisabled()) << "what follows the password is skipped";
  EXPECT_NE(user.Get("userAccountControl").integer() & platform::kFlagPasswordNeverExpires, 0);
}

/// Another account with these names.
void add_somebody(LabSession& world, const std::string& account, const std::string& principal) {
  const platform::ObjectPtr other =
      world.services.directory.GetObject("LDAP://CN=Users,DC=twk,DC=test")->Create("user", "cn=Somebody");
  other->Put("samAccountName", account);
  other->Put("userPrincipalName", principal);
  other->SetInfo();
}

TEST(DirectoryCreation, AnAccountMadeInOneRequestEqualsOneMadeInStepsAndReportsTheSame) {
  struct Case {
    const char* what;
    const char* light;
    std::function<void(LabSession&)> prepare;
    std::vector<std::string> writes{};
    std::string description = "new starter";
  };
  const auto rows = [](std::string text) {
    return [text = std::move(text)](LabSession& world) {
      world.services.files.write(world.session.program_directory + "\\W2K.dat", text);
      if (text.find("PROMPT") != std::string::npos)
        world.dialogs.expect_input("Enter Value for Department", "Asked");
    };
  };
  const std::vector<Case> cases = {
      {"plain", "GREEN", [](LabSession&) {}, {"SetInfoWithPassword"}},
      {"with all settings",
       "GREEN",
       [](LabSession& world) {
         world.set("Preferences", "AccountDisabled", "Yes");
         world.set("Preferences", "ForcePasswdChange", "Yes");
         world.set("Preferences", "PasswdNVRExpire", "Yes");
       },
       {"SetInfoWithPassword", "SetInfo"}},
      {"without a password", "GREEN", [](LabSession& world) { world.set("Setup", "Password", ""); }},
      {"with a refused password", "YELLOW",
       [](LabSession& world) { world.set("Setup", "Password", "short"); }},
      {"with a refused field", "RED", [](LabSession&) {}, {}, std::string(1025, 'x')},
      {"with a name in use", "RED",
       [](LabSession& world) {
         add_somebody(world, "Jo.Smith", "somebody@twk.test");
         world.dialogs.expect("User name already exists.");
       }},
      {"with rows",
       "GREEN",
       rows("p,company,Acme\r\np,userPrincipalName,%first%@%Domain%\r\np,title,%IMPORT7%\r\n"),
       {"SetInfoWithPassword"}},
      {"with a row that is refused",
       "YELLOW",
       rows("p,company,Acme\r\np,department," + std::string(65, 'x') + "\r\np,title,Clerk\r\n"),
       {"SetInfoWithPassword", "SetInfoWithPassword", "SetInfo", "SetInfo", "SetInfo", "SetInfo"}},
      {"with a row for what the server keeps",
       "YELLOW",
       rows("p,company,Acme\r\np,whenCreated,20200101000000.0Z\r\np,title,Clerk\r\n"),
       {"SetInfoWithPassword", "SetInfo"}},
      {"with a principal name in use",
       "YELLOW",
       [&](LabSession& world) {
         add_somebody(world, "somebody", "taken@twk.test");
         rows("p,company,Acme\r\np,userPrincipalName,taken@twk.test\r\np,title,Clerk\r\n")(world);
       },
       {"SetInfoWithPassword"}},
      {"with rows over its own fields",
       "GREEN",
       rows("p,description,of the row\r\np,FullName,Row\r\np,userAccountControl,514\r\np,title,Clerk\r\n"),
       {"SetInfoWithPassword", "SetInfo"}},
      {"with rows for one attribute",
       "GREEN",
       rows("p,department,first\r\np,company,Acme\r\np,Department,PROMPT\r\np,TITLE,one\r\np,title,two\r\n"),
       {"SetInfoWithPassword", "SetInfo", "SetInfo", "SetInfo"}},
  };
  for (const Case& one : cases) {
    std::vector<std::string> told;
    for (const bool at_once : {false, true}) {
      LabSession world(DomainKind::kNative, "/DEBUG");
      world.directory.writes_at_once = at_once;
      one.prepare(world);
      world.start();
      world.session.form1.Description.text = one.description;
      world.type_names("Jo", "", "Smith");
      std::vector<std::string> writes;
      world.directory.before = [&](std::string_view operation, std::string_view) {
        if (operation.starts_with("Set"))
          writes.emplace_back(operation);
      };
      windows::CreateUser_Click(world.session);
      EXPECT_THAT(world.log_tab(), ElementsAre(testing::StartsWith(one.light))) << one.what;
      std::string tale = world.log() + world.session.LastCreation.message;
      for (const char* const attribute :
           {"displayName", "description", "homeDirectory", "homeDrive", "profilePath", "scriptPath",
            "logonHours", "givenName", "sn", "userAccountControl", "accountExpires", "company", "department",
            "title", "userPrincipalName"})
        tale += std::string("\n") + attribute + "=" + world.property("Jo.Smith", attribute);
      tale += world.property("Jo.Smith", "pwdLastSet") == "0" ? "\nmust change" : "\nmay keep";
      told.push_back(std::move(tale));
      if (at_once && !one.writes.empty()) {
        EXPECT_EQ(writes, one.writes) << one.what;
      }
    }
    EXPECT_EQ(told[0], told[1]) << one.what;
  }
}

TEST(DirectoryCreation, AnAccountNameInUseElsewhereIsReportedSeparately) {
  LabSession world;
  world.start();
  add_somebody(world, "Jo.Smith", "somebody@twk.test");
  world.dialogs.expect("User name already exists.\r\nChange the userID and try again");
  world.type_names("Jo", "", "Smith");
  windows::CreateUser_Click(world.session);
  EXPECT_THAT(world.log_tab(), ElementsAre(StartsWith("RED Error Creating Users Account... - ")));
  EXPECT_THAT(world.log(), HasSubstr("User name (SAMAccount) Already Exists :Jo.Smith\n"));
}

/// With rows for the directory, in a domain where "taken@twk.test" is someone's.
void start_with_rows(LabSession& world, const std::string& rows) {
  add_somebody(world, "somebody", "taken@twk.test");
  world.services.files.write(world.session.program_directory + "\\W2K.dat", rows);
  world.start();
  world.type_names("Jo", "", "Smith");
}

struct W2kCase {
  std::string row;
  std::string attribute;
  std::string stored;
  std::string light;
  std::string logged;
  std::string first = "Jo";
};

TEST(DirectoryCreation, EachRowOfTheTableIsWrittenOnItsOwn) {
  const std::vector<W2kCase> cases = {
      {"p,department,Sales %last%", "department", "Sales Smith", "GREEN",
       "Setting department, Sales Smith\n"},
      {"p,userPrincipalName,%first%@%Domain%", "userPrincipalName", "Jo@twk.test", "GREEN",
       "Setting userPrincipalName, Jo@twk.test\n"},
      {"p,noSuchAttribute,x", "noSuchAttribute", "", "YELLOW", "Error setting noSuchAttribute, x\n"},
      {"p,department,%IMPORT7%", "department", "", "GREEN", ""},
      {"m,department,mail rows are not for the account", "department", "", "GREEN", ""},
      {"p,userPrincipalName,taken@twk.test", "userPrincipalName", "", "YELLOW",
       "UPN aleardy Exists: taken@twk.test\nUPN not set\n"},
      {"p,userPrincipalName,%first%@%Domain%", "userPrincipalName", "", "YELLOW",
       "userPrincipalName is not set, because of the \"%\" in the user's name\n", "50%"},
  };
  for (const W2kCase& one : cases) {
    LabSession world;
    start_with_rows(world, one.row + "\r\np,company,Acme\r\n");
    world.session.form1.UserID_Box.text = "Jo.Smith";
    world.session.form1.strFirst.text = one.first;
    windows::CreateUser_Click(world.session);
    EXPECT_EQ(world.property("Jo.Smith", one.attribute), one.stored) << one.row;
    EXPECT_EQ(world.property("Jo.Smith", "company"), "Acme") << one.row;
    EXPECT_THAT(world.log_tab(),
                ElementsAre(AllOf(
                    StartsWith(one.light + " Jo.Smith Created User "),
                    HasSubstr(one.light == "GREEN" ? "" : one.logged.substr(0, one.logged.find('\n'))))))
        << one.row;
    EXPECT_THAT(world.log(), HasSubstr(one.logged)) << one.row;
  }
}

TEST(DirectoryCreation, GoodRowsAreWrittenTogetherAndOnlyABadOneStaysOut) {
  struct Case {
    std::string row;
    std::string logged;
    int writes;  ///< after the account's own three
  };
  const std::vector<Case> cases = {
      {"p,department,Sales", "Setting company, Acme\nSetting department, Sales\nSetting title, Clerk\n", 1},
      {"p,noSuchAttribute,x",
       "Setting company, Acme\nError setting noSuchAttribute, x\nThe schema has no attribute", 4},
      {"p,department,PROMPT", "Setting company, Acme\nSetting department, Asked\nSetting title, Clerk\n", 3},
      {"p,userPrincipalName,taken@twk.test",
       "Setting company, Acme\nUPN aleardy Exists: taken@twk.test\nUPN not set\nSetting title, Clerk\n", 2},
  };
  for (const Case& one : cases) {
    LabSession world;
    start_with_rows(world, "p,company,Acme\r\n" + one.row + "\r\np,title,Clerk\r\n");
    if (one.row.ends_with("PROMPT"))
      world.dialogs.expect_input("Enter Value for department", "Asked");
    int writes = 0;
    world.directory.before = [&](std::string_view operation, std::string_view) {
      writes += operation == "SetInfo" ? 1 : 0;
    };
    windows::CreateUser_Click(world.session);
    EXPECT_EQ(writes, 3 + one.writes) << one.row;
    EXPECT_THAT(world.log(), HasSubstr(one.logged)) << one.row;
    EXPECT_EQ(world.property("Jo.Smith", "company"), "Acme") << one.row;
    EXPECT_EQ(world.property("Jo.Smith", "title"), "Clerk") << one.row;
  }
}

TEST(DirectoryCreation, ACommaInTheNameNeedsAnAccountNameWithoutOne) {
  for (const bool with_row : {false, true}) {
    LabSession world;
    world.set("Setup", "SetupID", "%last%, %first%");
    world.set("Preferences", "CNName", "Yes");
    if (with_row) {
      world.services.files.write(world.session.program_directory + "\\W2K.dat",
                                 "p,SamAccountName,%first%%last%\r\n");
    } else {
      world.dialogs.expect("SAMName cannot have a comma in it.");
    }
    world.start();
    world.type_names("Jo", "", "Smith");
    windows::CreateUser_Click(world.session);
    if (!with_row) {
      EXPECT_EQ(world.dialogs.last_title, "Invaild Chr in SAMAccountName");
      EXPECT_THAT(world.log_tab(), IsEmpty());
      EXPECT_TRUE(world.session.form1.enabled);
      continue;
    }
    EXPECT_THAT(world.log_tab(), ElementsAre("GREEN Smith, Jo Created User "));
    EXPECT_EQ(world.account("JoSmith")->Name(), "CN=Smith\\, Jo");
    EXPECT_TRUE(world.services.files.is_directory("\\\\FS1\\D$\\Users\\JoSmith"));
  }
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
    LabSession world(one.kind);
    world.start();
    world.type_names("Jo", "", "Smith");
    world.session.form1.UserID_Box.text = one.id;
    windows::CreateUser_Click(world.session);
    EXPECT_EQ(world.session.form1.StatusBar1.panel1.get(), "User Name Invalid...") << one.id;
    EXPECT_THAT(world.log(), HasSubstr(one.logged)) << one.id;
    EXPECT_THAT(world.log_tab(), IsEmpty()) << one.id;
    EXPECT_EQ(world.dialogs.beeps, 1) << one.id;
    EXPECT_TRUE(world.services.files.list("\\\\FS1\\D$\\Users").empty()) << one.id;
  }
}

TEST(Creation, AnAccountNameHasOneToTwentyCharacters) {
  LabSession world;
  world.start();
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
    LabSession world(one.kind);
    world.start();
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
  LabSession world;
  world.start();
  std::filesystem::remove(world.folder.path() / "db/Log.txt");
  std::filesystem::create_directory(world.folder.path() / "db/Log.txt");
  world.type_names("Jo", "", "Smith");
  windows::CreateUser_Click(world.session);
  EXPECT_THAT(world.log_tab(),
              ElementsAre(HasSubstr("YELLOW Cannot write to Log.txt: "), "GREEN Jo.Smith Created User "));
}

TEST(Creation, ThePasswordIsLoggedOnlyWhenDebugging) {
  for (const std::string_view command_line : {"", "/debug"}) {
    LabSession world(DomainKind::kNative, command_line);
    world.start();
    world.type_names("Jo", "", "Smith");
    windows::CreateUser_Click(world.session);
    if (command_line.empty()) {
      EXPECT_THAT(world.log(), Not(HasSubstr("Welcome-2026")));
    } else {
      EXPECT_THAT(world.log(), HasSubstr("Setting user password: Welcome-2026\nPassword set\n"));
    }
  }
}

TEST(Creation, WhenDebuggingAFailureAfterTheFieldsStopsTheProgram) {
  LabSession world(DomainKind::kNt, "/DEBUG");
  world.set("Setup", "Password", "short");
  world.start();
  world.type_names("Jo", "", "Smith");
  EXPECT_THROW(windows::CreateUser_Click(world.session), base::RuntimeError);
}

TEST_P(InEveryKindOfDomain, ATemplateMayAskForTerminalServerSettings) {
  const struct {
    const char* value;
    bool asks;
  } cases[] = {{"Enabled", true}, {"enabled", true}, {"Disabled", false}, {"Yes", false}};
  for (const auto& [value, asks] : cases) {
    LabSession world(GetParam());
    world.staff.VariableNames[1] = "wts";
    world.staff.VariableValues[1] = value;
    world.start();
    controls::ListView& rows = world.session.form1.ListView9;
    rows.set_sub_item(rows.at(1), 1, "\\\\%server%\\%UserName%");
    rows.set_sub_item(rows.at(3), 1, "No");
    world.type_names("Jo", "", "Smith");
    windows::CreateUser_Click(world.session);
    EXPECT_THAT(world.log_tab(), ElementsAre("GREEN Jo.Smith Created User "));
    EXPECT_EQ(world.log().find("Setting WTS settings...\n") != std::string::npos, asks);
    using platform::WtsConfigClass;
    using platform::WtsConfigValue;
    platform::Network& network = world.services.network;
    EXPECT_EQ(network.WTSQueryUserConfig("", "Jo.Smith", WtsConfigClass::kTerminalServerHomeDir),
              WtsConfigValue(asks ? "\\\\FS1\\Jo.Smith" : ""));
    EXPECT_EQ(network.WTSQueryUserConfig("", "Jo.Smith", WtsConfigClass::kAllowLogonTerminalServer),
              WtsConfigValue(asks ? 0U : 1U));
  }
}

TEST(Creation, ATerminalServerSettingThatIsRefusedDoesNotWarn) {
  LabSession world;
  world.staff.VariableNames[1] = "WTS";
  world.staff.VariableValues[1] = "Enabled";
  world.start();
  controls::ListView& rows = world.session.form1.ListView9;
  rows.set_sub_item(rows.at(2), 1, "Drive");
  world.type_names("Jo", "", "Smith");
  windows::CreateUser_Click(world.session);
  EXPECT_THAT(world.log_tab(), ElementsAre("GREEN Jo.Smith Created User "));
  EXPECT_THAT(world.log(), HasSubstr("Setting WTS settings...\n"
                                     "WTSSetUserConfigString failed with error 87\n"));
  EXPECT_EQ(world.dialogs.beeps, 1);
}

TEST(Creation, WithTheAccountSwitchedOffOnlyTheRestIsDone) {
  LabSession world;
  world.set("UM", "UserAccount", "No");
  world.start();
  world.type_names("Jo", "", "Smith");
  windows::CreateUser_Click(world.session);
  EXPECT_THAT(world.log_tab(), ElementsAre("GREEN Jo.Smith Created User "));
  EXPECT_EQ(world.path_of("Jo.Smith"), "");
  EXPECT_TRUE(world.services.files.is_directory("\\\\FS1\\D$\\Users\\Jo.Smith"));
  EXPECT_EQ(caption(world.session.form1.UserAccount), "");
}

}  // namespace
}  // namespace twk::creation
