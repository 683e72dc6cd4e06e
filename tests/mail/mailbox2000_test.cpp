#include "mail/create_mailbox2000.hpp"

#include "mail/delete_mailbox.hpp"
#include "mail_session.hpp"

namespace twk::mail {
namespace {

using lab::DomainKind;
using testing::ElementsAre;
using testing::HasSubstr;

/// A lab session whose site has the lab's Exchange 2000 server.
class StoreSession : public test::MailSession {
 public:
  explicit StoreSession(DomainKind kind = DomainKind::kNative, std::string_view command_line = "")
      : MailSession(kind, command_line) {
    site.Exchange2000 = true;
    site.ExchangeServer = "EX2K";
    site.ExchangeSite = "First Storage Group";
    site.MailStore = "Mailbox Store";
  }
  void add_row(const std::string& name, const std::string& value, const std::string& kind = "MAIL") {
    session.form1.ListView7.add({}, name, kind, {value});
  }
};

TEST(StorePath, NamesTheStoreBelowTheFirstAdministrativeGroup) {
  EXPECT_EQ(store_path("Org", "EX", "Group", "Store", "DC=a,DC=b,DC=c"),
            "CN=Store,CN=Group,CN=InformationStore,CN=EX,CN=Servers,CN=First Administrative Group,"
            "CN=Administrative Groups,CN=Org,CN=Microsoft Exchange,CN=Services,CN=Configuration,"
            "DC=a,DC=b,DC=c");
  EXPECT_THAT(store_path("O", "E", "G", "S,CN=x", "DC=a"), testing::StartsWith("CN=S\\,CN\\=x,CN=G,"));
}

class Mailbox2000 : public testing::Test, public StoreSession {};

TEST_F(Mailbox2000, ACreatedUserGetsAMailboxInTheStoreOfTheSite) {
  start();
  create();
  EXPECT_THAT(log_tab(), ElementsAre("GREEN Jo.Smith Created User "));
  EXPECT_EQ(colour(), controls::kBlue);
  EXPECT_THAT(property("Jo.Smith", "homeMDB"), testing::StartsWith("CN=Mailbox Store,CN=First Storage"));
  EXPECT_EQ(property("Jo.Smith", "msExchUserAccountControl"), "2");
}

TEST_F(Mailbox2000, RowsOfItsKindAreWrittenAndNoOthers) {
  start();
  add_row("extensionAttribute1", "%first%.%last%%domain%");
  add_row("extensionAttribute2", "%first%@%Domain%");
  add_row("extensionAttribute3", "100%");
  add_row("extensionAttribute4", "PROMPT");
  add_row("company", "of the account", "USER");
  dialogs.expect_input("Enter Value for extensionAttribute4", "typed %");
  create();
  EXPECT_EQ(property("Jo.Smith", "extensionAttribute1"), "Jo.Smith@twk.test");
  EXPECT_EQ(property("Jo.Smith", "extensionAttribute2"), "Jo@twk.test");
  EXPECT_EQ(property("Jo.Smith", "extensionAttribute3"), "");
  EXPECT_EQ(property("Jo.Smith", "extensionAttribute4"), "typed %");
  EXPECT_EQ(property("Jo.Smith", "company"), "of the account");
  EXPECT_EQ(colour(), controls::kBlue);
}

TEST_F(Mailbox2000, ARefusedRowWarnsAndTheNextIsWritten) {
  start();
  add_row("noSuchAttribute", "x");
  add_row("extensionAttribute1", "written");
  create();
  EXPECT_EQ(colour(), controls::kYellow);
  EXPECT_THAT(log_tab(), ElementsAre(testing::StartsWith("YELLOW Jo.Smith Created User - ")));
  EXPECT_EQ(property("Jo.Smith", "extensionAttribute1"), "written");
}

TEST_F(Mailbox2000, WithoutTheStoreOrInAWinNtDomainThereIsNone) {
  for (const DomainKind kind : {DomainKind::kNative, DomainKind::kNt}) {
    StoreSession world(kind);
    world.site.MailStore = "No Store";
    world.start();
    world.create();
    EXPECT_EQ(world.light(), "Error");
    EXPECT_THAT(world.log(), HasSubstr("Failed to create Mail Account\n"));
    EXPECT_THAT(world.log_tab(), ElementsAre(testing::StartsWith("YELLOW Jo.Smith Created User - ")));
    EXPECT_EQ(world.property("Jo.Smith", "homeMDB"), "");
  }
}

TEST_F(Mailbox2000, AFailureStopsTheProgramThatIsDebugged) {
  StoreSession world(DomainKind::kNative, "/DEBUG");
  world.site.MailStore = "No Store";
  world.start();
  EXPECT_THROW(world.create(), base::RuntimeError);
  EXPECT_THAT(world.log(), HasSubstr("CN=No Store,CN=First Storage Group,CN=InformationStore,CN=EX2K"));
}

TEST_F(Mailbox2000, WithoutAnAccountOfThisRunThereIsNone) {
  start();
  session.form1.Create_User_Account.value = 0;
  create();
  EXPECT_EQ(light(), "Error");
}

TEST_F(Mailbox2000, IsTakenFromItsUserOnce) {
  start();
  create();
  EXPECT_TRUE(DeleteMailbox2000(session, account("Jo.Smith")));
  for (const char* const attribute : {"homeMDB", "mail", "proxyAddresses", "msExchMailboxGuid"})
    EXPECT_EQ(property("Jo.Smith", attribute), "") << attribute;
  EXPECT_FALSE(DeleteMailbox2000(session, account("Jo.Smith")));
  directory.before = test::fail_at("SetInfo", 1, platform::ads_error::kAccessDenied);
  auto user = directory.wrap(account("Jo.Smith"));
  const MailboxOwner owner{"Jo", "", "Smith", "Jo.Smith", {"EX2K", "First Storage Group", "Tarnwick"}};
  EXPECT_FALSE(CreateMailbox2000(session, user, owner, "Mailbox Store", "DC=twk,DC=test"));
  EXPECT_EQ(property("Jo.Smith", "homeMDB"), "");
  EXPECT_TRUE(CreateMailbox2000(session, user, owner, "Mailbox Store", "DC=twk,DC=test"));
}

}  // namespace
}  // namespace twk::mail
