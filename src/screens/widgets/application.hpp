#pragma once

#include <QApplication>
#include <exception>
#include <functional>

class QMessageBox;

namespace twk::screens {

/// The toolkit's application, and the handling of a failure that no routine handled.
class Application : public QApplication {
 public:
  Application(int& argc, char** argv);

  bool event(QEvent* event) override;

  /// Called with such a failure; the default shows it in a box and continues.
  std::function<void(const std::exception& failure)> on_failure;
};

/// The text of a failure for a person: the description, and below it the number that a routine would test.
QString describe_failure(const std::exception& failure);
/// Buttons that copy the text of a box, and that open the help where it says what to do; the box stays open.
void add_remedies(QMessageBox& box);
/// Opens the guide at what it says about a message, otherwise at its page of faults. A part of the help.
void show_advice(QWidget* parent, const QString& message);
void show_failure(const std::exception& failure);

/// Runs what a person started. No exception leaves it, because none may pass through the toolkit.
void run_guarded(const std::function<void()>& action);

}  // namespace twk::screens
