#include "screens/screen_test.hpp"
#include "support/details_world.hpp"
#include "windows/state/group_windows.hpp"

namespace twk::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class GroupsWindows : public ScreenTest {
 protected:
  explicit GroupsWindows(lab::DomainKind kind = lab::DomainKind::kNative) : ScreenTest(kind) { add_jo(lab); }

  void open_groups() {
    open();
    find<QAction>("Groups")->trigger();
    groups = find<QDialog>("Groupsfrm");
    ASSERT_TRUE(QTest::qWaitForWindowExposed(groups));
  }
  void open_staff() {
    for (const std::string name : {"ann", "bob"})
      add_user(lab, name, name);
    open_groups();
    double_click_row("ListView1", "Staff", groups);
  }

  QDialog* groups = nullptr;
};

TEST_F(GroupsWindows, TheMainWindowWaitsForThem) {
  open_groups();
  EXPECT_FALSE(window->centralWidget()->isEnabled());
  EXPECT_FALSE(find<QPushButton>("Group_Details", groups)->isEnabled());
  double_click_row("ListView1", "Staff", groups);
  settle();
  EXPECT_EQ(find<QLabel>("panel1", groups)->text(), "Number of Members = 1");
  window->close();
  EXPECT_TRUE(window->isVisible());
  EXPECT_EQ(status(), "Close the groups window first.");
  QTest::keyClick(groups, Qt::Key_Escape);
  EXPECT_FALSE(groups->isVisible());
  EXPECT_TRUE(window->centralWidget()->isEnabled());
  find<QAction>("mnuOption4")->trigger();
  EXPECT_TRUE(groups->isVisible());
  EXPECT_THAT(shown_in("Members", groups), IsEmpty());
  groups->close();
  EXPECT_TRUE(window->centralWidget()->isEnabled());
}

TEST_F(GroupsWindows, MembersComeAndGoByButtonKeyAndDoubleClickAndTheFilterCounts) {
  open_staff();
  click_row("NotMembers", "ann", groups);
  click_row("NotMembers", "bob", groups, Qt::ControlModifier);
  type("NotMembers_filter", "bo", groups);
  EXPECT_FALSE(find<QPushButton>("Command1", groups)->isEnabled());
  click("Command2", groups);
  EXPECT_THAT(shown_in("Members", groups), ElementsAre("bob", "Jo Smith"));
  EXPECT_EQ(QApplication::overrideCursor(), nullptr);
  double_click_row("Members", "bob", groups);
  EXPECT_THAT(shown_in("Members", groups), ElementsAre("Jo Smith"));
  type("NotMembers_filter", "", groups);
  click_row("NotMembers", "ann", groups);
  click("Command2", groups);
  click_row("Members", "ann", groups);
  press("Members", Qt::Key_Delete, groups);
  click_row("ListView1", "Readers", groups);
  press("ListView1", Qt::Key_Return, groups);
  EXPECT_THAT(shown_in("Members", groups), IsEmpty());
  click_row("ListView1", "Staff", groups);
  click("Group_Details", groups);
  EXPECT_THAT(shown_in("Members", groups), ElementsAre("Jo Smith"));
  click_row("Members", "Jo Smith", groups);
  click("Command1", groups);
  EXPECT_THAT(shown_in("Members", groups), IsEmpty());
}

TEST_F(GroupsWindows, TheLogTakesBackOnlyWhatTheWindowChanged) {
  open_staff();
  lab.group("Staff")->Add(lab.path_of("ann"));
  click_row("NotMembers", "ann", groups);
  click_row("NotMembers", "bob", groups, Qt::ControlModifier);
  click("Command2", groups);
  EXPECT_TRUE(lab.group("Staff")->IsMember(lab.path_of("bob")));
  groups->close();
  window->tabs().setCurrentIndex(windows::tab::kLog);
  click_row("ListView1", "Added to Staff: 1 user");
  expect_box("Take back 1 change of this run?", QMessageBox::Yes);
  click("Undo_Run");
  EXPECT_FALSE(lab.group("Staff")->IsMember(lab.path_of("bob"))) << status();
  EXPECT_TRUE(lab.group("Staff")->IsMember(lab.path_of("ann"))) << "somebody else added her";
}

TEST_F(GroupsWindows, TheHeadingOfAColumnSortsAndReversesTheOrder) {
  open_groups();
  const QHeaderView* const head = pane("ListView1", groups).header();
  for (const bool up : {true, false, true}) {
    std::vector<std::string> texts = shown_in("ListView1", groups);
    std::ranges::transform(texts, texts.begin(), base::upper);
    EXPECT_TRUE(up ? std::ranges::is_sorted(texts) : std::is_sorted(texts.rbegin(), texts.rend()));
    EXPECT_EQ(head->sortIndicatorOrder(), up ? Qt::AscendingOrder : Qt::DescendingOrder);
    QTest::mouseClick(head->viewport(), Qt::LeftButton, {}, QPoint(40, head->height() / 2));
  }
}

