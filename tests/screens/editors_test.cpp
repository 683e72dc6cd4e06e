#include "screens/screen_test.hpp"
#include "session/settings.hpp"
#include "stores/side_tables.hpp"
#include "windows/editors/custom_properties.hpp"
#include "windows/editors/permissions_window.hpp"
#include "windows/share_points_form.hpp"
#include "windows/state/editor_windows.hpp"
#include "windows/state/form1.hpp"
#include "windows/state/import_windows.hpp"
#include "windows/template_tab.hpp"

namespace twk::test {
namespace {

class EditorsTest : public ScreenTest {
 protected:
  void open_tab(int setup_tab) {
    open();
    window->tabs().setCurrentIndex(windows::tab::kSetup);
    window->setup_tabs().setCurrentIndex(setup_tab);
  }
  /// Selects a row with the keyboard, like a person who never touches the mouse.
  void go_to(const char* name, int row, QWidget* in = nullptr) {
    screens::ListPane& list = pane(name, in);
    list.window()->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(list.window()));
    list.setFocus();
    QTest::keyClick(&list, Qt::Key_Home);
    for (int i = 0; i < row; ++i)
      QTest::keyClick(&list, Qt::Key_Down);
  }
  /// The next window edits a row; types both of its fields and takes it.
  void expect_row(const char* title, const char* first, const char* second) {
    expect_window([=, this](QWidget& shown) {
      EXPECT_EQ(shown.windowTitle(), title);
      type("W2K_Attribute", first, &shown);
      type("W2K_Propertry", second, &shown);
      press_ok(shown);
    });
  }
  static void press_ok(QWidget& shown) { QTest::keyClick(&shown, Qt::Key_Return); }
  static void press_escape(QWidget& shown) { QTest::keyClick(&shown, Qt::Key_Escape); }

