#pragma once

#include <gtest/gtest.h>

#include <QTest>
#include <QTimer>
#include <QtWidgets>
#include <deque>
#include <functional>
#include <utility>

namespace twk::test {

/// A person who deals with modal windows, in the order in which the test expects them.
class ModalWindows {
 public:
  ModalWindows() = default;
  ModalWindows(const ModalWindows&) = delete;
  ModalWindows& operator=(const ModalWindows&) = delete;
  ~ModalWindows() { EXPECT_TRUE(queue_.empty()) << queue_.size() << " windows never came"; }

  /// When the next modal window is up, calls `person` with it.
  void expect_window(std::function<void(QWidget& window)> person) {
    queue_.push_back(std::move(person));
    if (queue_.size() == 1)
      wait();
  }
  /// The next modal window is a box that shows `text`; presses the button.
  void expect_box(const QString& text, QMessageBox::StandardButton button = QMessageBox::Ok) {
    expect_window([text, button](QWidget& shown) {
      auto* const box = qobject_cast<QMessageBox*>(&shown);
      if (box == nullptr) {
        ADD_FAILURE() << "not a box: " << shown.windowTitle().toStdString();
        shown.close();
        return;
      }
      const QString told = box->text() + box->informativeText();
      EXPECT_TRUE(told.contains(text)) << told.toStdString();
      QTest::mouseClick(box->button(button), Qt::LeftButton);
    });
  }

 private:
  void wait() {
    QTimer::singleShot(5, &context_, [this] { look(); });
  }
  void look() {
    QWidget* const modal = QApplication::activeModalWidget();
    // The focus comes a moment after the window.
    const bool is_up = modal != nullptr && modal != last_ && modal->isVisible() &&
                       (modal->focusWidget() != nullptr || ++focus_waits_ >= 40);
    if (!is_up) {
      wait();
      return;
    }
    focus_waits_ = 0;
    const auto person = queue_.front();
    queue_.pop_front();
    if (!queue_.empty())
      wait();
    QWidget* const outer = std::exchange(last_, modal);
    person(*modal);
    last_ = outer;
  }

  QObject context_;
  int focus_waits_ = 0;
  QWidget* last_ = nullptr;
  std::deque<std::function<void(QWidget&)>> queue_;
};

}  // namespace twk::test
