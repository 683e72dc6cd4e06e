#pragma once

#include <string>

#include "screens/main/main_window.hpp"
#include "screens/program/qt_dialogs.hpp"
#include "screens/widgets/list_pane.hpp"
#include "screens/widgets/text.hpp"
#include "support/lab_session.hpp"
#include "support/modal_windows.hpp"
#include "windows/state/form1.hpp"

namespace twk::test {

/// The main window over a small lab (see `LabSession`), with the boxes and windows of the desktop program.
class ScreenTest : public testing::Test, protected ModalWindows {
 protected:
  explicit ScreenTest(lab::DomainKind kind = lab::DomainKind::kNative) : lab(kind, "", &dialogs) {
    dialogs.set_session(lab.session);
  }

  /// Starts the session and shows the main window.
  void open() {
    lab.start();
    window = std::make_unique<screens::MainWindow>(lab.session);
    window->show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(window.get()));
  }

  /// The widget of that name in a window, the main one if none is given. The test fails when there is none.
  template <typename Widget>
  Widget* find(const char* name, QWidget* in = nullptr) {
    auto* const found = (in == nullptr ? window.get() : in)->template findChild<Widget*>(name);
    if (found == nullptr)
      throw std::logic_error(std::string("no widget ") + name);
    return found;
  }

  void click(const char* name, QWidget* in = nullptr) {
    auto* const button = find<QAbstractButton>(name, in);
    // A box or option button takes clicks on its mark and its text only, however wide it is.
    const bool marked = qobject_cast<QPushButton*>(button) == nullptr;
    QTest::mouseClick(button, Qt::LeftButton, {},
                      marked ? QPoint(8, button->height() / 2) : button->rect().center());
  }
  /// Replaces the text of a field or an editable box, key by key.
  void type(const char* name, const QString& text, QWidget* in = nullptr) {
    auto* const box = (in == nullptr ? window.get() : in)->findChild<QComboBox*>(name);
    auto* const field = box == nullptr ? find<QLineEdit>(name, in) : box->lineEdit();
    field->setFocus();
    field->selectAll();
    QTest::keyClick(field, Qt::Key_Delete);
    QTest::keyClicks(field, text);
  }
  /// Opens the list of a box and picks the item that shows that text.
  void choose(const char* name, const QString& item, QWidget* in = nullptr) {
    auto* const box = find<QComboBox>(name, in);
    const int index = box->findText(item);
    ASSERT_GE(index, 0) << name << " does not offer " << item.toStdString();
    box->setFocus();
    QTest::keyClick(box, Qt::Key_Home);
    while (box->currentIndex() < index)
      QTest::keyClick(box, Qt::Key_Down);
  }

  void press(const char* name, Qt::Key key, QWidget* in = nullptr) {
    QTest::keyClick(find<QWidget>(name, in), key);
  }
  screens::ListPane& pane(const char* name, QWidget* in = nullptr) {
    return *find<screens::ListPane>(name, in);
  }
  void click_row(const char* list, const QString& text, QWidget* in = nullptr,
                 Qt::KeyboardModifiers keys = {}) {
    QTest::mouseClick(pane(list, in).viewport(), Qt::LeftButton, keys, place_of(pane(list, in), text));
  }
  void double_click_row(const char* list, const QString& text, QWidget* in = nullptr) {
    click_row(list, text, in);
    QTest::mouseDClick(pane(list, in).viewport(), Qt::LeftButton, {}, place_of(pane(list, in), text));
  }
  /// The texts of a list as shown.
  std::vector<std::string> shown_in(const char* list, QWidget* in = nullptr) {
    std::vector<std::string> texts;
    const QAbstractItemModel* const model = pane(list, in).model();
    for (int row = 0; row < model->rowCount(); ++row)
      texts.push_back(model->index(row, 0).data().toString().toStdString());
    return texts;
  }

  /// The next modal window chooses a file to import; takes that one.
  void expect_file(const std::string& path) {
    expect_window([this, path](QWidget& shown) {
      EXPECT_EQ(shown.windowTitle(), "Open file to import");
      find<QLineEdit>("fileNameEdit", &shown)->setText(screens::to_qt(path));
      QTest::mouseClick(find<QDialogButtonBox>("buttonBox", &shown)->button(QDialogButtonBox::Open),
                        Qt::LeftButton);
    });
  }
  /// Where something is to be moved: the first unit whose name holds the text.
  void expect_unit(const QString& part) {
    expect_window([this, part](QWidget& shown) {
      EXPECT_EQ(shown.objectName(), "Choose_OU");
      QTest::keyClicks(find<QLineEdit>("units_filter", &shown), part);
      QTest::keyClick(&pane("units", &shown), Qt::Key_Down);
      click("Move", &shown);
      EXPECT_FALSE(shown.isVisible());
    });
  }
  [[nodiscard]] std::string status() const { return lab.session.form1.StatusBar1.panel1; }
  /// Lets queued work run.
  static void settle() { QCoreApplication::processEvents(); }

  screens::QtDialogs dialogs;
  LabSession lab;
  std::unique_ptr<screens::MainWindow> window;

 private:
  /// Of the row of that text, which is brought into view.
  static QPoint place_of(screens::ListPane& list, const QString& text) {
    const QAbstractItemModel* const model = list.model();
    const QModelIndexList found =
        model->match(model->index(0, 0), Qt::DisplayRole, text, 1, Qt::MatchExactly);
    if (found.isEmpty())
      throw std::logic_error("no row " + text.toStdString());
    list.scrollTo(found.first());
    return list.visualRect(found.first()).center();
  }
};

}  // namespace twk::test
