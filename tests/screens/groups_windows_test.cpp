#include "screens/screen_test.hpp"
#include "screens/widgets/list_pane.hpp"
#include "session/group_windows.hpp"
#include "support/details_world.hpp"

namespace twk::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

class GroupsWindows : public ScreenTest {
 protected:
  explicit GroupsWindows(lab::DomainKind kind = lab::DomainKind::kNative) : ScreenTest(kind) {
    add_jo(lab);
    for (const std::string name : {"ann", "bob"}) {
      const platform::ObjectPtr user =
          lab.services.directory
              .GetObject(lab.is_nt() ? "WinNT://TWK" : "LDAP://twk.test/" + std::string(kNewStarters))
              ->Create("user", lab.is_nt() ? name : "CN=" + name);
      if (!lab.is_nt())
        user->Put("samAccountName", name);
      user->SetInfo();
    }
  }

  void open_groups() {
    open();
    find<QAction>("Groups")->trigger();
    groups = find<QDialog>("Groupsfrm");
    ASSERT_TRUE(QTest::qWaitForWindowExposed(groups));
  }
  screens::ListPane* pane(const char* name, QWidget* in = nullptr) {
    return dynamic_cast<screens::ListPane*>(find<QTreeView>(name, in == nullptr ? groups : in));
  }
  /// Clicks the row of that text.
  void click_row(const char* list, const QString& text, Qt::KeyboardModifiers keys = {}) {
    QTest::mouseClick(pane(list)->viewport(), Qt::LeftButton, keys, place(list, text));
  }
  void double_click_row(const char* list, const QString& text) {
    click_row(list, text);
    QTest::mouseDClick(pane(list)->viewport(), Qt::LeftButton, {}, place(list, text));
  }
  QPoint place(const char* list, const QString& text) {
    for (int row = 0; row < pane(list)->model()->rowCount(); ++row) {
      const QModelIndex index = pane(list)->model()->index(row, 0);
      if (index.data().toString() != text)
        continue;
      pane(list)->scrollTo(index);
      return pane(list)->visualRect(index).center();
    }
    throw std::logic_error("no row " + text.toStdString());
  }
  /// The texts of a list as shown.
  std::vector<std::string> shown(const char* list, QWidget* in = nullptr) {
    std::vector<std::string> texts;
    const QAbstractItemModel* const model = pane(list, in)->model();
    for (int row = 0; row < model->rowCount(); ++row)
      texts.push_back(model->index(row, 0).data().toString().toStdString());
    return texts;
  }
  std::string panel() { return find<QLabel>("panel1", groups)->text().toStdString(); }
  std::vector<std::string> members(const std::string& name) {
    std::vector<std::string> names;
    for (const platform::ObjectPtr& member :
         lab.services.directory.GetObject("LDAP://CN=" + name + ",DC=twk,DC=test")->Members())
      names.push_back(member->Name());
    return names;
  }

  QDialog* groups = nullptr;
};

TEST_F(GroupsWindows, AGroupIsShownByADoubleClickAndTheMainWindowWaits) {
  open_groups();
  EXPECT_FALSE(window->centralWidget()->isEnabled());
  EXPECT_FALSE(find<QPushButton>("Group_Details", groups)->isEnabled());
  double_click_row("ListView1", "Staff");
  EXPECT_THAT(shown("Members"), ElementsAre("Jo Smith"));
  EXPECT_EQ(panel(), "Number of Members = 1");
  window->close();
  EXPECT_TRUE(window->isVisible());
  EXPECT_EQ(status(), "Close the groups window first.");
  QTest::keyClick(groups, Qt::Key_Escape);
  EXPECT_FALSE(groups->isVisible());
  EXPECT_TRUE(window->centralWidget()->isEnabled());
  find<QAction>("mnuOption4")->trigger();
  EXPECT_TRUE(groups->isVisible());
  EXPECT_THAT(shown("Members"), IsEmpty());
  groups->close();
  EXPECT_TRUE(window->centralWidget()->isEnabled());
}

TEST_F(GroupsWindows, SeveralUsersAreAddedAndOneIsRemoved) {
  open_groups();
  click_row("ListView1", "Staff");
  QTest::keyClick(pane("ListView1"), Qt::Key_Return);
  click_row("NotMembers", "ann");
  click_row("NotMembers", "bob", Qt::ControlModifier);
  EXPECT_FALSE(find<QPushButton>("Command1", groups)->isEnabled());
  click("Command2", groups);
  EXPECT_THAT(shown("Members"), ElementsAre("ann", "bob", "Jo Smith"));
  EXPECT_EQ(members("Staff").size(), 3U);
  EXPECT_EQ(QApplication::overrideCursor(), nullptr);
  double_click_row("Members", "bob");
  EXPECT_THAT(members("Staff"), UnorderedElementsAre("CN=Jo Smith", "CN=ann"));
  click_row("Members", "ann");
  QTest::keyClick(pane("Members"), Qt::Key_Delete);
  EXPECT_THAT(shown("Members"), ElementsAre("Jo Smith"));
}

TEST_F(GroupsWindows, WhatAFilterHidesIsNotSelected) {
  open_groups();
  double_click_row("ListView1", "Staff");
  click_row("NotMembers", "ann");
  click_row("NotMembers", "bob", Qt::ControlModifier);
  type("NotMembers_filter", "bo", groups);
  EXPECT_THAT(shown("NotMembers"), ElementsAre("bob"));
  click("Command2", groups);
  EXPECT_THAT(members("Staff"), UnorderedElementsAre("CN=Jo Smith", "CN=bob"));
}

