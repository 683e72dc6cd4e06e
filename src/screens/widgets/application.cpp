#include "screens/widgets/application.hpp"

#include <QMessageBox>

#include "base/errors.hpp"
#include "screens/widgets/text.hpp"

/// Pictures and pages in a static library must be requested by name, outside of a namespace.
static void load_resources() {
  Q_INIT_RESOURCE(screens);
}

namespace twk::screens {

Application::Application(int& argc, char** argv) : QApplication(argc, argv), on_failure(show_failure) {
  load_resources();
  setOrganizationName("tarnwick");
  setApplicationName("tarnwick");
  setApplicationDisplayName("TWK");
  setDesktopFileName("tarnwick");
}

QString describe_failure(const std::exception& failure) {
  QString text = to_qt(failure.what());
  if (const auto* error = dynamic_cast<const base::RuntimeError*>(&failure))
    text += "\n\nError Number: " + QString::number(error->number());
  return text;
}

void show_failure(const std::exception& failure) {
  QMessageBox box(QMessageBox::Critical, "TWK", describe_failure(failure), QMessageBox::Ok,
                  QApplication::activeWindow());
  box.setTextFormat(Qt::PlainText);
  box.exec();
}

void run_guarded(const std::function<void()>& action) {
  if (!action)
    return;
  try {
    action();
  } catch (const std::exception& failure) {
    const auto* application = dynamic_cast<const Application*>(QCoreApplication::instance());
    if (application != nullptr && application->on_failure)
      application->on_failure(failure);
    else
      show_failure(failure);
  }
}

}  // namespace twk::screens
