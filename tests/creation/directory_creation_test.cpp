#include "creation/creation_world.hpp"
#include "windows/state/new_user.hpp"

namespace twk::creation {
namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

TEST(DirectoryCreation, APasswordThatThePolicyRefusesOnlyWarns) {
  CreationWorld world;
  world.set("Setup", "Password", "short");
  world.set("Preferences", "AccountDisabled", "Yes");
  world.set("Preferences", "PasswdNVRExpire", "Yes");
  world.start_and_create();
  EXPECT_THAT(
      world.log_tab(),
      ElementsAre(StartsWith("YELLOW Jo.Smith Created User - Error:- Unable to set User password: ")));
  EXPECT_THAT(world.log(), HasSubstr("Error:- Unable to set User password\n"));
  const platform::User user(world.account("Jo.Smith"));
  EXPECT_FALSE(user.AccountDisabled()) << "what follows the password is skipped";
  EXPECT_NE(user.Get("userAccountControl").integer() & platform::kFlagPasswordNeverExpires, 0);
}

/// Another account with these names.
void add_somebody(CreationWorld& world, const std::string& account, const std::string& principal) {
  test::store(
      world.services.directory.GetObject("LDAP://CN=Users,DC=twk,DC=test")->Create("user", "cn=Somebody"),
      {{"samAccountName", account}, {"userPrincipalName", principal}});
}

TEST(DirectoryCreation, AnAccountMadeInOneRequestEqualsOneMadeInStepsAndReportsTheSame) {
  struct Case {
    const char* what;
    const char* light;
    std::function<void(CreationWorld&)> prepare;
    std::vector<std::string> writes{};
    std::string description = "new starter";
  };
  const auto rows = [](std::string text) {
    return [text = std::move(text)](CreationWorld& world) {
      world.services.files.write(world.session.program_directory + "\\W2K.dat", text);
      if (text.find("PROMPT") != std::string::npos)
        world.dialogs.expect_input("Enter Value for Department", "Asked");
    };
  };
  const std::vector<Case> cases = {
      {"plain", "GREEN", [](CreationWorld&) {}, {"SetInfoWithPassword"}},
      {"with all settings",
       "GREEN",
       [](CreationWorld& world) {
         world.set("Preferences", "AccountDisabled", "Yes");
         world.set("Preferences", "ForcePasswdChange", "Yes");
         world.set("Preferences", "PasswdNVRExpire", "Yes");
       },
       {"SetInfoWithPassword", "SetInfo"}},
      {"without a password", "GREEN", [](CreationWorld& world) { world.set("Setup", "Password", ""); }},
      {"with a refused password", "YELLOW",
       [](CreationWorld& world) { world.set("Setup", "Password", "short"); }},
      {"with a refused field", "RED", [](CreationWorld&) {}, {}, std::string(1025, 'x')},
      {"with a name in use", "RED",
       [](CreationWorld& world) {
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
       [&](CreationWorld& world) {
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
      CreationWorld world(DomainKind::kNative, "/DEBUG");
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
      const std::string card = world.session.new_user.card.caption;
      EXPECT_EQ(card.find("\n- ") != base::npos, std::string_view(one.light) != "GREEN")
          << one.what << ": " << card;
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
  StartedCreation world;
  add_somebody(world, "Jo.Smith", "somebody@twk.test");
  world.dialogs.expect("User name already exists.\r\nChange the userID and try again");
  world.create();
  EXPECT_THAT(world.log_tab(), ElementsAre(StartsWith("RED Error Creating Users Account... - ")));
  EXPECT_THAT(world.log(), HasSubstr("User name (SAMAccount) Already Exists :Jo.Smith\n"));
}

/// With rows for the directory, in a domain where "taken@twk.test" is someone's.
void start_with_rows(CreationWorld& world, const std::string& rows) {
  add_somebody(world, "somebody", "taken@twk.test");
  world.services.files.write(world.session.program_directory + "\\W2K.dat", rows);
  world.start();
  world.type_names("Jo", "", "Smith");
}

/// A row of the table between two good ones.
struct Row {
  std::string row;
  std::string attribute;
  std::string stored;
  std::string light;
  std::string logged;
  int writes = 1;  ///< after the account's own three; the good rows are written together
  std::string first = "Jo";
};

TEST(DirectoryCreation, GoodRowsAreWrittenTogetherAndOnlyABadOneStaysOut) {
  const std::vector<Row> cases = {
      {"p,department,Sales %last%", "department", "Sales Smith", "GREEN",
       "Setting company, Acme\nSetting department, Sales Smith\nSetting title, Clerk\n"},
      {"p,department,PROMPT", "department", "Asked", "GREEN",
       "Setting company, Acme\nSetting department, Asked\nSetting title, Clerk\n", 3},
      {"p,userPrincipalName,%first%@%Domain%", "userPrincipalName", "Jo@twk.test", "GREEN",
       "Setting userPrincipalName, Jo@twk.test\n"},
      {"p,noSuchAttribute,x", "noSuchAttribute", "", "YELLOW",
       "Error setting noSuchAttribute, x\nThe schema has no attribute", 4},
      {"p,department,%IMPORT7%", "department", "", "GREEN", "Setting company, Acme\nSetting title, Clerk\n"},
      {"m,department,mail rows are not for the account", "department", "", "GREEN", ""},
      {"p,userPrincipalName,taken@twk.test", "userPrincipalName", "", "YELLOW",
       "UPN aleardy Exists: taken@twk.test\nUPN not set\nSetting title, Clerk\n", 2},
      {"p,userPrincipalName,%first%@%Domain%", "userPrincipalName", "", "YELLOW",
       "userPrincipalName is not set, because of the \"%\" in the user's name\n", 1, "50%"},
  };
  for (const Row& one : cases) {
    SCOPED_TRACE(one.row);
    CreationWorld world;
    start_with_rows(world, "p,company,Acme\r\n" + one.row + "\r\np,title,Clerk\r\n");
    world.session.form1.UserID_Box.text = "Jo.Smith";
    world.session.form1.strFirst.text = one.first;
    if (one.row.ends_with("PROMPT"))
      world.dialogs.expect_input("Enter Value for department", "Asked");
    int writes = 0;
    world.directory.before = [&](std::string_view operation, std::string_view) {
      writes += operation == "SetInfo" ? 1 : 0;
    };
    windows::CreateUser_Click(world.session);
    EXPECT_EQ(writes, 3 + one.writes);
    EXPECT_EQ(world.property("Jo.Smith", one.attribute), one.stored);
    EXPECT_EQ(world.property("Jo.Smith", "company"), "Acme");
    EXPECT_EQ(world.property("Jo.Smith", "title"), "Clerk");
    EXPECT_THAT(world.log_tab(),
                ElementsAre(AllOf(
                    StartsWith(one.light + " Jo.Smith Created User "),
                    HasSubstr(one.light == "GREEN" ? "" : one.logged.substr(0, one.logged.find('\n'))))));
    EXPECT_THAT(world.log(), HasSubstr(one.logged));
  }
}

TEST(DirectoryCreation, ACommaInTheNameNeedsAnAccountNameWithoutOne) {
  for (const bool with_row : {false, true}) {
    CreationWorld world;
    world.set("Setup", "SetupID", "%last%, %first%");
    world.set("Preferences", "CNName", "Yes");
    if (with_row) {
      world.services.files.write(world.session.program_directory + "\\W2K.dat",
                                 "p,SamAccountName,%first%%last%\r\n");
    } else {
      world.dialogs.expect("SAMName cannot have a comma in it.");
    }
    world.start_and_create();
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

}  // namespace
}  // namespace twk::creation
