#include "screens/screen_test.hpp"
#include "screens/widgets/list_pane.hpp"
#include "session/form1.hpp"

namespace twk::test {
namespace {

class TemplateTabTest : public ScreenTest {
 protected:
  void open_tab() {
    open();
    window->tabs().setCurrentIndex(session::tab::kTemplate);
  }
  void start_new(const QString& name) {
    click("NewTemplate");
    EXPECT_TRUE(find<QLineEdit>("New_Template_Name")->isVisible());
    type("New_Template_Name", name);
  }
  screens::ListPane* pane(const char* name) {
    return dynamic_cast<screens::ListPane*>(find<QTreeView>(name));
  }
  void click_group(const char* list, const QString& name, bool twice = false) {
    screens::ListPane* const groups = pane(list);
    const QModelIndexList found =
        groups->model()->match(groups->model()->index(0, 0), Qt::DisplayRole, name, 1, Qt::MatchExactly);
    if (found.isEmpty())
      throw std::logic_error("no group " + name.toStdString());
    groups->scrollTo(found.first());
    const QPoint place = groups->visualRect(found.first()).center();
    QTest::mouseClick(groups->viewport(), Qt::LeftButton, {}, place);
    if (twice)
      QTest::mouseDClick(groups->viewport(), Qt::LeftButton, {}, place);
  }
  [[nodiscard]] std::set<std::string> template_groups() const {
    std::set<std::string> found;
    for (std::size_t i = 0; i < form1.ListView6.size(); ++i)
      found.insert(form1.ListView6.at(i).text);
    return found;
  }
  [[nodiscard]] bool is_browsing() {
    return find<QPushButton>("NewTemplate")->isEnabled() && !find<QPushButton>("savetemplate")->isEnabled() &&
           find<QComboBox>("templatelst")->isVisible();
  }

  session::Form1& form1 = lab.session.form1;
};

TEST_F(TemplateTabTest, ANewTemplateIsTypedSavedAndChosenAgain) {
  open_tab();
  start_new("Sales");
  type("propath", "\\\\FS2\\p\\%UserName%");
  type("homedir", "\\\\FS2\\h\\%UserName%");
  choose("Home_Drive_letter", "M:");
  type("logon", "sales.cmd");
  type("Homedirpath", "E:\\h\\%UserName%");
  type("Sharenamehomedir", "%UserName%$");
  click_group("ListView5", "Readers", true);
  click_group("ListView5", "Staff");
  click("add");
  EXPECT_THAT(template_groups(), testing::IsSupersetOf({"Readers", "Staff"}));
  click_group("ListView6", "Staff");
  click("SetPriGroup");
  EXPECT_EQ(find<QLabel>("PrimaryGrp")->text(), "Staff");
  click("savetemplate");
  EXPECT_EQ(status(), "Template Saved...");
  EXPECT_TRUE(is_browsing());
  EXPECT_GE(find<QComboBox>("nutemplate")->findText("Sales"), 0);
  choose("templatelst", "Staff");
  EXPECT_EQ(find<QLineEdit>("logon")->text(), "staff.cmd");
  choose("templatelst", "Sales");
  EXPECT_EQ(find<QLineEdit>("propath")->text(), "\\\\FS2\\p\\%UserName%");
  EXPECT_EQ(find<QComboBox>("Home_Drive_letter")->currentText(), "M:");
  EXPECT_EQ(find<QLineEdit>("Sharenamehomedir")->text(), "%UserName%$");
  EXPECT_EQ(find<QLabel>("PrimaryGrp")->text(), "Staff");
  EXPECT_THAT(template_groups(), testing::IsSupersetOf({"Readers", "Staff"}));
}

TEST_F(TemplateTabTest, ATakenOrBlankNameIsRefusedAndCanBeCorrected) {
  open_tab();
  start_new("staff");
  expect_box("Template Name staff Already Exist");
  click("savetemplate");
  type("New_Template_Name", "  ");
  expect_box("Template Name cannot be blank.");
  click("savetemplate");
  EXPECT_TRUE(find<QPushButton>("savetemplate")->isEnabled());
  type("New_Template_Name", "Staff 2");
  click("savetemplate");
  EXPECT_EQ(status(), "Template Saved...");
  EXPECT_EQ(find<QComboBox>("templatelst")->count(), 2);
}

TEST_F(TemplateTabTest, AnEditIsSavedOrCancelledWithEsc) {
  open_tab();
  choose("templatelst", "Staff");
  EXPECT_TRUE(find<QLineEdit>("logon")->isReadOnly());
  click("EditTemplate");
  EXPECT_EQ(status(), "Edit Template...");
  type("logon", "other.cmd");
  QTest::keyClick(find<QLineEdit>("logon"), Qt::Key_Escape);
  EXPECT_TRUE(is_browsing());
  EXPECT_EQ(find<QLineEdit>("logon")->text(), "");
  EXPECT_EQ(find<QComboBox>("templatelst")->currentText(), "");
  choose("templatelst", "Staff");
  EXPECT_EQ(find<QLineEdit>("logon")->text(), "staff.cmd");
  click("EditTemplate");
  type("logon", "other.cmd");
  click_group("ListView6", "Staff", true);
  click("savetemplate");
  EXPECT_EQ(status(), "Template Saved...");
  start_new("x");
  QTest::keyClick(find<QLineEdit>("New_Template_Name"), Qt::Key_Escape);
  EXPECT_TRUE(is_browsing());
  choose("templatelst", "Staff");
  EXPECT_EQ(find<QLineEdit>("logon")->text(), "other.cmd");
  EXPECT_TRUE(template_groups().empty());
}

TEST_F(TemplateTabTest, DeletingAsksFirst) {
  open_tab();
  form1.Confirm_Deletes.value = 1;
  choose("templatelst", "Staff");
  expect_box("Sure to Delete Template", QMessageBox::No);
  click("DeleteTemplate");
  EXPECT_EQ(find<QComboBox>("templatelst")->count(), 1);
  expect_box("Sure to Delete Template", QMessageBox::Yes);
  click("DeleteTemplate");
  EXPECT_EQ(status(), "Template Deleted.");
  EXPECT_EQ(find<QComboBox>("templatelst")->count(), 0);
  EXPECT_EQ(find<QComboBox>("nutemplate")->count(), 0);
  EXPECT_FALSE(find<QPushButton>("EditTemplate")->isEnabled());
}

TEST_F(TemplateTabTest, PasteFillsANewTemplateFromTheOneLoadedLast) {
  open_tab();
  choose("templatelst", "Staff");
  start_new("Copy");
  EXPECT_EQ(find<QLineEdit>("logon")->text(), "");
  click("paste");
  EXPECT_EQ(find<QLineEdit>("logon")->text(), "staff.cmd");
  EXPECT_THAT(template_groups(), testing::ElementsAre("Staff"));
  click("savetemplate");
  EXPECT_EQ(status(), "Template Saved...");
  choose("templatelst", "Staff");
  choose("templatelst", "Copy");
  EXPECT_EQ(find<QLineEdit>("logon")->text(), "staff.cmd");
}

}  // namespace
}  // namespace twk::test
