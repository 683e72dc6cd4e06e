#include "mail/delete_mailbox.hpp"

#include "mail_session.hpp"
#include "windows/mail/search_mail.hpp"
#include "windows/state/directory_windows.hpp"

namespace twk::mail {
namespace {

using platform::Answer;
using platform::ObjectPtr;
using test::kRows;
using test::MailSession;
using testing::ElementsAre;
using testing::HasSubstr;

/// A site with the mailboxes "jo" and "al" and the custom recipient "remote" in "Recipients".
class MailboxDeletionTest : public testing::Test {
 protected:
  MailboxDeletionTest() {
    world.start_with(kRows);
    make("CN=Recipients", "CN=jo");
    make("CN=Recipients", "CN=al");
    const ObjectPtr remote = test::store(world.object("CN=Recipients")->Create("Remote-Address", "CN=remote"),
                                         {{"Target-Address", "a@b"}});
    world.session.log.open();
  }
  void make(const std::string& container, const std::string& name,
            const std::string& object_class = "OrganizationalPerson") {
    parent(container)->Create(object_class, name)->SetInfo();
  }
  ObjectPtr parent(const std::string& container) {
    return container.empty() ? world.services.directory.GetObject("LDAP://EX55/" + test::kPlace)
                             : world.object(container);
  }
  std::vector<std::string> left(const std::string& container = "CN=Recipients") {
    std::vector<std::string> names;
    world.object(container)->enumerate({}, [&](const ObjectPtr& child) {
      names.push_back(child->Name());
      return true;
    });
    return names;
  }
  void put_container(const std::string& value) { world.session.form1.ListView8.at(0).sub_items = {value}; }
  [[nodiscard]] std::string title() const { return window().caption; }
  [[nodiscard]] const windows::Serach_Mail& window() const { return world.session.serach_mail; }
  /// The mailboxes in the window's tree, each after its container's name.
  std::vector<std::string> found() {
    std::vector<std::string> names;
    controls::TreeView& tree = world.session.serach_mail.TreeView1;
    for (const controls::TreeNode* node = tree.first(); node != nullptr; node = tree.next(*node)) {
      if (node->image == "MAIL")
        names.push_back(node->parent->text + "/" + node->text);
    }
    return names;
  }
  void search(const std::string& name) {
    windows::prepare_search(world.session, jo);
    world.session.serach_mail.Text1.text = name;
    windows::search_again(world.session);
  }

