#include <QFormLayout>

#include "screens/screen_test.hpp"
#include "windows/state/form1.hpp"

namespace twk::test {
namespace {

class SiteTabTest : public ScreenTest {
 protected:
  void open_tab() {
    open();
    window->tabs().setCurrentIndex(windows::tab::kSite);
  }
  /// Begins to edit the one site, as an Exchange 2000 one.
  void edit_exchange_2000() {
    open_tab();
    click_row("ListView2", "Head Office");
    click("Edit_Site");
    click("EXH5_1");
  }
  /// Presses New and types into the new row.
  QLineEdit* begin_new(const QString& name) {
    click("New_Site");
    auto* const editor = qobject_cast<QLineEdit*>(window->focusWidget());
    if (editor == nullptr)
      throw std::logic_error("the name cannot be typed");
    QTest::keyClicks(editor, name);
    return editor;
  }
  void expect_browsing() {
    EXPECT_TRUE(find<QPushButton>("New_Site")->isEnabled());
    EXPECT_FALSE(find<QPushButton>("Save_Site")->isEnabled());
    EXPECT_FALSE(find<QLineEdit>("NTSERVER")->isEnabled());
  }
  QString server() { return find<QLineEdit>("NTSERVER")->text(); }
};

TEST_F(SiteTabTest, ANewSiteIsTypedSavedAndOfferedToNewUsers) {
  open_tab();
  QTest::keyClick(begin_new("Branch"), Qt::Key_Return);
  settle();
  EXPECT_EQ(window->focusWidget(), find<QLineEdit>("NTSERVER"));
  type("NTSERVER", "FS2");
  press("NTSERVER", Qt::Key_Return);
  expect_browsing();
  EXPECT_GE(find<QComboBox>("NUsitename")->findText("Branch"), 0);
  click_row("ListView2", "Head Office");
  EXPECT_EQ(server(), "FS1");
  click_row("ListView2", "Branch");
  EXPECT_EQ(server(), "FS2");
}

TEST_F(SiteTabTest, EscInTheNameCancelsTheNewSite) {
  open_tab();
  QTest::keyClick(begin_new("Bra"), Qt::Key_Escape);
  settle();
  EXPECT_THAT(shown_in("ListView2"), testing::ElementsAre("Head Office"));
  expect_browsing();
}

TEST_F(SiteTabTest, SaveWhileTheNameIsTypedLosesNothing) {
  open_tab();
  begin_new("Branch");
  find<QLineEdit>("NTSERVER")->setFocus();
  settle();
  type("NTSERVER", "FS2");
  click("Save_Site");
  EXPECT_THAT(shown_in("ListView2"), testing::ElementsAre("Head Office", "Branch"));
}

TEST_F(SiteTabTest, EnterEditsTheChosenSiteAndEscCancelsTheEdit) {
  open_tab();
  for (const bool saved : {false, true}) {
    click_row("ListView2", "Head Office");
    EXPECT_EQ(server(), "FS1");
    press("ListView2", Qt::Key_Return);
    EXPECT_EQ(status(), "Edit Site...");
    type("NTSERVER", "FS9");
    if (saved) {
      click("Save_Site");
    } else {
      expect_box("Save the changes to the site Head Office?", QMessageBox::Discard);
      press("NTSERVER", Qt::Key_Escape);
    }
    expect_browsing();
  }
  click_row("ListView2", "Head Office");
  EXPECT_EQ(server(), "FS9");
}

TEST_F(SiteTabTest, AnEditedSiteDisappearsOnlyAfterAQuestionAndIsSavedUnderItsOwnName) {
  open_tab();
  QTest::keyClick(begin_new("Branch"), Qt::Key_Return);
  type("NTSERVER", "FS7");
  click("Save_Site");
  click_row("ListView2", "Head Office");
  click("Edit_Site");
  type("NTSERVER", "FS9");
  for (const auto button : {QMessageBox::Cancel, QMessageBox::Save}) {
    expect_box("Save the changes to the site Head Office?", button);
    click_row("ListView2", "Branch");
  }
  EXPECT_EQ(lab.session.form1.ListView2.selected()->text, "Branch");
  EXPECT_EQ(server(), "FS7");
  click_row("ListView2", "Head Office");
  EXPECT_EQ(server(), "FS9");
}

TEST_F(SiteTabTest, TheKindOfExchangeShowsTheStoreWithItsLabel) {
  edit_exchange_2000();
  auto* const store = find<QComboBox>("Mail_Store");
  const auto* const rows = qobject_cast<QFormLayout*>(store->parentWidget()->layout());
  ASSERT_NE(rows, nullptr);
  for (const bool shown : {true, false}) {
    click(shown ? "EXH5_1" : "EXH5_0");
    EXPECT_EQ(store->isVisible(), shown);
    EXPECT_EQ(rows->labelForField(store)->isVisible(), shown);
    EXPECT_EQ(find<QPushButton>("Find_Store")->isVisible(), shown);
  }
}

TEST_F(SiteTabTest, StoresOfAnExchange2000ServerAreFoundAndChosen) {
  edit_exchange_2000();
  expect_box("Enter the name of the Exchange server first.");
  click("Find_Store");
  type("EXSERVER", "EX99");
  expect_box("No storage group of an Exchange 2000 server EX99 was found.");
  click("Find_Store");
  type("EXSERVER", "ex2k");
  click("Find_Store");
  EXPECT_EQ(find<QLineEdit>("EXorg")->text(), "Tarnwick");
  EXPECT_EQ(find<QComboBox>("EXSite")->currentText(), "First Storage Group");
  EXPECT_EQ(find<QComboBox>("Mail_Store")->currentText(), "Mailbox Store");
  choose("Mail_Store", "Mailbox Store 2");
  click("Save_Site");
  EXPECT_NE(lab.database_file("Site.dat").find("Mailbox Store 2"), std::string::npos);
  EXPECT_FALSE(find<QPushButton>("Find_Store")->isEnabled());
}

TEST_F(SiteTabTest, TheStoresFollowTheStorageGroupThatIsChosen) {
  edit_exchange_2000();
  type("EXSERVER", "EX2K");
  click("Find_Store");
  lab.session.form1.EXSite.add_item("Second Storage Group");
  expect_box("The stores cannot be read.");
  choose("EXSite", "Second Storage Group");
  EXPECT_EQ(find<QComboBox>("Mail_Store")->currentText(), "");
  press("EXSite", Qt::Key_Up);
  EXPECT_EQ(find<QComboBox>("Mail_Store")->currentText(), "Mailbox Store");
}

TEST_F(SiteTabTest, ButtonAndKeyDeleteAfterAQuestion) {
  open_tab();
  lab.session.form1.Confirm_Deletes.value = 1;
  click_row("ListView2", "Head Office");
  expect_box("Sure to Delete Site Record", QMessageBox::No);
  click("Delete_site");
  expect_box("Sure to Delete Site Record", QMessageBox::Yes);
  press("ListView2", Qt::Key_Delete);
  EXPECT_THAT(shown_in("ListView2"), testing::IsEmpty());
  EXPECT_EQ(find<QComboBox>("NUsitename")->findText("Head Office"), -1);
  for (const Qt::Key key : {Qt::Key_Delete, Qt::Key_Return})
    press("ListView2", key);
}

}  // namespace
}  // namespace twk::test
