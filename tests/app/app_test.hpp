#pragma once

#include <QTest>
#include <QTimer>
#include <QtWidgets>
#include <deque>
#include <functional>
#include <string>

#include "screens/program/qt_dialogs.hpp"
#include "support/temporary_directory.hpp"
#include "world/sample_lab.hpp"

namespace twk::test {

/// A sample lab in a separate folder, and a person who deals with one modal window after the other.
class AppTest : public testing::Test {
 protected:
  AppTest() { wait(); }
  ~AppTest() override { EXPECT_TRUE(queue_.empty()) << queue_.size() << " windows never came"; }

  std::string make_lab() {
    lab::LabPlan plan;
    plan.users = 3;
    screens::QtDialogs dialogs;
    world::make_sample_lab(lab(), plan, dialogs);
    return lab();
  }
  [[nodiscard]] std::string lab() const { return folder_ / "lab"; }
  [[nodiscard]] std::string file(std::string_view name) const { return folder_ / name; }

  /// When the next modal window is up, calls `person` with it, which must close it.
  void expect_window(std::function<void(QWidget&)> person) { queue_.push_back(std::move(person)); }
  /// The next modal window is a box that shows `text`.
  void expect_box(const QString& text) {
    expect_window([text](QWidget& window) {
      auto* const box = qobject_cast<QMessageBox*>(&window);
      ASSERT_NE(box, nullptr) << window.objectName().toStdString();
      EXPECT_TRUE((box->text() + box->informativeText()).contains(text))
          << (box->text() + box->informativeText()).toStdString();
      QTest::mouseClick(box->button(QMessageBox::Ok), Qt::LeftButton);
    });
  }
  static void click(QWidget& window, const char* name) {
    auto* const button = window.findChild<QAbstractButton*>(name);
    ASSERT_NE(button, nullptr) << name;
    QTest::mouseClick(button, Qt::LeftButton);
  }

 private:
  /// A separate timer each time, because none fires inside its own call.
  void wait() {
    QTimer::singleShot(10, &context_, [this] {
      wait();
      look();
    });
  }
  void look() {
    QWidget* const modal = QApplication::activeModalWidget();
    if (modal == nullptr || !modal->isVisible() || modal == last_ || queue_.empty())
      return;
    const auto person = queue_.front();
    queue_.pop_front();
    QWidget* const outer = std::exchange(last_, modal);
    person(*modal);
    last_ = outer;
  }

  TemporaryDirectory folder_;
  QObject context_;
  QWidget* last_ = nullptr;
  std::deque<std::function<void(QWidget&)>> queue_;
};

}  // namespace twk::test