  MailSession world;
  MailboxDeletion jo = {.administrator = {},
                        .SamName = "jo",
                        .place = {"EX55", "Head Office", "Tarnwick"},
                        .choose = [this](const MailboxDeletion& request) {
                          return windows::choose_mailbox(world.session, request);
                        }};
};

TEST_F(MailboxDeletionTest, IsDecidedBeforehandOrRefusedWithTheReason) {
  make("", "CN=Other", "Container");
  make("CN=Other", "CN=Inner", "Container");
  make("CN=Inner,CN=Other", "CN=JO");
  make("CN=Other", "CN=ann");
  const std::string inner = "LDAP://EX55/CN=JO,CN=Inner,CN=Other," + test::kPlace;
  const struct {
    const char* row;
    const char* name;
    std::string path;
    const char* server;
    std::string expected;  ///< the path, or a part of the reason
  } cases[] = {
      {"CN=Recipients", "jo", "", "EX55", "LDAP://EX55/CN=jo,CN=Recipients," + test::kPlace},
      {"Recipients", "jo", inner, "EX55", inner},
      {"Recipients", "jo", "LDAP://EX55/CN=al", "EX55", "has the path LDAP://EX55/CN=al."},
      {"Recipients", "ann", "", "EX55", "There is none in LDAP://EX55/CN=Recipients"},
      {"Gone", "al", "", "EX55", "The mailbox called \"al\" in Head Office on EX55: LDAP://EX55/CN=al,"},
      {"Recipients", "remote", "", "EX55", "CN=remote,CN=Recipients"},
      {"x%Where%", "ann", "", "EX55", "LDAP://EX55/CN=ann,CN=Other," + test::kPlace},
      {"", "ann", "", "EX55", "LDAP://EX55/CN=ann,CN=Other," + test::kPlace},
      {"x%Where%", "jo", "", "EX55", inner + ". Choose one by its path"},
      {"x%Where%", "nobody", "", "EX55", "There is no mailbox called \"nobody\""},
      {"x%Where%", "jo", "", "EX99", "Unable to connect to Exchange Server EX99: "},
      {"Recipients", "jo", "", "EX99", "Unable to read LDAP://EX99/"},
  };
  jo.silent = true;
  for (const auto& one : cases) {
    jo.SamName = one.name;
    jo.place.Server = one.server;
    jo.path = one.path;
    put_container(one.row);
    std::string told;
    base::Trap trap;
    if (!trap([&] { told = path_of(find_mailbox_to_delete(world.session, jo)); }))
      told = trap.description();
    EXPECT_THAT(told, HasSubstr(one.expected)) << one.row << " " << one.name;
  }
  EXPECT_EQ(left().size(), 4U);
}

TEST_F(MailboxDeletionTest, ACustomRecipientIsDeletedAsOneAndFailuresAreReported) {
  jo.SamName = "remote";
  jo.CustomRecipient = true;
  EXPECT_TRUE(DeleteMailbox(world.session, jo));
  EXPECT_THAT(world.log(),
              HasSubstr("Connect Object:LDAP://EX55/CN=Recipients,OU=Head Office,O=Tarnwick.\n"));
  EXPECT_FALSE(DeleteMailbox(world.session, jo)) << "it is gone";
  jo.administrator = {.name = "nobody", .password = {}, .own_logon = false};
  EXPECT_FALSE(DeleteMailbox(world.session, jo));
  EXPECT_THAT(world.log(), HasSubstr("8007052E\n"));
  EXPECT_THAT(left(), ElementsAre("CN=All Staff", "CN=jo", "CN=al"));
  EXPECT_THAT(world.session.log.take_reasons(),
              ElementsAre(HasSubstr("There is no mailbox called \"remote\""), HasSubstr("Unable to read")));
}

TEST_F(MailboxDeletionTest, IsAskedForUnlessPromptsAreOff) {
  jo.confirm = true;
  world.dialogs.expect(
      "Sure to Delete Mailbox\r\nLDAP://EX55/CN=Recipients,OU=Head Office,O=Tarnwick\r\ncn=jo", Answer::kNo);
  EXPECT_FALSE(DeleteMailbox(world.session, jo));
  EXPECT_EQ(world.dialogs.last_title, "Delete Mailbox");
  EXPECT_EQ(left().size(), 4U);
  jo.silent = true;
  EXPECT_TRUE(DeleteMailbox(world.session, jo));
}

TEST_F(MailboxDeletionTest, AVariableInTheContainerHandsOverToTheSearch) {
  put_container("%Where%");
  world.dialogs.expect("Do you wish to Search the Exchange server for the\r\nMailbox to delete ?",
                       Answer::kNo);
  EXPECT_FALSE(DeleteMailbox(world.session, jo));
  EXPECT_EQ(world.dialogs.last_title, "Can't Find Mailox to Delete");
  world.dialogs.on_modal = [](std::string_view) {};
  world.dialogs.expect("A Variable was used", Answer::kYes);
  EXPECT_FALSE(DeleteMailbox(world.session, jo)) << "the window was closed";
  EXPECT_EQ(left().size(), 4U);
  world.dialogs.expect("A Variable was used in the 'Container' field", Answer::kYes);
  world.dialogs.on_modal = [&](std::string_view name) {
    EXPECT_EQ(name, "Serach_Mail");
    EXPECT_EQ(title(), "Select The Mailbox to Delete");
    EXPECT_TRUE(windows::Delete_Mail(world.session));
  };
  EXPECT_TRUE(DeleteMailbox(world.session, jo));
  EXPECT_THAT(left(), ElementsAre("CN=All Staff", "CN=al", "CN=remote"));
}

TEST_F(MailboxDeletionTest, OfSeveralOfANameOnlyTheSelectedOneIsDeleted) {
  put_container("%Where%");
  make("", "CN=Other", "Container");
  make("CN=Other", "CN=Inner", "Container");
  make("CN=Inner,CN=Other", "CN=JO");
  world.dialogs.expect("A Variable was used", Answer::kYes);
  world.dialogs.expect("Select the mailbox to delete.");
  world.dialogs.on_modal = [&](std::string_view) {
    EXPECT_THAT(title(), HasSubstr("Warning: Multiple mailboxs with the same Name Found."));
    EXPECT_THAT(found(), ElementsAre("Recipients/jo", "Inner/JO"));
    EXPECT_FALSE(windows::Delete_Mail(world.session));
    controls::TreeView& tree = world.session.serach_mail.TreeView1;
    tree.select(tree.find("LDAP://EX55/CN=JO,CN=Inner,CN=Other,OU=Head Office,O=Tarnwick"));
    EXPECT_TRUE(windows::Delete_Mail(world.session));
  };
  EXPECT_TRUE(DeleteMailbox(world.session, jo));
  EXPECT_TRUE(left("CN=Inner,CN=Other").empty());
  EXPECT_EQ(left().size(), 4U);
}

TEST_F(MailboxDeletionTest, TheSearchTakesNamesAsTheyAreAndRecipientsOnly) {
  make("CN=Recipients", "CN=Smith\\, Jo (a/b)");
  search(" Smith, Jo (a/b) ");
  EXPECT_THAT(found(), ElementsAre("Recipients/Smith, Jo (a/b)"));
  EXPECT_TRUE(windows::Delete_Mail(world.session));
  for (const char* const nobody : {"", "*", "All Staff", "Servers", "Recipients"}) {
    search(nobody);
    EXPECT_EQ(title(), "User Not Found") << nobody;
    EXPECT_FALSE(window().Delete_Mail.enabled.get());
  }
}

TEST_F(MailboxDeletionTest, AServerThatIsDownIsReported) {
  search("remote");
  world.session.serach_mail.Text2.text = std::string("EX99");
  world.dialogs.expect("Unable to connect to Exchange Server");
  windows::search_again(world.session);
  EXPECT_EQ(title(), "Unable to connect to Exchange Server");
  EXPECT_EQ(window().TreeView1.size(), 0U);
}

TEST_F(MailboxDeletionTest, ALineThatDropsInTheMiddleOfTheSearchLeavesNoHalfTree) {
  world.directory.before = test::fail_at("enumerate", 2, platform::ads_error::kServerDown);
  world.dialogs.expect("Unable to connect to Exchange Server");
  windows::prepare_search(world.session, jo);
  EXPECT_EQ(window().TreeView1.size(), 0U);
}

}  // namespace
}  // namespace twk::mail
