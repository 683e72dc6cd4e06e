#include <QFormLayout>

#include "screens/screen_test.hpp"
#include "screens/widgets/list_pane.hpp"
#include "session/form1.hpp"

namespace twk::test {
namespace {

class SiteTabTest : public ScreenTest {
 protected:
  void open_tab() {
    open();
    window->tabs().setCurrentIndex(session::tab::kSite);
    sites = dynamic_cast<screens::ListPane*>(find<QTreeView>("ListView2"));
    ASSERT_NE(sites, nullptr);
  }
  /// Presses New and returns the editor of the new row's name.
  QLineEdit* begin_new() {
    click("New_Site");
    auto* const editor = qobject_cast<QLineEdit*>(window->focusWidget());
    if (editor == nullptr)
      throw std::logic_error("the name cannot be typed");
    return editor;
  }
  void name_new_site(const QString& name) {
    QLineEdit* const editor = begin_new();
    QTest::keyClicks(editor, name);
    QTest::keyClick(editor, Qt::Key_Return);
    settle();
  }
  void make_site(const QString& name, const QString& server) {
    name_new_site(name);
    type("NTSERVER", server);
    click("Save_Site");
  }
  void choose_site(int row) {
    sites->setFocus();
    QTest::mouseClick(sites->viewport(), Qt::LeftButton, {},
                      sites->visualRect(sites->model()->index(row, 0)).center());
  }
  [[nodiscard]] std::vector<std::string> names() const {
    std::vector<std::string> found;
    for (std::size_t i = 0; i < lab.session.form1.ListView2.size(); ++i)
      found.push_back(lab.session.form1.ListView2.at(i).text);
    return found;
  }
  [[nodiscard]] bool is_browsing() {
    return find<QPushButton>("New_Site")->isEnabled() && !find<QPushButton>("Save_Site")->isEnabled() &&
           !find<QLineEdit>("NTSERVER")->isEnabled();
  }
  /// The saved sites that are not deleted, as "name/server".
  std::vector<std::string> saved() {
    std::vector<std::string> found;
    const std::string bytes = lab.services.files.read(lab.session.dbpath + "Site.dat");
    for (std::size_t at = 0; at < bytes.size(); at += records::kSiteRecordSize) {
      const std::string record = bytes.substr(at, records::kSiteRecordSize);
      if (records::is_deleted(record))
        continue;
      const records::SiteRecord site = records::decode_site(record);
      found.push_back(std::string(base::trim(site.Name)) + "/" + std::string(base::trim(site.NTServer)));
    }
    return found;
  }

