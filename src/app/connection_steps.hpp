#pragma once

#include <QString>
#include <QWidget>
#include <chrono>
#include <cstddef>
#include <vector>

#include "live/terms/check_step.hpp"

class QGridLayout;
class QLabel;

namespace twk::app {

/// A step that ended, and how long it took.
struct TimedStep {
  live::CheckStep step;
  std::chrono::milliseconds time{};
};

/// "0.3 s"
QString time_text(std::chrono::milliseconds time);

/// The steps of the check of a connection, a row each: light, name, what was found, time. Rows are called
/// "step0", "step1" ….
class ConnectionSteps final : public QWidget {
 public:
  /// The first `count` steps of the check.
  ConnectionSteps(std::size_t count, QWidget* parent);

  void clear();
  void show(std::size_t row, const TimedStep& ended);
  /// Says of a step how long it has been running.
  void show_running(std::size_t row, std::chrono::milliseconds time);

 private:
  struct Row {
    QLabel* light = nullptr;
    QLabel* name = nullptr;
    QLabel* detail = nullptr;
    QLabel* time = nullptr;
  };
  void add_row(QGridLayout& grid, const QString& name);
  void resizeEvent(QResizeEvent* event) override;
  /// Texts of several lines keep their height.
  void fit();

  std::vector<Row> rows_;
};

}  // namespace twk::app
