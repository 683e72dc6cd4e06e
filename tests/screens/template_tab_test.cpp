#include "screens/screen_test.hpp"
#include "windows/state/form1.hpp"

namespace twk::test {
namespace {

using testing::ElementsAre;
using testing::IsSupersetOf;

class TemplateTabTest : public ScreenTest {
 protected:
  void open_tab() {
    open();
    window->tabs().setCurrentIndex(windows::tab::kTemplate);
  }
  void start_new(const QString& name) {
    click("NewTemplate");
    type("New_Template_Name", name);
  }
  void expect_browsing() {
    EXPECT_TRUE(find<QPushButton>("NewTemplate")->isEnabled());
    EXPECT_FALSE(find<QPushButton>("savetemplate")->isEnabled());
    EXPECT_TRUE(find<QComboBox>("templatelst")->isVisible());
  }
  QString field(const char* name) { return find<QLineEdit>(name)->text(); }
};

TEST_F(TemplateTabTest, AnEditedTemplateDisappearsOnlyAfterAQuestion) {
  open_tab();
  choose("templatelst", "Staff");
  click("EditTemplate");
  press("logon", Qt::Key_Escape);
  expect_browsing();
  choose("templatelst", "Staff");
  click("EditTemplate");
  type("logon", "new.cmd");
  press("logon", Qt::Key_F5);
  EXPECT_EQ(field("logon"), "new.cmd");
  expect_box("Save the changes to the template Staff?", QMessageBox::Cancel);
  find<QAction>("Refresh")->trigger();
  EXPECT_EQ(field("logon"), "new.cmd");
  expect_box("Save the changes to the template Staff?", QMessageBox::Save);
  find<QAction>("Refresh")->trigger();
  choose("templatelst", "Staff");
  EXPECT_EQ(field("logon"), "new.cmd");
  start_new("Sales");
  window->activateWindow();
  settle();
  expect_box("Save the changes to the template Sales?", QMessageBox::Discard);
  press("logon", Qt::Key_Escape);
  expect_browsing();
}

TEST_F(TemplateTabTest, ANewTemplateIsTypedSavedAndChosenAgain) {
  open_tab();
  start_new("Sales");
  windows::Form1& form = lab.session.form1;
  const std::pair<const char*, controls::TextBox&> fields[] = {{"propath", form.propath},
                                                               {"homedir", form.homedir},
                                                               {"logon", form.logon},
                                                               {"Profilepath", form.Profilepath},
                                                               {"Homedirpath", form.Homedirpath},
                                                               {"sharenameprofile", form.sharenameprofile},
                                                               {"Sharenamehomedir", form.Sharenamehomedir}};
  for (const auto& [name, control] : fields) {
    type(name, name);
    EXPECT_EQ(control.text.get(), name);
  }
  choose("Home_Drive_letter", "M:");
  double_click_row("ListView5", "Readers");
  click_row("ListView5", "Staff");
  click("add");
  click_row("ListView6", "Staff");
  click("SetPriGroup");
  click("savetemplate");
  EXPECT_EQ(status(), "Template Saved...");
  expect_browsing();
  EXPECT_GE(find<QComboBox>("nutemplate")->findText("Sales"), 0);
  choose("templatelst", "Staff");
  EXPECT_EQ(field("logon"), "staff.cmd");
  choose("templatelst", "Sales");
  for (const auto& [name, control] : fields)
    EXPECT_EQ(field(name), name);
  EXPECT_EQ(find<QComboBox>("Home_Drive_letter")->currentText(), "M:");
  EXPECT_EQ(find<QLabel>("PrimaryGrp")->text(), "Staff");
  EXPECT_THAT(shown_in("ListView6"), IsSupersetOf({"Readers", "Staff"}));
}

TEST_F(TemplateTabTest, AnEditIsSavedOrCancelledWithEsc) {
  open_tab();
  for (const bool saved : {false, true}) {
    choose("templatelst", "Staff");
    EXPECT_EQ(field("logon"), "staff.cmd");
    EXPECT_TRUE(find<QLineEdit>("logon")->isReadOnly());
    click("EditTemplate");
    EXPECT_EQ(status(), "Edit Template...");
    type("logon", "other.cmd");
    double_click_row("ListView6", "Staff");
    if (saved) {
      click("savetemplate");
    } else {
      expect_box("Save the changes to the template Staff?", QMessageBox::Discard);
      press("logon", Qt::Key_Escape);
    }
    expect_browsing();
  }
  choose("templatelst", "Staff");
  EXPECT_EQ(field("logon"), "other.cmd");
  EXPECT_THAT(shown_in("ListView6"), testing::IsEmpty());
}

TEST_F(TemplateTabTest, PasteFillsANewTemplateAndEscForgetsIt) {
  open_tab();
  choose("templatelst", "Staff");
  start_new("Copy");
  EXPECT_EQ(field("logon"), "");
  click("paste");
  EXPECT_EQ(field("logon"), "staff.cmd");
  EXPECT_THAT(shown_in("ListView6"), ElementsAre("Staff"));
  expect_box("Save the changes to the template Copy?", QMessageBox::Discard);
  press("New_Template_Name", Qt::Key_Escape);
  expect_browsing();
  EXPECT_EQ(find<QComboBox>("templatelst")->count(), 1);
}

TEST_F(TemplateTabTest, DeletingEmptiesEveryListOfTemplates) {
  open_tab();
  lab.session.form1.Confirm_Deletes.value = 1;
  choose("templatelst", "Staff");
  expect_box("Sure to Delete Template", QMessageBox::Yes);
  click("DeleteTemplate");
  EXPECT_EQ(find<QComboBox>("templatelst")->count() + find<QComboBox>("nutemplate")->count(), 0);
  EXPECT_FALSE(find<QPushButton>("EditTemplate")->isEnabled());
}

}  // namespace
}  // namespace twk::test