  windows::Desktop& session = lab.session;
  windows::Form1& form1 = session.form1;
};

TEST_F(EditorsTest, ADirectoryRowIsAddedByKeyboardEditedWithEnterAndDeleted) {
  open_tab(windows::setup_tab::kW2k);
  form1.ListView7.clear();
  pane("ListView7").setFocus();
  EXPECT_FALSE(find<QPushButton>("ListView7_Edit")->isEnabled());
  expect_row("Edit W2K Properties", "title", "Dr");
  press("ListView7", Qt::Key_Insert);
  EXPECT_EQ(lab.database_file("W2K.dat"), "p,title,Dr\n");
  EXPECT_TRUE(find<QPushButton>("ListView7_Edit")->isEnabled());
  for (const auto& [kind, stored] : {std::pair("W2K_2000", "m,title,Dr\n"), {"W2K_Person", "p,title,Dr\n"}}) {
    expect_window([this, kind = kind](QWidget& shown) {
      EXPECT_FALSE(find<QRadioButton>(kind, &shown)->isChecked());
      click(kind, &shown);
      press_ok(shown);
    });
    go_to("ListView7", 0);
    press("ListView7", Qt::Key_Return);
    EXPECT_EQ(lab.database_file("W2K.dat"), stored);
  }
  expect_box("Sure to Delete title", QMessageBox::Yes);
  form1.Confirm_Deletes.value = 1;
  go_to("ListView7", 0);
  press("ListView7", Qt::Key_Delete);
  EXPECT_TRUE(form1.ListView7.empty());
}

TEST_F(EditorsTest, AMailRowIsEditedByADoubleClickAndEscChangesNothing) {
  open_tab(windows::setup_tab::kMail);
  const std::string before = lab.database_file("Mail.dat");
  expect_window([this](QWidget& shown) {
    EXPECT_EQ(shown.windowTitle(), "Edit Mail Properties");
    EXPECT_EQ(find<QLineEdit>("W2K_Attribute", &shown)->text(), "Container");
    type("W2K_Attribute", "a,b", &shown);
    EXPECT_TRUE(find<QLabel>("hint", &shown)->isVisible());
    type("W2K_Attribute", "other", &shown);
    EXPECT_FALSE(find<QLabel>("hint", &shown)->isVisible());
    press_escape(shown);
  });
  double_click_row("ListView8", "Container");
  EXPECT_EQ(lab.database_file("Mail.dat"), before);
  EXPECT_EQ(form1.ListView8.at(0).text, "Container");
}

TEST_F(EditorsTest, ATerminalServerRowShowsTheControlOfItsKind) {
  open_tab(windows::setup_tab::kWts);
  expect_window([this](QWidget& shown) {
    EXPECT_FALSE(find<QLineEdit>("W2K_Propertry", &shown)->isVisible());
    EXPECT_TRUE(find<QLineEdit>("W2K_Attribute", &shown)->isReadOnly());
    EXPECT_EQ(shown.focusWidget(), find<QComboBox>("WTS_YN", &shown));
    choose("WTS_YN", "No", &shown);
    press_ok(shown);
  });
  go_to("ListView9", 3);
  press("ListView9", Qt::Key_Return);
  EXPECT_EQ(lab.database_file("WTS.dat").substr(0, 6), "\n\n\nNo\n");
}

TEST_F(EditorsTest, AVariableIsKeptInTheTemplateWhenItsWindowCloses) {
  open();
  form1.templatelst.text = form1.templatelst.items().at(0);
  windows::templatelst_Click(session);
  expect_window([this](QWidget& shown) {
    expect_row("Edit Template Variables", "Department-of-all", "Sales");
    click("ListView1_New", &shown);
    press_escape(shown);
  });
  windows::Variables(session);
  windows::templatelst_Click(session);
  ASSERT_EQ(session.variables.ListView1.size(), 1U);
  EXPECT_EQ(session.variables.ListView1.at(0).text, "Department-of-a") << "no more is taken";
}

TEST_F(EditorsTest, ACustomFieldAppearsAndDisappears) {
  open();
  for (const bool there : {true, false}) {
    expect_window([this, there](QWidget& shown) {
      go_to("ListView1", 0, &shown);
      if (there) {
        expect_row("Edit Custom Properties", "Room", "roomNumber");
        press("ListView1", Qt::Key_Return, &shown);
      } else {
        click("ListView1_Delete", &shown);
      }
      click("OK", &shown);
    });
    windows::show_custom(session);
    EXPECT_EQ(form1.Custom_Value[0].visible.get(), there);
  }
}

TEST_F(EditorsTest, APermissionIsAddedByTypingAndABlankOneRemoved) {
  open();
  expect_window([this](QWidget& shown) {
    EXPECT_EQ(shown.windowTitle(), "Directory Permissions");
    const auto name_row = [&](const QString& typed, Qt::Key end) {
      click("Command4", &shown);
      auto* const editor = pane("ListView1", &shown).viewport()->findChild<QLineEdit*>();
      ASSERT_NE(editor, nullptr);
      QTest::keyClicks(editor, typed);
      QTest::keyClick(editor, end);
      settle();
    };
    name_row("Staff", Qt::Key_Return);
    choose("Access", "Full Control", &shown);
    name_row("", Qt::Key_Return);
    name_row("never", Qt::Key_Escape);
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
}

TEST_F(EditorsTest, SharePointsAreTypedWhileTheTemplateIsEdited) {
  open();
  form1.savetemplate.enabled = true;
  expect_window([this](QWidget& shown) {
    type("HomeShareName", "homes", &shown);
    type("ProfileShareName", "profiles", &shown);
    press_ok(shown);
  });
  windows::btnSharePoints_Click(session);
  EXPECT_EQ(session.share_points.HomeSharePoint + session.share_points.ProfileSharePoint,
            "homes\\profiles\\");
  form1.savetemplate.enabled = false;
  expect_window([this](QWidget& shown) {
    EXPECT_FALSE(find<QPushButton>("btnOK", &shown)->isEnabled());
    EXPECT_FALSE(find<QLineEdit>("HomeShareName", &shown)->isEnabled());
    press_escape(shown);
  });
  windows::btnSharePoints_Click(session);
}

TEST_F(EditorsTest, TheMailLogonIsSavedAndThePasswordIsNotShown) {
  open_tab(windows::setup_tab::kMail);
  form1.Mail_Logon.value = 1;
  EXPECT_FALSE(find<QLineEdit>("txtPassword")->isEnabled());
  press("Mail_Logon", Qt::Key_Space);
  EXPECT_EQ(find<QLineEdit>("txtPassword")->echoMode(), QLineEdit::Password);
  const std::tuple<const char*, const char*, const char*> fields[] = {
      {"PORT", "LDAP_PORT", "390"},
      {"txtAdmin", "Admin_Account", "mailer"},
      {"txtPassword", "Mail_Password", "S3cret"}};
  for (const auto& [field, name, value] : fields)
    type(field, value);
  click("savemail");
  for (const auto& [field, name, value] : fields)
    EXPECT_EQ(session::read_setting(session, session::kMail, name), value);
}

}  // namespace
}  // namespace twk::test
