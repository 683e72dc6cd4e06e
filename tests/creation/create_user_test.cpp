#include <random>

#include "base/text.hpp"
#include "batch/rehearsed_session.hpp"
#include "creation/creation_world.hpp"
#include "creation/foresee_user.hpp"

namespace twk::creation {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

class CreateUser : public InEveryKindOfDomain {};
INSTANTIATE_TEST_SUITE_P(Kinds, CreateUser, kKinds, test::kind_name);

TEST_P(CreateUser, ANameBecomesAnAccountWithItsDirectories) {
  start();
  session.form1.Description.text = std::string("new starter");
  type_names("josé", "q.", "núñez");
  windows::CreateUser_Click(session);

  EXPECT_THAT(log_tab(), ElementsAre("GREEN José.Núñez Created User "));
  EXPECT_EQ(caption(session.form1.UserAccount), "Completed");
  EXPECT_EQ(session.form1.UserAccount.colour.get(), controls::kBlue);
  EXPECT_EQ(caption(session.form1.Createdirs), "Completed");
  EXPECT_EQ(caption(session.form1.Sharedirs), "");
  EXPECT_EQ(session.form1.ProgressBar1.value.get(), 100);
  EXPECT_TRUE(session.form1.enabled);
  EXPECT_EQ(session.form1.mouse_pointer.get(), 0);

  const std::string user = "José.Núñez";
  EXPECT_EQ(property(user, "FullName"), "José Q. Núñez");
  EXPECT_EQ(property(user, "Description"), "new starter");
  EXPECT_EQ(property(user, "HomeDirectory"), "\\\\FS1\\Users\\José.Núñez");
  EXPECT_EQ(property(user, "Profile"), "\\\\FS1\\Profiles\\José.Núñez");
  EXPECT_EQ(property(user, "LoginScript"), "staff.cmd");
  EXPECT_EQ(property(user, is_nt() ? "HomeDirDrive" : "HomeDrive"), "H:");
  EXPECT_THAT(groups_of(user), testing::Contains(is_nt() ? "Staff" : "CN=Staff"));
  EXPECT_TRUE(services.files.is_directory("\\\\FS1\\D$\\Users\\José.Núñez"));
  EXPECT_TRUE(services.files.is_directory("\\\\FS1\\D$\\Profiles\\José.Núñez"));
  EXPECT_TRUE(session.form1.TreeView1.has_text(is_nt() ? user : "José Q. Núñez"));
}

TEST_P(CreateUser, TheLogHasEachStepInOrder) {
  start();
  std::filesystem::remove(folder.path() / "db/Log.txt");
  create();
  EXPECT_EQ(log(),
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
                std::string(is_nt() ? "" : "Setting W2K Properties\n") + "User Created.\n");
}

TEST_P(CreateUser, TheFlagsOfThePreferencesReachTheAccount) {
  set("Preferences", "AccountDisabled", "Yes");
  set("Preferences", "PasswdNVRExpire", "yes");
  set("Preferences", "CantChangePWD", "yes");
  start_and_create();
  const platform::User user(account("Jo.Smith"));
  EXPECT_TRUE(user.AccountDisabled());
  const auto flags = services.directory.GetObject("WinNT://TWK/Jo.Smith")->Get("UserFlags").integer();
  EXPECT_NE(flags & platform::kFlagPasswordNeverExpires, 0);
  EXPECT_NE(flags & platform::kFlagCannotChangePassword, 0);
}

TEST_P(CreateUser, AMustChangePasswordIsMarkedSo) {
  set("Preferences", "ForcePasswdChange", "Yes");
  start_and_create();
  EXPECT_EQ(services.directory.GetObject("WinNT://TWK/Jo.Smith")->Get("PasswordExpired").integer(), 1);
}

TEST_P(CreateUser, ATakenNameWithoutAnotherFormatIsRefused) {
  start_and_create();
  session.form1.ListView1.clear();
  session.form1.UserID_Box.text = std::string("jo.smith");
  dialogs.expect("User jo.smith Already Exist \r\nChange the UserID and Continue.");
  windows::CreateUser_Click(session);
  EXPECT_EQ(dialogs.last_title, "User Exist");
  EXPECT_THAT(log_tab(), ElementsAre("RED  User Name jo.smith already exist"));
  EXPECT_THAT(log(), HasSubstr("User : jo.smith  Already Exist \n"));
  EXPECT_TRUE(session.form1.enabled);
}

TEST_P(CreateUser, TheSecondFormatAndThenItsSerialNumberFindAFreeName) {
  set("Setup", "AltSetupID", "%first%.%last%%n%");
  set("Setup", "IncNumber", "7");
  start();
  for (const char* const before : {"", "Jo.Smith", "Jo.Smith7"}) {
    if (*before != '\0')
      dialogs.expect("\"" + std::string(before) +
                         "\" was just made with these names.\r\nMake another account with the same names?",
                     platform::Answer::kYes);
    session.share_points.HomeSharePoint.clear();
    create();
    session.form1.nutemplate.text = records::padded_template_name("Staff");
  }
  EXPECT_THAT(log_tab(),
              testing::IsSupersetOf({"GREEN Jo.Smith Created User ", "GREEN Jo.Smith7 Created User ",
                                     "GREEN Jo.Smith8 Created User "}));
  EXPECT_THAT(log(), HasSubstr("User ID Jo.Smith7 already exists\nChanging User ID to Jo.Smith8\n"));
}

TEST_P(CreateUser, ACopiedUsersGroupsAreCopiedToo) {
  start_and_create();
  group("Readers")->Add(path_of("Jo.Smith"));
  select(is_nt() ? "Jo.Smith" : "LDAP://twk.test/CN=Jo.Smith," + std::string(test::kNewStarters));
  session.form1.Copy_User.value = 1;
  type_names("Ann", "", "Lee");
  windows::CreateUser_Click(session);
  EXPECT_THAT(log(), HasSubstr("Copy User groups from user: "));
  EXPECT_THAT(groups_of("Ann.Lee"), testing::IsSupersetOf(groups_of("Jo.Smith")));
}

TEST_P(CreateUser, APrimaryGroupIsSetOnceTheAccountIsItsMember) {
  staff.PrimaryGroup = "Staff";
  start_and_create();
  EXPECT_THAT(log_tab(), ElementsAre("GREEN Jo.Smith Created User "));
  EXPECT_THAT(log(), HasSubstr("Setting Primary Group: Staff.\n"));
  EXPECT_NE(property("Jo.Smith", "primaryGroupID"), "513");
}

TEST_P(CreateUser, ADirectoryThatIsThereIsUsedOnYesAndEndsTheRunOnNo) {
  for (const platform::Answer answer : {platform::Answer::kYes, platform::Answer::kNo}) {
    StartedCreation own(GetParam());
    own.services.files.make_directory("\\\\FS1\\D$\\Users\\Jo.Smith");
    own.dialogs.expect("Home Dir  Already Exist \r\nContinue ?", answer);
    own.create();
    EXPECT_EQ(own.dialogs.last_title, "Error Creating Dir");
    if (answer == platform::Answer::kYes) {
      EXPECT_THAT(own.log_tab(), ElementsAre("GREEN Jo.Smith Created User "));
    } else {
      EXPECT_THAT(own.log_tab(), IsEmpty());
      EXPECT_EQ(caption(own.session.form1.progress), "Progress");
      EXPECT_TRUE(own.session.form1.enabled);
    }
  }
}

TEST_P(CreateUser, TheCommandRunsWithItsTagsFilled) {
  set("UM", "RunCmd", "Yes");
  set("Setup", "BatchFileCreate", "notify %Domain% %Server% %UserName% %first%");
  start_and_create();
  EXPECT_THAT(process.commands,
              ElementsAre(ElementsAre("notify", session.DomainName, "FS1", "Jo.Smith", "Jo")));
  EXPECT_EQ(caption(session.form1.run), "Completed");
}

TEST_P(CreateUser, ATemplateMayAskForTerminalServerSettings) {
  const std::pair<const char*, bool> cases[] = {
      {"Enabled", true}, {"enabled", true}, {"Disabled", false}, {"Yes", false}};
  for (const auto& [value, asks] : cases) {
    CreationWorld own(GetParam());
    own.staff.VariableNames[1] = "wts";
    own.staff.VariableValues[1] = value;
    own.start();
    controls::ListView& rows = own.session.form1.ListView9;
    rows.set_sub_item(rows.at(1), 1, "\\\\%server%\\%UserName%");
    rows.set_sub_item(rows.at(3), 1, "No");
    own.create();
    EXPECT_THAT(own.log_tab(), ElementsAre("GREEN Jo.Smith Created User "));
    EXPECT_EQ(own.log().find("Setting WTS settings...\n") != std::string::npos, asks);
    using platform::WtsConfigClass;
    using platform::WtsConfigValue;
    EXPECT_EQ(own.services.network.WTSQueryUserConfig("", "Jo.Smith", WtsConfigClass::kTerminalServerHomeDir),
              WtsConfigValue(asks ? "\\\\FS1\\Jo.Smith" : ""));
    EXPECT_EQ(
        own.services.network.WTSQueryUserConfig("", "Jo.Smith", WtsConfigClass::kAllowLogonTerminalServer),
        WtsConfigValue(asks ? 0U : 1U));
  }
}

TEST(Creation, ThePasswordIsLoggedOnlyWhenDebugging) {
  for (const std::string_view command_line : {"", "/debug"}) {
    CreationWorld world(DomainKind::kNative, command_line);
    world.start_and_create();
    if (command_line.empty()) {
      EXPECT_THAT(world.log(), Not(HasSubstr("Welcome-2026")));
    } else {
      EXPECT_THAT(world.log(), HasSubstr("Setting user password: Welcome-2026\nPassword set\n"));
    }
  }
}

TEST(Creation, WithTheAccountSwitchedOffOnlyTheRestIsDone) {
  CreationWorld world;
  world.set("UM", "UserAccount", "No");
  world.start_and_create();
  EXPECT_THAT(world.log_tab(), ElementsAre("GREEN Jo.Smith Created User "));
  EXPECT_EQ(world.path_of("Jo.Smith"), "");
  EXPECT_TRUE(world.services.files.is_directory("\\\\FS1\\D$\\Users\\Jo.Smith"));
  EXPECT_EQ(caption(world.session.form1.UserAccount), "");
}

/// Texts of which many begin others, and some hold what a filter, a name or a path would take for its own.
std::string any_name(std::mt19937& random, unsigned most) {
  constexpr std::array<std::string_view, 9> kParts = {"Jo", "an", "AN", "e", "é", "É", "-", "(", "1"};
  std::string name;
  for (auto parts = 1 + random() % most; parts > 0; --parts)
    name += kParts.at(random() % (random() % 4 == 0 ? kParts.size() : 6));
  return name;
}

// A command for one user does not load the users of the domain, half of whom are in a part that was not
// opened.
TEST_P(CreateUser, WithoutTheListsOfUsersANameIsTakenWhereItIsWithThem) {
  std::mt19937 random(22);
  std::vector<std::string> accounts(1, "Jo.Jo");
  for (int i = 0; i < 40; ++i)
    accounts.push_back(any_name(random, 1) + "." + any_name(random, 2));
  const auto prepare = [&](CreationWorld& world, std::string_view skip) {
    world.set("ADO", "SkipUsers", skip);
    world.set("ADO", "LoadAllUsers", skip == "True" ? "False" : "True");
    world.set("Setup", "AltSetupID", "%first%.%last%%n%");
    for (const std::string& account : accounts) {
      base::Trap there_already;
      there_already([&] {
        const platform::ObjectPtr user = world.make_user(account);
        if (!is_nt() && account.size() % 2 == 0)
          world.services.directory.GetObject("LDAP://CN=Users,DC=twk,DC=test")->MoveHere(user->ADsPath(), {});
      });
    }
    world.start();
  };
  CreationWorld all(GetParam());
  prepare(*this, "True");
  prepare(all, "False");
  int others = 0;
  for (int i = 0; i < 60; ++i) {
    const std::string first = any_name(random, 1);
    const std::string last = any_name(random, 2);
    const auto foreseen = [&](CreationWorld& world) {
      batch::RehearsedSession rehearsed(world.session, [](const std::string&) {});
      NewUserRequest request = windows::new_user_request(world.session);
      request.FirstName = first;
      request.LastName = last;
      const ForeseenUser user = foresee_user(rehearsed.session(), request);
      return std::tuple(user.account, user.fault, user.principal_name, user.warnings);
    };
    const auto found = foreseen(*this);
    EXPECT_EQ(found, foreseen(all)) << first << " " << last;
    const std::string name = base::upper(first + "." + last);
    const bool is_taken = std::ranges::any_of(accounts, [&](const std::string& account) {
      return is_nt() ? base::upper(account) == name : base::starts_with_fold(account, name);
    });
    EXPECT_EQ(std::get<0>(found).ends_with('0'), is_taken) << name;
    others += is_taken ? 1 : 0;
  }
  EXPECT_GT(others, 15);
}

}  // namespace
}  // namespace twk::creation
