#include <QAccessible>

#include "controls/tree_view.hpp"
#include "directory/tree/tree.hpp"
#include "screens/program/windows.hpp"
#include "screens/screen_test.hpp"
#include "windows/account/details_tab.hpp"
#include "windows/state/editor_windows.hpp"
#include "windows/state/form1.hpp"
#include "windows/state/group_windows.hpp"
#include "windows/state/run_preview.hpp"

namespace twk::test {
namespace {

/// Of the caption's underlined letter; null for none.
QChar letter_of(const QString& caption) {
  const QKeySequence keys = QKeySequence::mnemonic(caption);
  return keys.isEmpty() ? QChar() : keys.toString().back();
}

/// Walks every page of every window as it is shown.
class ControlsWalk : public ScreenTest {
 protected:
  void walk_pages(QWidget& shown, const std::function<void(QWidget&, const std::string&)>& look) {
    for (const auto& [first, second] : pages_of(shown)) {
      if (first != nullptr)
        first->setCurrentIndex(second);
      if (auto* const inner =
              first == nullptr ? nullptr : qobject_cast<QTabWidget*>(first->currentWidget())) {
        for (int i = 0; i < inner->count(); ++i) {
          inner->setCurrentIndex(i);
          look(shown,
               (shown.objectName() + " " + first->tabText(second) + " " + inner->tabText(i)).toStdString());
        }
      } else {
        look(shown, (shown.objectName() + " " + (first ? first->tabText(second) : QString())).toStdString());
      }
    }
  }
  void walk_windows(const std::function<void(QWidget&, const std::string&)>& look) {
    lab.make_user("ann", "ann");
    open();
    controls::TreeNode* const unit = lab.session.form1.TreeView1.find(kNewStarters);
    directory::TreeView1_Expand(lab.session, *unit);
    ASSERT_TRUE(windows::show_user_details(lab.session, *unit->children.front()));
    walk_pages(*window, look);
    // What these show comes from whoever opens them.
    lab.session.edit_properties.Property.caption = std::string("Attribute");
    lab.session.edit_properties.Label2.caption = std::string("Value");
    lab.session.run_preview.Start.caption = std::string("&Delete");
    lab.session.run_preview.Rehearse.caption = std::string("&Look at the other 2 accounts");
    for (const char* const name :
         {"frmADOptions",   "CSV_Import",    "Choose_OU",  "Custom",     "frmCopy_Group", "Edit_Properties",
          "frmFindW2KUser", "GroupAdd",      "ImportGrps", "LogWindow",  "Logon_Hours",   "MultiUser",
          "Permissions",    "RenameUser",    "Rename_NT",  "RunPreview", "Select_OU",     "Serach_Mail",
          "frmSharePoints", "Varibles_Form", "WKS_PROFILE"}) {
      const auto shown = screens::make_window(name, lab.session, window.get());
      ASSERT_NE(shown, nullptr) << name;
      shown->show();
      walk_pages(*shown, look);
    }
    lab.session.groups.visible = true;
    walk_pages(*find<QDialog>("Groupsfrm"), look);
  }

 private:
  static std::vector<std::pair<QTabWidget*, int>> pages_of(QWidget& shown) {
    std::vector<std::pair<QTabWidget*, int>> pages;
    auto* const tabs = shown.findChild<QTabWidget*>("SSTab1");
    for (int i = 0; tabs != nullptr && i < tabs->count(); ++i)
      pages.emplace_back(tabs, i);
    if (pages.empty())
      pages.emplace_back(nullptr, 0);
    return pages;
  }
};

TEST_F(ControlsWalk, NoTwoCaptionsOnOnePageShareALetter) {
  walk_windows([](QWidget& shown, const std::string& page) {
    std::map<QChar, QString> used;
    const auto take = [&](const QString& caption) {
      if (const QChar letter = letter_of(caption); !letter.isNull()) {
        EXPECT_TRUE(used.emplace(letter, caption).second)
            << page << ": " << used[letter].toStdString() << " and " << caption.toStdString();
      }
    };
    if (const auto* const main = qobject_cast<QMainWindow*>(&shown)) {
      for (const QAction* const menu : main->menuBar()->actions())
        take(menu->text());
    }
    for (const auto* const bar : shown.findChildren<QTabBar*>()) {
      for (int i = 0; bar->isVisible() && i < bar->count(); ++i)
        take(bar->tabText(i));
    }
    for (const auto* const button : shown.findChildren<QAbstractButton*>())
      if (button->isVisible() && button->window() == &shown)
        take(button->text());
    for (const auto* const group : shown.findChildren<QGroupBox*>())
      if (group->isVisible() && group->window() == &shown)
        take(group->title());
    for (const auto* const label : shown.findChildren<QLabel*>())
      if (label->isVisible() && label->buddy() != nullptr && label->window() == &shown)
        take(label->text());
  });
}

TEST_F(ControlsWalk, BlackPlaceholdersOfADarkDesktopBecomeReadableAndItsColoursStay) {
  const QPalette before = QApplication::palette();
  QPalette dark = before;
  dark.setColor(QPalette::Base, QColor(35, 38, 41));
  dark.setColor(QPalette::Text, Qt::white);
  dark.setColor(QPalette::PlaceholderText, QColor(0, 0, 0, 128));
  QApplication::setPalette(dark);
  QApplication::processEvents();
  EXPECT_EQ(QApplication::palette().color(QPalette::Base), QColor(35, 38, 41));
  EXPECT_GT(QApplication::palette().color(QPalette::PlaceholderText).lightness(), 200);
  QApplication::setPalette(before);
}

TEST_F(ControlsWalk, EveryControlThatTakesTheFocusHasANameAndIsWhatItLooksLike) {
  walk_windows([](QWidget& shown, const std::string& page) {
    for (QWidget* const widget : shown.findChildren<QWidget*>()) {
      if (!widget->isVisible() || widget->window() != &shown || !(widget->focusPolicy() & Qt::TabFocus) ||
          widget->focusProxy() != nullptr || qobject_cast<QScrollArea*>(widget) != nullptr ||
          qobject_cast<QComboBox*>(widget->parentWidget()) != nullptr)
        continue;
      QAccessibleInterface* const accessible = QAccessible::queryAccessibleInterface(widget);
      ASSERT_NE(accessible, nullptr);
      EXPECT_FALSE(accessible->text(QAccessible::Name).isEmpty() && qobject_cast<QTabBar*>(widget) == nullptr)
          << page << ": " << widget->metaObject()->className() << " " << widget->objectName().toStdString();
      if (qobject_cast<QRadioButton*>(widget) != nullptr) {
        EXPECT_EQ(accessible->role(), QAccessible::RadioButton)
            << page << ": " << widget->objectName().toStdString();
      }
    }
  });
}

}  // namespace
}  // namespace twk::test
