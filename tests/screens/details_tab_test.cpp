#include "directory/user_details.hpp"
#include "screens/screen_test.hpp"
#include "screens/widgets/list_pane.hpp"
#include "session/form1.hpp"
#include "support/details_world.hpp"

namespace twk::test {
namespace {

class DetailsTabTest : public ScreenTest, public testing::WithParamInterface<lab::DomainKind> {
 protected:
  DetailsTabTest() : ScreenTest(GetParam()) { add_jo(lab); }

  void show_jo() {
    open();
    ASSERT_TRUE(directory::show_user_details(lab.session, node_of_jo(lab))) << status();
    settle();
  }
  void bring_groups() { find<QTabWidget>("details_pages")->setCurrentIndex(1); }

  /// The place of a group's text in the middle of the list's view.
  QPoint place_of(screens::ListPane& pane, const QString& name) {
    const QModelIndexList found =
        pane.model()->match(pane.model()->index(0, 0), Qt::DisplayRole, name, 1, Qt::MatchExactly);
    if (found.isEmpty())
      throw std::logic_error("no group " + name.toStdString());
    pane.scrollTo(found.first());
    return pane.visualRect(found.first()).center();
  }
  void click_group(const char* list, const QString& name) {
    auto* const pane = find<screens::ListPane>(list);
    const QPoint place = place_of(*pane, name);
    QTest::mouseClick(pane->viewport(), Qt::LeftButton, {}, place);
  }
  void double_click_group(const char* list, const QString& name) {
    auto* const pane = find<screens::ListPane>(list);
    const QPoint place = place_of(*pane, name);
    QTest::mouseClick(pane->viewport(), Qt::LeftButton, {}, place);
    QTest::mouseDClick(pane->viewport(), Qt::LeftButton, {}, place);
  }
};
INSTANTIATE_TEST_SUITE_P(Kinds, DetailsTabTest,
                         testing::Values(lab::DomainKind::kNative, lab::DomainKind::kNt), kind_name);

TEST_P(DetailsTabTest, SaysWhatToDoWhileNoUserIsShown) {
  open();
  window->tabs().setCurrentIndex(session::tab::kDetails);
  EXPECT_TRUE(find<QLabel>("no_user")->isVisible());
  EXPECT_FALSE(find<QPushButton>("Userman_Save")->isVisible());
  ASSERT_TRUE(directory::show_user_details(lab.session, node_of_jo(lab)));
  EXPECT_FALSE(find<QLabel>("no_user")->isVisible());
  EXPECT_TRUE(find<QPushButton>("Userman_Save")->isVisible());
  directory::node_chosen(lab.session, *lab.session.form1.TreeView1.first());
  EXPECT_TRUE(find<QLabel>("no_user")->isVisible());
}

TEST_P(DetailsTabTest, SavesWhatIsTypedAndTicked) {
  show_jo();
  EXPECT_EQ(window->tabs().currentIndex(), session::tab::kDetails);
  EXPECT_EQ(find<QLineEdit>("UM_Description")->text(), "Clerk");
  type("UM_Description", "Manager");
  type("AccExpires", "31/12/2026");
  choose("UM_Drive_Letter", "H:");
  QTest::keyClick(find<QCheckBox>("chkPwdNever"), Qt::Key_Space);
  click("Userman_Save");
  EXPECT_EQ(status(), "Saved...");
  EXPECT_EQ(lab.property("jo", "Description"), "Manager");
  EXPECT_EQ(lab.property("jo", "HomeDirDrive"), "H:");
  ASSERT_TRUE(directory::show_user_details(lab.session, node_of_jo(lab)));
  EXPECT_TRUE(find<QCheckBox>("chkPwdNever")->isChecked());
  EXPECT_FALSE(find<QCheckBox>("chkAcctLockedOut")->isEnabled());
  EXPECT_EQ(find<QLineEdit>("AccExpires")->text(), "31/12/2026");
}

TEST_P(DetailsTabTest, RefusesAnInvalidTypedDrive) {
  show_jo();
  auto* const box = find<QComboBox>("UM_Drive_Letter");
  box->setFocus();
  box->lineEdit()->selectAll();
  QTest::keyClicks(box->lineEdit(), "h:");
  type("UM_Description", "Manager");
  QTest::keyClick(find<QLineEdit>("UM_Description"), Qt::Key_S, Qt::ControlModifier);
  EXPECT_EQ(status(), "Home Drive Format Incorrect");
  EXPECT_EQ(lab.property("jo", "Description"), "Clerk");
}

TEST_P(DetailsTabTest, ShowsTheFieldsThatTheAccountHas) {
  show_jo();
  const bool active_directory = !lab.is_nt();
  for (const char* const name : {"UM_First", "UM_Last", "UM_Initails", "UM_Office", "UM_MailAddress",
                                 "UM_Logon_Name", "UM_W2KDomain_Name", "UM_PreW2K"})
    EXPECT_EQ(find<QWidget>(name)->isVisible(), active_directory) << name;
  EXPECT_TRUE(find<QWidget>("AccExpires")->isVisible());
  EXPECT_FALSE(find<QWidget>("Custom_Value0")->isVisible());
}

TEST_P(DetailsTabTest, AddsTheAccountToGroupsAndRemovesIt) {
  show_jo();
  bring_groups();
  EXPECT_FALSE(find<QPushButton>("UM_ADD_GROUP")->isEnabled());
  click_group("ListView3", "Readers");
  EXPECT_TRUE(find<QPushButton>("UM_ADD_GROUP")->isEnabled());
  click("UM_ADD_GROUP");
  EXPECT_EQ(lab.groups_of("jo").size(), lab.is_nt() ? 3U : 2U);
  click_group("ListView4", "Readers");
  EXPECT_FALSE(find<QPushButton>("UM_ADD_GROUP")->isEnabled());
  click("UM_REMOVE_GROUP");
  double_click_group("ListView4", "Staff");
  EXPECT_EQ(lab.groups_of("jo").size(), lab.is_nt() ? 1U : 0U) << status();
  double_click_group("ListView3", "Staff");
  EXPECT_EQ(lab.groups_of("jo").size(), lab.is_nt() ? 2U : 1U) << status();
}

TEST_P(DetailsTabTest, FitsNextToTheTreeWithoutCuttingAnything) {
  lab.set("Custom", "Custom1", "Licences");
  lab.set("Custom", "Property1", "carLicense");
  show_jo();
  if (const char* const pictures = std::getenv("TWK_PICTURES")) {
    window->resize(1024, 768);
    settle();
    window->grab().save(QString(pictures) + (lab.is_nt() ? "/nt" : "/ad") + "_account.png");
    bring_groups();
    settle();
    window->grab().save(QString(pictures) + (lab.is_nt() ? "/nt" : "/ad") + "_groups.png");
  }
  const QSize hint = window->tabs().widget(session::tab::kDetails)->minimumSizeHint();
  EXPECT_LE(hint.width(), 740);
  EXPECT_LE(hint.height(), 560);
}

}  // namespace
}  // namespace twk::test
