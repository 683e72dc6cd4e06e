#include "mail/create_mailbox55.hpp"

#include "mail/mailbox_descriptor.hpp"
#include "mail_session.hpp"
#include "windows/state/form1.hpp"

namespace twk::mail {
namespace {

using lab::DomainKind;
using platform::ObjectPtr;
using test::kPlace;
using test::kRows;
using test::MailSession;
using test::with_row;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

class InEveryKindOfDomain : public testing::TestWithParam<DomainKind>, public MailSession {
 protected:
  InEveryKindOfDomain() : MailSession(GetParam()) {}
};
INSTANTIATE_TEST_SUITE_P(Kinds, InEveryKindOfDomain,
                         testing::Values(DomainKind::kNative, DomainKind::kMixed, DomainKind::kNt),
                         test::kind_name);

TEST_P(InEveryKindOfDomain, ACreatedUserGetsAMailboxThatIsTiedToTheAccount) {
  start_with(kRows);
  create();
  EXPECT_THAT(log_tab(), ElementsAre("GREEN Jo.Smith Created User "));
  EXPECT_EQ(light(), "Completed");
  EXPECT_EQ(colour(), controls::kBlue);
  const ObjectPtr made = mailbox("Jo.Smith");
  EXPECT_EQ(made->Class(), "OrganizationalPerson");
  const std::vector<std::pair<std::string, std::string>> expected = {
      {"Mail", "Jo.Smith@mail.test"},
      {"Home-MTA", "cn=Microsoft MTA,cn=EX55,cn=Servers,cn=Configuration,ou=Head Office, o = Tarnwick"},
      {"Home-MDB", "cn=Microsoft Private MDB,cn=EX55,cn=Servers,cn=Configuration,ou=Head Office,o=Tarnwick"},
      {"uid", "Jo.Smith"},
      {"name", "Jo.Smith"},
      {"givenName", "Jo"},
      {"sn", "Smith"},
      {"cn", "Jo Smith"},
      {"initials", "JS"},
      {"mailPreferenceOption", "0"},
      {"Replication-Sensitivity", "20"}};
  for (const auto& [attribute, value] : expected)
    EXPECT_EQ(made->Get(attribute).text(), value) << attribute;
  EXPECT_TRUE(made->Get("MAPI-Recipient").boolean());
  const base::Bytes sid = account("Jo.Smith")->Get("objectSID").bytes();
  EXPECT_EQ(made->Get("Assoc-NT-Account").bytes(), hex_text(sid));
  // The owner is at the place that the descriptor's header names, after the list of one entry.
  const base::Bytes descriptor = made->Get("NT-Security-Descriptor").bytes();
  const base::Bytes owner(descriptor.end() - static_cast<std::ptrdiff_t>(sid.size() * 2), descriptor.end());
  EXPECT_EQ(descriptor.size(), 2 * (20 + 8 + 8 + 3 * sid.size()));
  EXPECT_EQ(owner, hex_text(sid));
}

TEST_P(InEveryKindOfDomain, TheLogHasTheStepsOfTheMailbox) {
  start_with(with_row("OtherMailbox", "SMTP:%UserName%@old.test"));
  create();
  EXPECT_THAT(log(), HasSubstr("Connect to Object:LDAP://EX55/CN=Recipients,OU=Head Office,O=Tarnwick\n"
                               "Assoc NT Account\n"
                               "Home MTA done\n"
                               "Home MDB done\n"
                               "NT-Security-Descriptor\n"
                               "Set OtherMailBoxs\n"
                               "Set Mail Address :Jo.Smith@mail.test\n"
                               "Replication-Sensitivity: 20\n"
                               "Created Mail Account\n"));
  EXPECT_EQ(of("Jo.Smith", "otherMailbox"), "SMTP:Jo.Smith@old.test");
}

struct RowCase {
  const char* what;
  const char* attribute;
  const char* value;
  const char* written;
  std::int32_t colour = controls::kBlue;
};

TEST(MailboxRows, AreFilledInAndThoseThatCannotBeAreLeftOutOrWarn) {
  const std::vector<RowCase> cases = {
      {"tags", "info", "%exsite%/%EXServer%/%EXORG%/%Domain%/%UserName%/1%first%",
       "Head Office/EX55/Tarnwick/twk.test/Jo.Smith/J"},
      {"a variable of the template", "info", "%Dept%", "Sales"},
      {"a variable that is left", "info", "x%nothing%", ""},
      {"a percent sign in front", "info", "%", "%"},
      {"no value", "info", "", ""},
      {"the country is not written", "Country", "Sweden", ""},
      {"an attribute that is none", "Shoe-Size", "44", "", controls::kYellow},
      {"a value that does not fit", "Heuristics", "many", "", controls::kYellow}};
  for (const RowCase& one : cases) {
    MailSession world;
    auto rows = with_row(one.attribute, one.value);
    rows.emplace_back("title", "after it");
    world.staff.VariableNames[1] = "Dept";
    world.staff.VariableValues[1] = "Sales";
    world.start_with(rows);
    world.create();
    EXPECT_EQ(world.of("Jo.Smith", one.attribute), one.written) << one.what;
    EXPECT_EQ(world.of("Jo.Smith", "title"), "after it") << one.what;
    EXPECT_EQ(world.colour(), one.colour) << one.what;
  }
}

class Mailbox55Creation : public testing::Test, public MailSession {};

TEST_F(Mailbox55Creation, WithoutAddressOrContainerNothingIsMade) {
  for (const char* const missing : {"Target-Address", "Container"}) {
    MailSession world;
    auto rows = kRows;
    std::erase_if(rows, [&](const auto& row) { return row.first == missing; });
    world.start_with(rows);
    world.create();
    EXPECT_THAT(world.log_tab(), ElementsAre(testing::StartsWith("YELLOW Jo.Smith Created User - ")));
    EXPECT_EQ(world.light(), "Error");
    EXPECT_EQ(world.colour(), controls::kRed);
    const bool no_address = missing == kRows[1].first;
    EXPECT_THAT(world.log(),
                HasSubstr("Error Number: 0\nTarget-Address and Container cannot be blank.\nTarget-Address: " +
                          std::string(no_address ? "" : "Jo.Smith@mail.test") + "\nContainer: " +
                          (no_address ? "Recipients" : "") + "\nFailed to create Mail Account\n"));
    EXPECT_EQ(world.of("Jo.Smith", "uid"), "");
    EXPECT_GT(world.dialogs.beeps, 0);
  }
}

TEST_F(Mailbox55Creation, IsMadeInTheContainerThatItsRowNames) {
  object("CN=Recipients")->Create("Container", "CN=Sales\\, North/South")->SetInfo();
  const std::string nested = "CN=Sales\\, North/South,CN=Recipients";
  object(nested)->Create("Container", "CN=Inner")->SetInfo();
  start_with(kRows);
  session.form1.ListView8.at(0).sub_items = {"cn=Inner," + nested};
  create();
  EXPECT_EQ(object("CN=Jo.Smith,CN=Inner," + nested)->Get("uid").text(), "Jo.Smith");
}

TEST_F(Mailbox55Creation, ANameCannotLeaveItsPlace) {
  set("Setup", "SetupID", "%last%");
  start_with({{"Container", "Recipients,OU"},
              {"Target-Address", "x@y"},
              {"MemberOf", "LDAP://EX55/CN=%first%,CN=Recipients,OU=Head Office,O=Tarnwick"}});
  object("CN=Recipients")->Create("Container", "CN=a")->SetInfo();
  create("All Staff,CN=Recipients", "Smith");
  EXPECT_EQ(light(), "Error") << "a container of that name is not there";
  EXPECT_THAT(log(), HasSubstr("CN=Recipients\\,OU,OU=Head Office"));
  session.form1.ListView8.at(0).sub_items = {"Recipients"};
  create("All Staff,CN=Recipients", "Jones");
  EXPECT_EQ(colour(), controls::kYellow);
  EXPECT_TRUE(object("CN=All Staff,CN=Recipients")->Members().empty());
}

TEST_F(Mailbox55Creation, JoinsTheDistributionListsOfItsRows) {
  const std::string list = "LDAP://%EXServer%/CN=All Staff,CN=Recipients,OU=%EXSite%,O=%EXOrg%";
  auto rows = with_row("MemberOf", list);
  rows.emplace_back("memberof", "LDAP://EX55/CN=None,CN=Recipients," + kPlace);
  start_with(rows);
  create();
  EXPECT_EQ(colour(), controls::kYellow);
  const auto members = object("CN=All Staff,CN=Recipients")->Members();
  ASSERT_EQ(members.size(), 1U);
  EXPECT_EQ(members.front()->Name(), "CN=Jo.Smith");
  EXPECT_THAT(log(), HasSubstr("Adding to Distribution List\nMemberOf: LDAP://EX55/CN=All Staff,"));
}

TEST_F(Mailbox55Creation, AnExistingMailboxStaysAsItIs) {
  start_with(kRows);
  const ObjectPtr old =
      test::store(object("CN=Recipients")->Create("OrganizationalPerson", "CN=jo.smith"), {{"info", "old"}});
  create();
  EXPECT_EQ(light(), "Error");
  EXPECT_THAT(log(), HasSubstr("Error Number: 80071392\nFailed to set Target-Mail Address\n"));
  EXPECT_EQ(of("jo.smith", "info"), "old");
  EXPECT_EQ(of("jo.smith", "uid"), "");
}

TEST_F(Mailbox55Creation, WithOwnCredentialsARefusedLogonIsReported) {
  start_with(kRows);
  session.form1.Mail_Logon.value = 0;
  session.form1.txtAdmin.text = std::string("TWK\\admin");
  session.form1.txtPassword.text = std::string("not it");
  create();
  EXPECT_THAT(log(), HasSubstr("\nExchange Logon Error...\nFailed to create Mail Account\n"));
  EXPECT_THAT(log(), Not(HasSubstr("Failed to Connect to")));
  account("admin")->SetPassword("Right-2026");
  session.form1.txtPassword.text = std::string("Right-2026");
  create("Al");
  EXPECT_EQ(of("Al.Smith", "uid"), "Al.Smith");
}

TEST_F(Mailbox55Creation, TheProgramsOwnLogonDoesNotReadTheCredentials) {
  start_with(kRows);
  session.form1.txtAdmin.text = std::string("nobody");
  create();
  EXPECT_EQ(of("Jo.Smith", "uid"), "Jo.Smith");
}

TEST_F(Mailbox55Creation, IsReachedAtThePortOfTheMailTab) {
  const ObjectPtr root = services.directory.GetObject("LDAP://EX55/O=Tarnwick");
  test::store(root, {{"ldapPort", 390}});
  set("Mail", "LDAP_PORT", "390");
  start_with(with_row("MemberOf", "LDAP://EX55:390/CN=All Staff,CN=Recipients," + kPlace));
  create();
  EXPECT_EQ(colour(), controls::kBlue) << log();
  session.form1.PORT.text = std::string();
  create("Al");
  EXPECT_THAT(log(), HasSubstr("Error Number: 8007203A\nFailed to Connect to: LDAP://EX55/CN=Recipients"));
}

/// The connection drops at the n-th write to the mail server.
TEST_F(Mailbox55Creation, ADroppedConnectionIsReportedWithTheStepItBroke) {
  const std::vector<std::pair<int, std::string>> steps = {{1, "Failed to set Target-Mail Address"},
                                                          {2, "Error setting default Settings"},
                                                          {3, "Error setting Security-Descriptor"},
                                                          {4, "Error SettingOtherMailbox"},
                                                          {5, "Error SettingOtherMailbox"}};
  for (const auto& [broken, text] : steps) {
    MailSession world;
    world.start_with(with_row("OtherMailbox", "a@b"));
    int writes = 0;
    world.directory.before = [&, at = broken](std::string_view operation, std::string_view path) {
      if (operation == "SetInfo" && path.find("EX55") != base::npos && ++writes == at)
        throw base::RuntimeError(platform::ads_error::kServerDown, "the line is dead");
    };
    world.create();
    EXPECT_EQ(world.light(), "Error") << broken;
    EXPECT_THAT(world.log(), HasSubstr("Error Number: 8007203A\n" + text + "\nthe line is dead\n"));
    EXPECT_THAT(world.log_tab(),
                ElementsAre("YELLOW Jo.Smith Created User - " + text + "; the line is dead"));
  }
}

TEST(MailboxPrompts, AreAskedAndTheAnswerIsWritten) {
  MailSession world;
  world.start_with(with_row("title", "prompt"));
  world.dialogs.expect_input("Enter Value for title", "Head of 1%first%%last%");
  world.create();
  EXPECT_EQ(world.dialogs.last_title, "Enter value");
  EXPECT_EQ(world.of("Jo.Smith", "title"), "Head of JSmith");
}

TEST(MailboxPrompts, AreSkippedByAnImportThatSkipsThem) {
  for (const bool skip : {true, false}) {
    MailSession world;
    auto rows = with_row("title", "PROMPT");
    rows.emplace_back("company", "%IMPORT3%");
    world.start_with(rows);
    session::ImportState& import_state = world.session.import;
    import_state.Importing = true;
    import_state.ImportFieldCount = 3;
    import_state.ImportFields[3] = "Sales";
    world.session.form1.STOP_ON_RED[2].value = skip ? 1 : 0;
    if (!skip)
      world.dialogs.expect_input("Enter Value for title", "Clerk");
    world.create();
    EXPECT_EQ(world.of("Jo.Smith", "title"), skip ? "" : "Clerk");
    EXPECT_EQ(world.of("Jo.Smith", "company"), "Sales");
  }
}

TEST_F(Mailbox55Creation, WithDebugTheLogAlsoHasAddressAndDescriptor) {
  MailSession world(DomainKind::kNative, "/DEBUG");
  world.start_with(kRows);
  world.create();
  const std::string log = world.log();
  EXPECT_THAT(log, HasSubstr("\nLDAP://EX55/CN=Recipients,OU=Head Office,O=Tarnwick\n"
                             "EmailAddress: Jo.Smith@mail.test\nConnect to Object:LDAP://EX55/"));
  EXPECT_THAT(log, HasSubstr("Init SD\nGet SID\n1 Number should be 1\nSetting SD Onwer\n"));
}

TEST(CustomRecipients, GetTheirAddressAndNothingOfAnAccount) {
  MailSession world;
  world.start_with(kRows);
  Mailbox55 request;
  request.CustomRecipient = true;
  request.owner = {"Al", "", "Jones", "aj", {"EX55", "Head Office", "Tarnwick"}};
  EXPECT_TRUE(CreateMailbox55(world.session, request));
  const ObjectPtr made = world.mailbox("aj");
  EXPECT_EQ(made->Class(), "Remote-Address");
  EXPECT_EQ(made->Get("Target-Address").text(), "Al.Jones@mail.test");
  EXPECT_EQ(world.of("aj", "Mail"), "Al.Jones@mail.test");
  EXPECT_EQ(world.of("aj", "uid"), "");
}

}  // namespace
}  // namespace twk::mail
