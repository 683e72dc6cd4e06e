#include "screens/screen_test.hpp"
#include "screens/widgets/list_pane.hpp"
#include "session/editor_windows.hpp"
#include "session/form1.hpp"
#include "session/windows.hpp"
#include "stores/side_tables.hpp"
#include "windows/editors/custom_properties.hpp"
#include "windows/editors/permissions_window.hpp"
#include "windows/share_points_form.hpp"
#include "windows/template_tab.hpp"

namespace twk::test {
namespace {

class EditorsTest : public ScreenTest {
 protected:
  void open_tab(int setup_tab) {
    open();
    window->tabs().setCurrentIndex(session::tab::kSetup);
    window->setup_tabs().setCurrentIndex(setup_tab);
  }
  screens::ListPane* pane(const char* name, QWidget* in = nullptr) {
    return dynamic_cast<screens::ListPane*>(find<QTreeView>(name, in));
  }
  /// Selects a row with the keyboard, like a person who never touches the mouse.
  void go_to(screens::ListPane& list, int row) {
    list.window()->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(list.window()));
    list.setFocus();
    QTest::keyClick(&list, Qt::Key_Home);
    for (int i = 0; i < row; ++i)
      QTest::keyClick(&list, Qt::Key_Down);
  }
  static void press_ok(QWidget& shown) { QTest::keyClick(&shown, Qt::Key_Return); }
  static void press_escape(QWidget& shown) { QTest::keyClick(&shown, Qt::Key_Escape); }

  session::Session& session = lab.session;
  session::Form1& form1 = session.form1;
};

TEST_F(EditorsTest, ADirectoryRowIsAddedByKeyboardEditedWithEnterAndDeleted) {
  open_tab(session::setup_tab::kW2k);
  screens::ListPane* const list = pane("ListView7");
  form1.ListView7.clear();
  list->setFocus();
  EXPECT_FALSE(find<QPushButton>("ListView7_Edit")->isEnabled());
  expect_window([this](QWidget& shown) {
    EXPECT_EQ(shown.windowTitle(), "Edit W2K Properties");
    EXPECT_EQ(shown.focusWidget(), find<QLineEdit>("W2K_Attribute", &shown));
    type("W2K_Attribute", "title", &shown);
    type("W2K_Propertry", "Dr", &shown);
    click("W2K_2000", &shown);
    EXPECT_EQ(find<QRadioButton>("W2K_2000", &shown)->toolTip(), "Only set if Exchange account is created");
    press_ok(shown);
  });
  QTest::keyClick(list, Qt::Key_Insert);
  EXPECT_EQ(lab.database_file("W2K.dat"), "m,title,Dr\n");
  EXPECT_TRUE(find<QPushButton>("ListView7_Edit")->isEnabled());
  expect_window([this](QWidget& shown) {
    EXPECT_TRUE(find<QRadioButton>("W2K_2000", &shown)->isChecked());
    click("W2K_Person", &shown);
    press_ok(shown);
  });
  go_to(*list, 0);
  QTest::keyClick(list, Qt::Key_Return);
  EXPECT_EQ(lab.database_file("W2K.dat"), "p,title,Dr\n");
  expect_box("Sure to Delete title", QMessageBox::Yes);
  form1.Confirm_Deletes.value = 1;
  go_to(*list, 0);
  QTest::keyClick(list, Qt::Key_Delete);
  EXPECT_TRUE(form1.ListView7.empty());
}

TEST_F(EditorsTest, AMailRowIsEditedByADoubleClickAndEscChangesNothing) {
  open_tab(session::setup_tab::kMail);
  screens::ListPane* const list = pane("ListView8");
  const std::string before = lab.database_file("Mail.dat");
  const QPoint first = list->visualRect(list->model()->index(0, 0)).center();
  const auto open_row = [&] {
    QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, first);
    QTest::mouseDClick(list->viewport(), Qt::LeftButton, {}, first);
  };
  expect_window([this](QWidget& shown) {
    EXPECT_EQ(shown.windowTitle(), "Edit Mail Properties");
    EXPECT_EQ(find<QLineEdit>("W2K_Attribute", &shown)->text(), "Container");
    type("W2K_Attribute", "other", &shown);
    press_escape(shown);
  });
  open_row();
  EXPECT_EQ(lab.database_file("Mail.dat"), before);
  EXPECT_EQ(form1.ListView8.at(0).text, "Container");
  expect_window([this](QWidget& shown) {
    type("W2K_Attribute", "a,b", &shown);
    EXPECT_TRUE(find<QLabel>("hint", &shown)->isVisible());
    type("W2K_Attribute", "Place", &shown);
    EXPECT_FALSE(find<QLabel>("hint", &shown)->isVisible());
    press_ok(shown);
  });
  open_row();
  EXPECT_EQ(lab.database_file("Mail.dat"), "Place" + before.substr(9));
}

TEST_F(EditorsTest, ATerminalServerRowShowsTheControlOfItsKind) {
  open_tab(session::setup_tab::kWts);
  screens::ListPane* const list = pane("ListView9");
  expect_window([this](QWidget& shown) {
    EXPECT_TRUE(find<QComboBox>("WTS_YN", &shown)->isVisible());
    EXPECT_FALSE(find<QLineEdit>("W2K_Propertry", &shown)->isVisible());
    EXPECT_TRUE(find<QLineEdit>("W2K_Attribute", &shown)->isReadOnly());
    EXPECT_EQ(shown.focusWidget(), find<QComboBox>("WTS_YN", &shown));
    choose("WTS_YN", "No", &shown);
    press_ok(shown);
  });
  go_to(*list, 3);
  QTest::keyClick(list, Qt::Key_Return);
  EXPECT_EQ(form1.ListView9.at(3).sub_items.front(), "No");
  EXPECT_EQ(lab.database_file("WTS.dat").substr(0, 6), "\n\n\nNo\n");
}

