#include <filesystem>
#include <fstream>
#include <map>
#include <random>
#include <sstream>

#include "screens/screen_test.hpp"
#include "support/details_world.hpp"
#include "windows/state/run_preview.hpp"

namespace twk::test {
namespace {

namespace fs = std::filesystem;

constexpr int kEvents = 1000;

/// A child at the keyboard: keys, clicks and sizes of the main window, from a seed. Every question is
/// answered with Cancel, and what gives an order by itself ("Create User", "Save") is left alone.
class RandomEvents : public ScreenTest, public testing::WithParamInterface<unsigned> {
 protected:
  RandomEvents() : random_(GetParam()) {
    for (const std::string name : {"ann", "ben", "cas"})
      add_user(lab, name, name);
    lab.session.run_preview.asks = true;
    QObject::connect(&cancel_, &QTimer::timeout, &cancel_, [] { cancel(); });
    cancel_.start(1);
  }

  void make_event() {
    const int kind = draw(10);
    if (kind == 0)
      window->resize(300 + draw(1200), 200 + draw(900));
    else if (kind < 5)
      press_key();
    else
      click_somewhere();
    settle();
  }

  /// The directory, the file servers, sites and templates; settings are stored as they are changed.
  std::map<std::string, std::string> data() const {
    std::map<std::string, std::string> files;
    for (const auto& entry : fs::recursive_directory_iterator(lab.folder.path())) {
      const std::string path = fs::relative(entry.path(), lab.folder.path()).string();
      if (path.starts_with("settings") || path.ends_with("Log.txt") || path.ends_with(".BAK"))
        continue;
      std::ostringstream bytes;
      if (entry.is_regular_file())
        bytes << std::ifstream(entry.path(), std::ios::binary).rdbuf();
      files[path] = bytes.str();
    }
    return files;
  }

 private:
  static void cancel() {
    if (QWidget* const popup = QApplication::activePopupWidget())
      popup->close();
    else if (auto* const dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget()))
      dialog->reject();
  }

  int draw(int below) { return static_cast<int>(random_() % static_cast<unsigned>(below)); }

  /// A press of it is a confirmation.
  static bool is_order(const QWidget* widget) {
    const auto* const button = qobject_cast<const QAbstractButton*>(widget);
    if (button == nullptr || qobject_cast<const QPushButton*>(widget) == nullptr)
      return false;
    const QString text = QString(button->text()).remove('&');
    return button->text().isEmpty() || text.startsWith("Create") || text.startsWith("Save") ||
           text.startsWith("New") || text.startsWith("Add") || text.startsWith("Set ");
  }

  void press_key() {
    constexpr std::array kKeys = {Qt::Key_Tab,    Qt::Key_Backtab,  Qt::Key_Up,       Qt::Key_Down,
                                  Qt::Key_Left,   Qt::Key_Right,    Qt::Key_Home,     Qt::Key_End,
                                  Qt::Key_Space,  Qt::Key_Delete,   Qt::Key_F2,       Qt::Key_F5,
                                  Qt::Key_Escape, Qt::Key_A,        Qt::Key_Asterisk, Qt::Key_Menu,
                                  Qt::Key_PageUp, Qt::Key_PageDown, Qt::Key_Percent};
    const Qt::Key key = kKeys.at(static_cast<std::size_t>(draw(static_cast<int>(kKeys.size()))));
    QWidget* const focus = QApplication::focusWidget();
    QWidget* const target = focus == nullptr ? window.get() : focus;
    if (key == Qt::Key_Space && is_order(target))
      return;
    constexpr std::array kModifiers = {Qt::NoModifier, Qt::NoModifier, Qt::ShiftModifier,
                                       Qt::ControlModifier};
    QTest::keyClick(target, key, kModifiers.at(static_cast<std::size_t>(draw(4))));
  }

  void click_somewhere() {
    const QPoint at(draw(window->width()), draw(window->height()));
    QWidget* const child = window->childAt(at);
    if (child == nullptr || !child->isEnabled() || is_order(child))
      return;
    const Qt::MouseButton button = draw(6) == 0 ? Qt::RightButton : Qt::LeftButton;
    const QPoint inside = child->mapFrom(window.get(), at);
    if (draw(5) == 0)
      QTest::mouseDClick(child, button, {}, inside);
    else
      QTest::mouseClick(child, button, draw(4) == 0 ? Qt::ControlModifier : Qt::NoModifier, inside);
  }

  std::mt19937 random_;
  QTimer cancel_;
};

TEST_P(RandomEvents, ChangeNothingThatWasNotConfirmed) {
  open();
  const auto before = data();
  ASSERT_GT(before.size(), 4U);
  for (int i = 0; i < kEvents && window->isVisible(); ++i)
    make_event();
  const auto after = data();
  for (const auto& [path, bytes] : before)
    EXPECT_TRUE(after.contains(path) && after.at(path) == bytes) << path << " changed, seed " << GetParam();
  for (const auto& [path, bytes] : after)
    EXPECT_TRUE(before.contains(path)) << path << " is new, seed " << GetParam();
  EXPECT_TRUE(lab.session.form1.enabled) << "the window can be used";
}

INSTANTIATE_TEST_SUITE_P(Seeds, RandomEvents, testing::Values(1U, 26U, 1971U));

}  // namespace
}  // namespace twk::test
