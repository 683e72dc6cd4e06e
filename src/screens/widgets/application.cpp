#include "screens/widgets/application.hpp"

#include <QClipboard>
#include <QMessageBox>
#include <QPalette>
#include <QPushButton>
#include <cmath>

#include "base/error_words.hpp"
#include "base/errors.hpp"
#include "screens/widgets/text.hpp"

/// Pictures and pages in a static library must be requested by name, outside of a namespace.
static void load_resources() {
  Q_INIT_RESOURCE(screens);
  Q_INIT_RESOURCE(guide);
}

namespace twk::screens {

namespace {

/// Some desktops leave black for placeholders on dark fields.
void make_placeholders_readable() {
  constexpr qreal kLeast = 0.25;
  const QPalette palette = QApplication::palette();
  const QColor paper = palette.color(QPalette::Base);
  QColor ink = palette.color(QPalette::PlaceholderText);
  if (std::abs(ink.lightnessF() - paper.lightnessF()) * ink.alphaF() >= kLeast)
    return;
  ink = palette.color(QPalette::Text);
  ink.setAlphaF(0.6F);
  QPalette readable;
  readable.setColor(QPalette::PlaceholderText, ink);
  QApplication::setPalette(readable);
}

}  // namespace

bool Application::event(QEvent* event) {
  const bool taken = QApplication::event(event);
  if (event->type() == QEvent::ApplicationPaletteChange)
    make_placeholders_readable();
  return taken;
}

Application::Application(int& argc, char** argv) : QApplication(argc, argv), on_failure(show_failure) {
  load_resources();
  setOrganizationName("tarnwick");
  setApplicationName("tarnwick");
  setApplicationDisplayName("TWK");
  setDesktopFileName("tarnwick");
  make_placeholders_readable();
}

QString describe_failure(const std::exception& failure) {
  const auto* const error = dynamic_cast<const base::RuntimeError*>(&failure);
  if (error == nullptr)
    return to_qt(failure.what());
  return to_qt(base::in_words(*error)) + "\n\nError Number: " + QString::number(error->number());
}

void add_copy(QMessageBox& box) {
  QPushButton* const copy = box.addButton("&Copy", QMessageBox::ActionRole);
  copy->setObjectName("copy");
  copy->setToolTip("Copy the text, to send it to somebody");
  // It does not answer the box.
  copy->disconnect();
  QObject::connect(copy, &QPushButton::clicked, &box, [&box] {
    const QString more = box.informativeText();
    QGuiApplication::clipboard()->setText(box.text() + (more.isEmpty() ? "" : "\n" + more));
  });
}

void show_failure(const std::exception& failure) {
  QMessageBox box(QMessageBox::Critical, "TWK", describe_failure(failure), QMessageBox::Ok,
                  QApplication::activeWindow());
  box.setTextFormat(Qt::PlainText);
  add_copy(box);
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