TEST_F(GroupsWindows, TheHeadingOfAColumnSortsAndReversesTheOrder) {
  open_groups();
  const auto sorted = [this](bool up) {
    std::vector<std::string> texts = shown("ListView1");
    for (std::string& text : texts)
      text = base::upper(text);
    return up ? std::is_sorted(texts.begin(), texts.end()) : std::is_sorted(texts.rbegin(), texts.rend());
  };
  const auto press_head = [this] {
    QHeaderView* const head = pane("ListView1")->header();
    QTest::mouseClick(head->viewport(), Qt::LeftButton, {}, QPoint(40, head->height() / 2));
  };
  EXPECT_TRUE(sorted(true));
  press_head();
  EXPECT_TRUE(sorted(false));
  EXPECT_EQ(pane("ListView1")->header()->sortIndicatorOrder(), Qt::DescendingOrder);
  press_head();
  EXPECT_TRUE(sorted(true));
}

TEST_F(GroupsWindows, AGroupIsMadeAndDeleted) {
  open_groups();
  expect_window([this](QWidget& dialog) {
    EXPECT_TRUE(find<QRadioButton>("Option1_1", &dialog)->isChecked());
    type("GRP_Name", "Drivers", &dialog);
    type("GRP_DESCRIPTION", "Who drive", &dialog);
    click("Option1_2", &dialog);
    click("Option2_1", &dialog);
    EXPECT_FALSE(find<QRadioButton>("Option1_1", &dialog)->isChecked());
    QTest::keyClick(find<QLineEdit>("GRP_Name", &dialog), Qt::Key_Return);
  });
  click("Add_Group", groups);
  double_click_row("ListView1", "Drivers");
  EXPECT_EQ(find<QLineEdit>("Decsription_Text", groups)->text(), "Who drive");
  EXPECT_EQ(lab.session.groups.ListView1.find_text("Drivers").front()->sub_items.front(),
            "Distribution Group - Universal Group");
  expect_box("Sure to Delete Global Group Drivers", QMessageBox::Cancel);
  click("Delete_Group", groups);
  expect_box("Sure to Delete Global Group Drivers");
  QTest::keyClick(pane("ListView1"), Qt::Key_Delete);
  EXPECT_TRUE(lab.session.groups.ListView1.find_text("Drivers").empty());
}

TEST_F(GroupsWindows, ARefusedGroupLeavesTheDialogOpen) {
  open_groups();
  expect_window([this](QWidget& dialog) {
    type("GRP_Name", "Staff", &dialog);
    expect_box("Error Adding Group:");
    click("OKButton", &dialog);
    EXPECT_TRUE(dialog.isVisible());
    QTest::keyClick(&dialog, Qt::Key_Escape);
  });
  click("Add_Group", groups);
}

TEST_F(GroupsWindows, AGroupIsCopiedByTypedNames) {
  open_groups();
  double_click_row("ListView1", "Readers");
  expect_window([this](QWidget& dialog) {
    EXPECT_EQ(find<QComboBox>("ImageCombo1", &dialog)->currentText(), "Readers");
    EXPECT_FALSE(find<QPushButton>("btnCopy_Group", &dialog)->isEnabled());
    EXPECT_TRUE(find<QLineEdit>("Domain_Source", &dialog)->isReadOnly());
    type("ImageCombo1", "staff", &dialog);
    type("ImageCombo2", "nobody", &dialog);
    EXPECT_FALSE(find<QPushButton>("btnCopy_Group", &dialog)->isEnabled());
    choose("ImageCombo2", "Readers", &dialog);
    expect_box("from: Staff\nto:     Readers", QMessageBox::Yes);
    click("btnCopy_Group", &dialog);
    EXPECT_THAT(shown("ListView1", &dialog), ElementsAre("CN=Jo Smith Added user."));
    EXPECT_EQ(find<QProgressBar>("ProgressBar1", &dialog)->value(), 100);
    click("btnCancel", &dialog);
    EXPECT_FALSE(dialog.isVisible());
  });
  click("COPY_GRP", groups);
  EXPECT_THAT(shown("Members"), ElementsAre("Jo Smith")) << "the shown group is read anew";
}

TEST_F(GroupsWindows, ACopyIsStoppedByItsButton) {
  for (const char* const name : {"ann", "bob"})
    lab.services.directory.GetObject("LDAP://CN=Staff,DC=twk,DC=test")->Add(lab.path_of(name));
  open_groups();
  double_click_row("ListView1", "Staff");
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
    EXPECT_EQ(shown("ListView1", &dialog).size(), 1U);
    EXPECT_TRUE(find<QLabel>("Label1", &dialog)->text().startsWith("Stopped. 1 of 3 users"));
    click("btnCancel", &dialog);
  });
  click("COPY_GRP", groups);
  EXPECT_EQ(members("Readers").size(), 1U);
}

class GroupsWindowsOfAnNtDomain : public GroupsWindows {
 protected:
  GroupsWindowsOfAnNtDomain() : GroupsWindows(lab::DomainKind::kNt) {}
};

TEST_F(GroupsWindowsOfAnNtDomain, AreOpenedByTheToolbarAndAskForAName) {
  open_groups();
  EXPECT_FALSE(find<QAction>("mnuOption4")->isVisible());
  EXPECT_FALSE(find<QPushButton>("btn_showGrpusers", groups)->isVisible());
  double_click_row("ListView1", "Staff");
  EXPECT_THAT(shown("Members"), ElementsAre("jo"));
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
