#include "directory/account_marks.hpp"
#include "platform/adsi.hpp"
#include "screens/screen_test.hpp"
#include "support/details_world.hpp"
#include "windows/state/run_preview.hpp"

namespace twk::test {
namespace {

constexpr std::string_view kSalesUnit = "OU=Sales,DC=twk,DC=test";

class TreePopup : public ScreenTest {
 protected:
  TreePopup() {
    add_unit(lab, "Sales");
    for (const std::string name : {"ann", "ben"})
      add_user(lab, name, name);
  }

  [[nodiscard]] controls::TreeNode* node(std::string_view key) const {
    return lab.session.form1.TreeView1.find(key);
  }
  QModelIndex index(std::string_view key) { return window->tree().index_of(*node(key)); }
  void select(const std::vector<std::string>& keys) {
    window->tree().setFocus();
    for (std::size_t i = 0; i < keys.size(); ++i) {
      window->tree().scrollTo(index(keys[i]));
      QTest::mouseClick(window->tree().viewport(), Qt::LeftButton,
                        i == 0 ? Qt::NoModifier : Qt::ControlModifier,
                        window->tree().visualRect(index(keys[i])).center());
    }
  }
  /// Opens the menu of a node and triggers one of its entries.
  void choose_entry(std::string_view key, const char* name, const QString& caption) {
    const QPoint at = window->tree().visualRect(index(key)).center();
    QContextMenuEvent event(QContextMenuEvent::Mouse, at, window->tree().viewport()->mapToGlobal(at));
    QApplication::sendEvent(window->tree().viewport(), &event);
    auto* const entry = find<QAction>(name);
    EXPECT_TRUE(entry->isVisible()) << name;
    EXPECT_EQ(entry->text().remove('&'), caption);
    find<QMenu>("mnupopup")->close();
    entry->trigger();
    settle();
  }
  void expect_name(const QString& name) {
    expect_window([name](QWidget& shown) {
      auto* const field = shown.findChild<QLineEdit*>();
      QTest::keyClicks(field, name);
      QTest::keyClick(field, Qt::Key_Return);
    });
  }
  bool is_disabled(const char* name) { return platform::User(lab.account(name)).AccountDisabled(); }
};

TEST_F(TreePopup, AUnitIsRenamedMovedAndDeletedWithWhatIsInIt) {
  open();
  select({std::string(kNewStarters)});
  expect_name("  Year 8, \"north\" ");
  choose_entry(kNewStarters, "Rename_OU", "Rename OU…");
  const std::string renamed = "OU=Year 8\\, \\\"north\\\",DC=twk,DC=test";
  ASSERT_NE(node(renamed), nullptr) << status();
  EXPECT_EQ(node(renamed)->text, "Year 8, \"north\"");
  EXPECT_EQ(node(kNewStarters), nullptr);
  ASSERT_NE(node(lab.path_of("ann")), nullptr);

  expect_unit("Sales");
  choose_entry(renamed, "Move_OU", "Move OU to…");
  const std::string moved = "OU=Year 8\\, \\\"north\\\"," + std::string(kSalesUnit);
  EXPECT_EQ(status(), renamed + " is now " + moved + ".");
  window->tree().expand(index(kSalesUnit));
  settle();
  ASSERT_NE(node(moved), nullptr);

  expect_box("Delete " + screens::to_qt(moved) + " with 2 users below it?", QMessageBox::No);
  choose_entry(moved, "Delete_OU", "Delete OU…");
  EXPECT_NE(node(moved), nullptr);
  EXPECT_FALSE(lab.path_of("ann").empty());
  expect_box("Homes, profiles and mailboxes of the users stay", QMessageBox::Yes);
  choose_entry(moved, "Delete_OU", "Delete OU…");
  EXPECT_EQ(node(moved), nullptr);
  EXPECT_EQ(status(), "Deleted " + moved + " and 2 users.");
}

TEST_F(TreePopup, SeveralUsersActTogetherAndEachRunIsTakenBack) {
  lab.session.run_preview.asks = true;
  open();
  const std::string ann = lab.path_of("ann");
  const std::string ben = lab.path_of("ben");
  window->tree().expand(index(kNewStarters));
  settle();
  select({ann, ben});
  expect_window([this](QWidget& shown) {
    EXPECT_EQ(pane("preview_accounts", &shown).model()->rowCount(), 2);
    QTest::keyClick(&shown, Qt::Key_Escape);
  });
  choose_entry(ann, "Disable", "Disable 2 Users");
  EXPECT_FALSE(is_disabled("ann"));
  EXPECT_EQ(status(), "Nothing was done.");

  expect_window([this](QWidget& shown) { click("preview_start", &shown); });
  choose_entry(ben, "Disable", "Disable 2 Users");
  EXPECT_TRUE(is_disabled("ann") && is_disabled("ben"));
  EXPECT_EQ(status(), "Disabled: 2 of 2 users.");
  EXPECT_EQ(node(ann)->marks, directory::mark::kDisabled);
  EXPECT_TRUE(index(ben).data(Qt::ToolTipRole).toString().contains("(disabled)"));
  EXPECT_TRUE(index(ben).data(Qt::FontRole).value<QFont>().strikeOut());

  expect_unit("Sales");
  expect_window([this](QWidget& shown) { click("preview_start", &shown); });
  choose_entry(ann, "Move_To", "Move 2 Users to…");
  EXPECT_EQ(lab.path_of("ann"), "LDAP://twk.test/CN=ann," + std::string(kSalesUnit));
  EXPECT_EQ(node(ann), nullptr);
  window->tree().expand(index(kSalesUnit));
  settle();
  ASSERT_NE(node(lab.path_of("ben")), nullptr);
  EXPECT_EQ(node(lab.path_of("ben"))->marks, directory::mark::kDisabled);

  window->tabs().setCurrentIndex(windows::tab::kLog);
  const auto take_back = [&](const QString& row) {
    click_row("ListView1", row);
    expect_box("Take back 2 changes of this run?", QMessageBox::Yes);
    click("Undo_Run");
    EXPECT_EQ(status(), "2 changes of 2 taken back.");
    settle();
    EXPECT_FALSE(find<QPushButton>("Undo_Run")->isEnabled());
  };
  take_back("Moved to Sales: 2 of 2 users");
  EXPECT_EQ(lab.path_of("ann"), ann);
  EXPECT_NE(node(ann), nullptr);
  take_back("Disabled: 2 of 2 users");
  EXPECT_FALSE(is_disabled("ann") || is_disabled("ben"));
  EXPECT_EQ(node(ann)->marks, 0);
}

}  // namespace
}  // namespace twk::test