TEST_F(EditorsTest, AVariableIsKeptInTheTemplateWhenItsWindowCloses) {
  open();
  form1.templatelst.text = form1.templatelst.items().at(0);
  windows::templatelst_Click(session);
  expect_window([this](QWidget& shown) {
    expect_window([this](QWidget& row) {
      EXPECT_EQ(row.windowTitle(), "Edit Template Variables");
      EXPECT_EQ(find<QLineEdit>("W2K_Attribute", &row)->maxLength(), 15);
      type("W2K_Attribute", "Dept", &row);
      type("W2K_Propertry", "Sales", &row);
      press_ok(row);
    });
    click("ListView1_New", &shown);
    press_escape(shown);
  });
  windows::Variables(session);
  windows::templatelst_Click(session);
  ASSERT_EQ(session.variables.ListView1.size(), 1U);
  EXPECT_EQ(session.variables.ListView1.at(0).text, "Dept");
  EXPECT_FALSE(session.variables.visible.get());
}

TEST_F(EditorsTest, ACustomFieldAppearsAndDisappears) {
  open();
  expect_window([this](QWidget& shown) {
    expect_window([this](QWidget& row) {
      EXPECT_EQ(row.windowTitle(), "Edit Custom Properties");
      type("W2K_Attribute", "Room", &row);
      type("W2K_Propertry", "roomNumber", &row);
      press_ok(row);
    });
    screens::ListPane* const list = pane("ListView1", &shown);
    go_to(*list, 0);
    QTest::keyClick(list, Qt::Key_Return);
    click("OK", &shown);
  });
  windows::show_custom(session);
  EXPECT_TRUE(form1.Custom_Value[0].visible.get());
  expect_window([this](QWidget& shown) {
    go_to(*pane("ListView1", &shown), 0);
    click("ListView1_Delete", &shown);
    click("OK", &shown);
  });
  windows::show_custom(session);
  EXPECT_FALSE(form1.Custom_Value[0].visible.get());
}

TEST_F(EditorsTest, APermissionIsAddedByTypingAndABlankOneRemoved) {
  open();
  expect_window([this](QWidget& shown) {
    EXPECT_EQ(shown.windowTitle(), "Directory Permissions");
    screens::ListPane* const list = pane("ListView1", &shown);
    const auto name_row = [&](const QString& typed, Qt::Key end) {
      click("Command4", &shown);
      auto* const editor = list->viewport()->findChild<QLineEdit*>();
      ASSERT_NE(editor, nullptr);
      QTest::keyClicks(editor, typed);
      QTest::keyClick(editor, end);
      settle();
    };
    name_row("Staff", Qt::Key_Return);
    choose("Access", "Full Control", &shown);
    name_row("", Qt::Key_Return);
    name_row("never", Qt::Key_Escape);
    EXPECT_EQ(session.permissions.ListView1.size(), 1U);
    click("NEW_Security", &shown);
    type("ctrOwner", "Administrators", &shown);
    click("OK_Button", &shown);
  });
  windows::Set_Security_Click(session);
  EXPECT_EQ(stores::read_permissions(session, "Permissions.dat"),
            (std::vector<records::PermissionRecord>{{true, "Staff", "Full Control", "Administrators"}}));
}

TEST_F(EditorsTest, TheShareFormHidesOwnerAndReplacement) {
  open();
  expect_window([this](QWidget& shown) {
    EXPECT_EQ(shown.windowTitle(), "Share Permissions");
    EXPECT_FALSE(find<QLineEdit>("ctrOwner", &shown)->isVisible());
    EXPECT_FALSE(find<QCheckBox>("NEW_Security", &shown)->isVisible());
    click("OK_Button", &shown);
  });
  windows::Sharepermissions_Click(session);
  EXPECT_EQ(stores::read_permissions(session, "SharePerm.dat").at(0).Account, "Everyone");
}

TEST_F(EditorsTest, SharePointsAreStoredWhileTheTemplateIsEdited) {
  open();
  form1.savetemplate.enabled = true;
  expect_window([this](QWidget& shown) {
    type("HomeShareName", "\\homes", &shown);
    press_ok(shown);
  });
  windows::btnSharePoints_Click(session);
  EXPECT_EQ(session.share_points.HomeSharePoint, "homes\\");
  form1.savetemplate.enabled = false;
  expect_window([this](QWidget& shown) {
    EXPECT_FALSE(find<QPushButton>("btnOK", &shown)->isEnabled());
    EXPECT_FALSE(find<QLineEdit>("HomeShareName", &shown)->isEnabled());
    press_escape(shown);
  });
  windows::btnSharePoints_Click(session);
}

TEST_F(EditorsTest, TheMailLogonIsSavedAndThePasswordIsNotShown) {
  open_tab(session::setup_tab::kMail);
  form1.Mail_Logon.value = 1;
  EXPECT_FALSE(find<QLineEdit>("txtPassword")->isEnabled());
  QTest::keyClick(find<QCheckBox>("Mail_Logon"), Qt::Key_Space);
  EXPECT_EQ(find<QLineEdit>("txtPassword")->echoMode(), QLineEdit::Password);
  type("PORT", "390");
  type("txtAdmin", "mailer");
  type("txtPassword", "S3cret");
  click("savemail");
  std::string account;
  EXPECT_TRUE(session.platform.registry.Reg_Read(platform::kHiveLocalMachine, "Software\\Oxbrook\\TWK\\Mail",
                                                 "Admin_Account", account));
  EXPECT_EQ(account, "mailer");
}

}  // namespace
}  // namespace twk::test
