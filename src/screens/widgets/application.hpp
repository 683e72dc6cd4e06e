#pragma once

#include <QApplication>
#include <exception>
#include <functional>

namespace twk::screens {

/// The toolkit's application, and what is done about a failure that no routine dealt with.
class Application : public QApplication {
 public:
  Application(int& argc, char** argv);

  /// Called with such a failure; the default shows it in a box and goes on.
  std::function<void(const std::exception& failure)> on_failure;
};

/// Text of a failure for a person: the description, and below it the number that a routine would test.
QString describe_failure(const std::exception& failure);
void show_failure(const std::exception& failure);

/// Runs what a person started. No exception leaves it, since none may pass through the toolkit.
void run_guarded(const std::function<void()>& action);

}  // namespace twk::screens
