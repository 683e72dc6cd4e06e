#include "windows/mail/search_mail.hpp"
#include "screens/screen_test.hpp"

namespace twk::test {
namespace {

class SearchMailTest : public ScreenTest {
 protected:
  void make(const std::string& container, const std::string& name, const std::string& object_class) {
    lab.services.directory.GetObject("LDAP://EX55/" + container + "OU=Head Office,O=Tarnwick")
        ->Create(object_class, name)
        ->SetInfo();
  }
  bool search(std::function<void(QWidget&)> person) {
    expect_window(std::move(person));
    return windows::choose_mailbox(
               lab.session,
               {.administrator = {}, .SamName = "jo", .place = {"EX55", "Head Office", "Tarnwick"}})
        .has_value();
  }
};

TEST_F(SearchMailTest, TheOneFoundIsSelectedAndOfSeveralThePersonChoosesOrCancels) {
  open();
  make("CN=Recipients,", "CN=jo", "OrganizationalPerson");
  EXPECT_TRUE(search([this](QWidget& shown) {
    EXPECT_EQ(find<QTreeView>("TreeView1", &shown)->currentIndex().data().toString(), "jo");
    click("Delete_Mail", &shown);
  }));
  make("", "CN=Other", "Container");
  make("CN=Other,", "CN=jo", "OrganizationalPerson");
  for (const bool by_key : {true, false}) {
    EXPECT_FALSE(search([&](QWidget& shown) {
      EXPECT_TRUE(find<QLabel>("told", &shown)->text().startsWith("Warning: Multiple mailboxs"));
      EXPECT_FALSE(find<QTreeView>("TreeView1", &shown)->currentIndex().parent().parent().isValid());
      if (by_key)
        QTest::keyClick(&shown, Qt::Key_Escape);
      else
        click("Command2", &shown);
    }));
  }
}

TEST_F(SearchMailTest, ANameIsTypedAndEnterSearches) {
  open();
  make("CN=Recipients,", "CN=Smith\\, Jo", "OrganizationalPerson");
  EXPECT_FALSE(search([this](QWidget& shown) {
    EXPECT_EQ(shown.windowTitle(), "User Not Found");
    EXPECT_FALSE(find<QPushButton>("Delete_Mail", &shown)->isEnabled());
    type("Text1", "smith, jo", &shown);
    press("Text1", Qt::Key_Return, &shown);
    EXPECT_EQ(shown.windowTitle(), "Select The Mailbox to Delete");
    EXPECT_TRUE(find<QPushButton>("Delete_Mail", &shown)->isEnabled());
    shown.close();
  }));
}

}  // namespace
}  // namespace twk::test