TEST_F(GroupsWindows, AGroupIsMadeAndDeleted) {
  open_groups();
  expect_window([this](QWidget& dialog) {
    EXPECT_TRUE(find<QRadioButton>("Option1_1", &dialog)->isChecked());
    type("GRP_Name", "Staff", &dialog);
    expect_box("Error Adding Group:");
    click("OKButton", &dialog);
    EXPECT_TRUE(dialog.isVisible());
    type("GRP_Name", "Drivers", &dialog);
    type("GRP_DESCRIPTION", "Who drive", &dialog);
    click("Option1_2", &dialog);
    click("Option2_1", &dialog);
    press("GRP_Name", Qt::Key_Return, &dialog);
  });
  click("Add_Group", groups);
  double_click_row("ListView1", "Drivers", groups);
  EXPECT_EQ(find<QLineEdit>("Decsription_Text", groups)->text(), "Who drive");
  EXPECT_EQ(lab.session.groups.ListView1.find_text("Drivers").front()->sub_items.front(),
            "Distribution Group - Universal Group");
  expect_box("Sure to Delete Global Group Drivers", QMessageBox::Cancel);
  click("Delete_Group", groups);
  expect_box("Sure to Delete Global Group Drivers");
  press("ListView1", Qt::Key_Delete, groups);
  EXPECT_TRUE(lab.session.groups.ListView1.find_text("Drivers").empty());
}

TEST_F(GroupsWindows, AGroupIsCopiedByTypedNames) {
  open_groups();
  double_click_row("ListView1", "Readers", groups);
  expect_window([this](QWidget& dialog) {
    EXPECT_EQ(find<QComboBox>("ImageCombo1", &dialog)->currentText(), "Readers");
    EXPECT_TRUE(find<QLineEdit>("Domain_Source", &dialog)->isReadOnly());
    type("ImageCombo1", "staff", &dialog);
    type("ImageCombo2", "nobody", &dialog);
    EXPECT_FALSE(find<QPushButton>("btnCopy_Group", &dialog)->isEnabled());
    choose("ImageCombo2", "Readers", &dialog);
    expect_box("from: Staff\nto:     Readers", QMessageBox::Yes);
    click("btnCopy_Group", &dialog);
    EXPECT_THAT(shown_in("ListView1", &dialog), ElementsAre("CN=Jo Smith Added user."));
    EXPECT_EQ(find<QProgressBar>("ProgressBar1", &dialog)->value(), 100);
    click("btnCancel", &dialog);
    EXPECT_FALSE(dialog.isVisible());
  });
  click("COPY_GRP", groups);
  EXPECT_THAT(shown_in("Members", groups), ElementsAre("Jo Smith")) << "the shown group is read again";
}

TEST_F(GroupsWindows, ACopyIsStoppedByItsButton) {
  open_staff();
  pane("NotMembers", groups).selectAll();
  click("Command2", groups);
  expect_window([this](QWidget& dialog) {
    choose("ImageCombo2", "Readers", &dialog);
    expect_box("copy all users", QMessageBox::Yes);
    lab.directory.before = [this, &dialog](std::string_view operation, std::string_view) {
      if (operation != "Add")
        return;
      EXPECT_EQ(find<QPushButton>("btnCancel", &dialog)->text(), "&Stop");
      click("btnCancel", &dialog);
      EXPECT_TRUE(dialog.isVisible());
    };
    click("btnCopy_Group", &dialog);
    lab.directory.before = {};
    EXPECT_EQ(shown_in("ListView1", &dialog).size(), 1U);
    EXPECT_TRUE(find<QLabel>("Label1", &dialog)->text().startsWith("Stopped. 1 of "));
    click("btnCancel", &dialog);
  });
  click("COPY_GRP", groups);
}

class GroupsWindowsOfAnNtDomain : public GroupsWindows {
 protected:
  GroupsWindowsOfAnNtDomain() : GroupsWindows(lab::DomainKind::kNt) {}
};

TEST_F(GroupsWindowsOfAnNtDomain, AreOpenedByTheToolbarAndAskForAName) {
  open_groups();
  EXPECT_FALSE(find<QAction>("mnuOption4")->isVisible());
  EXPECT_FALSE(find<QPushButton>("btn_showGrpusers", groups)->isVisible());
  expect_window([](QWidget& box) {
    EXPECT_EQ(box.windowTitle(), "Add Group");
    QTest::keyClicks(box.findChild<QLineEdit*>(), "Drivers");
    QTest::keyClick(&box, Qt::Key_Return);
  });
  click("Add_Group", groups);
  EXPECT_FALSE(lab.session.groups.ListView1.find_text("Drivers").empty());
}

}  // namespace
}  // namespace twk::test
