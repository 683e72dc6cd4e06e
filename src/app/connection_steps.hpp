#pragma once

#include <QElapsedTimer>
#include <QString>
#include <QTimer>
#include <QWidget>
#include <chrono>
#include <cstddef>
#include <string>
#include <vector>

#include "live/terms/check_step.hpp"

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
/// "step0", "step1" …. There are as many as steps are known beforehand; others come as they end.
class ConnectionSteps final : public QWidget {
 public:
  ConnectionSteps(std::vector<std::string> names, QWidget* parent);

  /// As before a check.
  void clear();
  void show(std::size_t row, const TimedStep& ended);
  /// From now on, until `end`, the step after those that ended says how long it has been running.
  void begin();
  /// What is still running gets `text`, if any.
  void end(const QString& text = {});

 private:
  struct Row {
    QLabel* light = nullptr;
    QLabel* name = nullptr;
    QLabel* detail = nullptr;
    QLabel* time = nullptr;
  };
  void add_row(const QString& name);
  void show_running();
  void resizeEvent(QResizeEvent* event) override;
  /// Texts of several lines keep their height.
  void fit();

  std::vector<std::string> names_;
  std::vector<Row> rows_;
  std::size_t running_ = 0;
  QElapsedTimer since_;
  QTimer* clock_ = nullptr;
};

}  // namespace twk::app
