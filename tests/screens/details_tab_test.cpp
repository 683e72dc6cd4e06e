#include "windows/account/details_tab.hpp"
#include "platform/adsi.hpp"
#include "screens/screen_test.hpp"
#include "support/details_world.hpp"
#include "windows/chosen_commands.hpp"
#include "windows/state/form1.hpp"
#include "windows/state/tree_commands.hpp"

namespace twk::test {
namespace {

class DetailsTabTest : public ScreenTest, public testing::WithParamInterface<lab::DomainKind> {
 protected:
  DetailsTabTest() : ScreenTest(GetParam()) { add_jo(lab); }

  void show_jo() {
    open();
    ASSERT_TRUE(windows::show_user_details(lab.session, node_of_jo(lab))) << status();
    settle();
  }
};
INSTANTIATE_TEST_SUITE_P(Kinds, DetailsTabTest,
                         testing::Values(lab::DomainKind::kNative, lab::DomainKind::kNt), kind_name);

TEST_P(DetailsTabTest, SaysWhatToDoWhileNoUserIsShown) {
  open();
  window->tabs().setCurrentIndex(windows::tab::kDetails);
  for (const bool user_is_shown : {false, true, false}) {
    if (user_is_shown)
      ASSERT_TRUE(windows::show_user_details(lab.session, node_of_jo(lab)));
    else
      windows::node_chosen(lab.session, *lab.session.form1.TreeView1.first());
    EXPECT_NE(find<QLabel>("no_user")->isVisible(), user_is_shown);
    EXPECT_EQ(find<QPushButton>("Userman_Save")->isVisible(), user_is_shown);
  }
}

TEST_P(DetailsTabTest, SavesWhatIsTypedAndTicked) {
  lab.clock.seconds_ahead = -8 * 3600;
  show_jo();
  EXPECT_EQ(window->tabs().currentIndex(), windows::tab::kDetails);
  EXPECT_EQ(find<QLineEdit>("UM_Description")->text(), "Clerk");
  type("UM_Description", "Manager");
  type("AccExpires", "31/12/2026");
  type("UM_Drive_Letter", "h:");
  QTest::keyClick(find<QLineEdit>("UM_Description"), Qt::Key_S, Qt::ControlModifier);
  EXPECT_EQ(status(), "Home Drive Format Incorrect");
  choose("UM_Drive_Letter", "H:");
  press("chkPwdNever", Qt::Key_Space);
  click("Userman_Save");
  EXPECT_EQ(status(), "Saved...");
  EXPECT_EQ(lab.property("jo", "Description"), "Manager");
  EXPECT_EQ(lab.property("jo", "HomeDirDrive"), "H:");
  EXPECT_EQ(platform::User(lab.account("jo")).AccountExpirationDate(), base::make_date({2026, 12, 31, 8}));
  ASSERT_TRUE(windows::show_user_details(lab.session, node_of_jo(lab)));
  EXPECT_TRUE(find<QCheckBox>("chkPwdNever")->isChecked());
  EXPECT_FALSE(find<QCheckBox>("chkAcctLockedOut")->isEnabled());
  EXPECT_EQ(find<QLineEdit>("AccExpires")->text(), "31/12/2026");
}

TEST_P(DetailsTabTest, EditsAreMarkedAndDoNotDisappearWithoutAQuestion) {
  show_jo();
  auto* const description = find<QLineEdit>("UM_Description");
  type("UM_Description", "Manager");
  EXPECT_TRUE(description->font().bold());
  EXPECT_EQ(find<QLabel>("unsaved")->text(), "1 change is not saved.");
  type("UM_Description", "Clerk");
  EXPECT_FALSE(description->font().bold()) << "it is as it was";
  type("UM_Description", "Manager");
  screens::TreePane& tree = window->tree();
  const auto click_root = [&] {
    tree.setFocus();
    tree.setCurrentIndex(tree.index_of(*lab.session.form1.TreeView1.first()));
  };
  lab.session.form1.TreeView1.select(&node_of_jo(lab));
  expect_box("Save the changes to ", QMessageBox::Cancel);
  click_root();
  EXPECT_EQ(description->text(), "Manager");
  EXPECT_EQ(tree.currentIndex(), tree.index_of(node_of_jo(lab)));
  QTest::keyClick(description, Qt::Key_F5);
  EXPECT_EQ(description->text(), "Manager") << "the key belongs to the tree";
  expect_box("Save the changes to ", QMessageBox::Cancel);
  window->close();
  EXPECT_TRUE(window->isVisible());
  expect_box("Save the changes to ", QMessageBox::Save);
  QTest::keyClick(&tree, Qt::Key_Return);
  EXPECT_EQ(lab.property("jo", "Description"), "Manager");
  EXPECT_EQ(find<QLabel>("unsaved")->text(), "");
  type("UM_Description", "Clerk");
  expect_box("Save the changes to ", QMessageBox::Discard);
  click_root();
  EXPECT_TRUE(find<QLabel>("no_user")->isVisible());
  EXPECT_EQ(lab.property("jo", "Description"), "Manager");
}

TEST_P(DetailsTabTest, ShowsTheFieldsThatTheAccountHas) {
  show_jo();
  for (const char* const name : {"UM_First", "UM_Last", "UM_Initails", "UM_Office", "UM_MailAddress",
                                 "UM_Logon_Name", "UM_W2KDomain_Name", "UM_PreW2K"})
    EXPECT_NE(find<QWidget>(name)->isVisible(), lab.is_nt()) << name;
  EXPECT_TRUE(find<QWidget>("AccExpires")->isVisible());
  EXPECT_FALSE(find<QWidget>("Custom_Value0")->isVisible());
}

TEST_P(DetailsTabTest, AddsTheAccountToGroupsAndRemovesIt) {
  show_jo();
  find<QTabWidget>("details_pages")->setCurrentIndex(1);
  const std::size_t before = lab.groups_of("jo").size();
  EXPECT_FALSE(find<QPushButton>("UM_ADD_GROUP")->isEnabled());
  click_row("ListView3", "Readers");
  click("UM_ADD_GROUP");
  EXPECT_EQ(lab.groups_of("jo").size(), before + 1);
  click_row("ListView4", "Readers");
  EXPECT_FALSE(find<QPushButton>("UM_ADD_GROUP")->isEnabled());
  click("UM_REMOVE_GROUP");
  double_click_row("ListView4", "Staff");
  EXPECT_EQ(lab.groups_of("jo").size(), before - 1) << status();
  double_click_row("ListView3", "Staff");
  EXPECT_EQ(lab.groups_of("jo").size(), before) << status();
}

TEST_P(DetailsTabTest, AChangeOfGroupsIsTakenBackFromItsRowOfTheLog) {
  show_jo();
  const auto groups = lab.groups_of("jo");
  find<QTabWidget>("details_pages")->setCurrentIndex(1);
  click_row("ListView3", "Readers");
  click("UM_ADD_GROUP");
  window->tabs().setCurrentIndex(windows::tab::kLog);
  click_row("ListView1", lab.is_nt() ? "jo added to Readers" : "Jo Smith added to Readers");
  expect_box("Take back 1 change of this run?", QMessageBox::Yes);
  click("Undo_Run");
  EXPECT_EQ(lab.groups_of("jo"), groups) << status();
  EXPECT_THAT(shown_in("ListView4"), testing::Not(testing::Contains("Readers")));
  EXPECT_THAT(shown_in("ListView3"), testing::Contains("Readers"));

  lab.session.tree_commands.chosen = {node_of_jo(lab).key};
  windows::Disable_Click(lab.session);
  EXPECT_TRUE(platform::User(lab.account("jo")).AccountDisabled());
  lab.session.log_rows.select(&lab.session.log_rows.at(lab.session.log_rows.size() - 1));
  expect_box("Take back 1 change of this run?", QMessageBox::Yes);
  click("Undo_Run");
  EXPECT_FALSE(platform::User(lab.account("jo")).AccountDisabled()) << status();
}

TEST_P(DetailsTabTest, FitsNextToTheTreeWithoutCuttingAnything) {
  lab.set("Custom", "Custom1", "Licences");
  lab.set("Custom", "Property1", "carLicense");
  show_jo();
  const QSize hint = window->tabs().widget(windows::tab::kDetails)->minimumSizeHint();
  EXPECT_LE(hint.width(), 740);
  EXPECT_LE(hint.height(), 560);
}

}  // namespace
}  // namespace twk::test