  screens::ListPane* sites = nullptr;
};

TEST_F(SiteTabTest, ANewSiteIsTypedSavedAndOfferedToNewUsers) {
  open_tab();
  EXPECT_EQ(status(), "Click on a site to edit");
  name_new_site("Branch");
  EXPECT_EQ(window->focusWidget(), find<QLineEdit>("NTSERVER"));
  QTest::keyClicks(find<QLineEdit>("NTSERVER"), "FS2");
  QTest::keyClick(find<QLineEdit>("NTSERVER"), Qt::Key_Return);
  EXPECT_THAT(saved(), testing::ElementsAre("Head Office/FS1", "Branch/FS2"));
  EXPECT_TRUE(is_browsing());
  EXPECT_GE(find<QComboBox>("NUsitename")->findText("Branch"), 0);
  choose_site(0);
  EXPECT_EQ(find<QLineEdit>("NTSERVER")->text(), "FS1");
  choose_site(1);
  EXPECT_EQ(find<QLineEdit>("NTSERVER")->text(), "FS2");
}

TEST_F(SiteTabTest, AnUnsuitableNameIsRefusedAndItsRowRemoved) {
  open_tab();
  name_new_site("head office");
  EXPECT_EQ(status(), "Site name already used");
  EXPECT_THAT(names(), testing::ElementsAre("Head Office"));
  EXPECT_TRUE(is_browsing());
}

TEST_F(SiteTabTest, EscInTheNameCancelsTheNewSite) {
  open_tab();
  QLineEdit* const editor = begin_new();
  QTest::keyClicks(editor, "Bra");
  QTest::keyClick(editor, Qt::Key_Escape);
  settle();
  EXPECT_THAT(names(), testing::ElementsAre("Head Office"));
  EXPECT_TRUE(is_browsing());
}

TEST_F(SiteTabTest, PressingNewTwiceOrSaveWhileTypingLosesNothing) {
  open_tab();
  QLineEdit* const editor = begin_new();
  QTest::keyClicks(editor, "Branch");
  find<QLineEdit>("NTSERVER")->setFocus();
  settle();
  type("NTSERVER", "FS2");
  click("Save_Site");
  EXPECT_THAT(saved(), testing::ElementsAre("Head Office/FS1", "Branch/FS2"));
}

TEST_F(SiteTabTest, EnterEditsTheChosenSiteAndEscCancelsTheEdit) {
  open_tab();
  choose_site(0);
  QTest::keyClick(sites, Qt::Key_Return);
  EXPECT_EQ(status(), "Edit Site...");
  type("NTSERVER", "FS9");
  QTest::keyClick(find<QLineEdit>("NTSERVER"), Qt::Key_Escape);
  EXPECT_TRUE(is_browsing());
  EXPECT_THAT(saved(), testing::ElementsAre("Head Office/FS1"));
  choose_site(0);
  EXPECT_EQ(find<QLineEdit>("NTSERVER")->text(), "FS1");
  QTest::keyClick(sites, Qt::Key_Return);
  type("NTSERVER", "FS9");
  click("Save_Site");
  EXPECT_THAT(saved(), testing::ElementsAre("Head Office/FS9"));
}

TEST_F(SiteTabTest, TheKindOfExchangeChangesTheFieldsAndIsKept) {
  open_tab();
  choose_site(0);
  click("Edit_Site");
  const auto* const rows =
      qobject_cast<QFormLayout*>(find<QComboBox>("Mail_Store")->parentWidget()->layout());
  ASSERT_NE(rows, nullptr);
  EXPECT_FALSE(find<QComboBox>("Mail_Store")->isVisible());
  EXPECT_FALSE(rows->labelForField(find<QComboBox>("Mail_Store"))->isVisible());
  click("EXH5_1");
  EXPECT_TRUE(rows->labelForField(find<QComboBox>("Mail_Store"))->isVisible());
  EXPECT_TRUE(find<QComboBox>("Mail_Store")->isVisible());
  click("Save_Site");
  QTest::keyClick(begin_new(), Qt::Key_Escape);
  settle();
  choose_site(0);
  EXPECT_TRUE(find<QRadioButton>("EXH5_1")->isChecked());
}

TEST_F(SiteTabTest, StoresOfAnExchange2000ServerAreFoundAndChosen) {
  open_tab();
  choose_site(0);
  click("Edit_Site");
  EXPECT_FALSE(find<QPushButton>("Find_Store")->isVisible());
  click("EXH5_1");
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
  open_tab();
  choose_site(0);
  click("Edit_Site");
  click("EXH5_1");
  type("EXSERVER", "EX2K");
  click("Find_Store");
  lab.session.form1.EXSite.add_item("Second Storage Group");
  expect_box("The stores cannot be read.");
  choose("EXSite", "Second Storage Group");
  EXPECT_EQ(find<QComboBox>("Mail_Store")->currentText(), "");
  QTest::keyClick(find<QComboBox>("EXSite"), Qt::Key_Up);
  EXPECT_EQ(find<QComboBox>("EXSite")->currentText(), "First Storage Group");
  EXPECT_EQ(find<QComboBox>("Mail_Store")->currentText(), "Mailbox Store");
}

TEST_F(SiteTabTest, DeletingAsksFirst) {
  open_tab();
  lab.session.form1.Confirm_Deletes.value = 1;
  choose_site(0);
  expect_box("Sure to Delete Site Record", QMessageBox::No);
  click("Delete_site");
  EXPECT_EQ(saved().size(), 1U);
  expect_box("Sure to Delete Site Record", QMessageBox::Yes);
  QTest::keyClick(sites, Qt::Key_Delete);
  EXPECT_EQ(status(), "Site Deleted.");
  EXPECT_TRUE(saved().empty());
  EXPECT_TRUE(names().empty());
  EXPECT_EQ(find<QComboBox>("NUsitename")->findText("Head Office"), -1);
  EXPECT_FALSE(find<QPushButton>("Edit_Site")->isEnabled());
  QTest::keyClick(sites, Qt::Key_Delete);
  QTest::keyClick(sites, Qt::Key_Return);
}

}  // namespace
}  // namespace twk::test
