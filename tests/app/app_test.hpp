#pragma once

#include <string>

#include "screens/program/qt_dialogs.hpp"
#include "support/modal_windows.hpp"
#include "support/temporary_directory.hpp"
#include "world/sample_lab.hpp"

namespace twk::test {

/// A sample lab in a separate folder, and a person who deals with one modal window after the other.
class AppTest : public testing::Test, protected ModalWindows {
 protected:
  std::string make_lab() {
    lab::LabPlan plan;
    plan.users = 3;
    screens::QtDialogs dialogs;
    world::make_sample_lab(lab(), plan, dialogs);
    return lab();
  }
  [[nodiscard]] std::string lab() const { return folder_ / "lab"; }
  [[nodiscard]] std::string file(std::string_view name) const { return folder_ / name; }

  static void click(QWidget& window, const char* name) {
    auto* const button = window.findChild<QAbstractButton*>(name);
    ASSERT_NE(button, nullptr) << name;
    QTest::mouseClick(button, Qt::LeftButton);
  }

 private:
  TemporaryDirectory folder_;
};

}  // namespace twk::test
