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
  // What is not set here goes on following the desktop.
  QPalette readable = palette;
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

void add_remedies(QMessageBox& box) {
  const auto add = [&box](const char* caption, const char* name, const char* hint, auto act) {
    QPushButton* const button = box.addButton(caption, QMessageBox::ActionRole);
    button->setObjectName(name);
    button->setToolTip(hint);
    // It does not answer the box.
    button->disconnect();
    QObject::connect(button, &QPushButton::clicked, &box, [&box, act] {
      const QString more = box.informativeText();
      act(box.text() + (more.isEmpty() ? "" : "\n" + more));
    });
  };
  add("&Copy", "copy", "Copy the text, to send it to somebody",
      [](const QString& text) { QGuiApplication::clipboard()->setText(text); });
  add("&Help", "help", "What the guide says about it",
      [&box](const QString& text) { show_advice(&box, text); });
  // With several buttons Esc finds none by itself.
  if (box.standardButtons() == QMessageBox::Ok)
    box.setEscapeButton(QMessageBox::Ok);
}

void show_failure(const std::exception& failure) {
  QMessageBox box(QMessageBox::Critical, "TWK", describe_failure(failure), QMessageBox::Ok,
                  QApplication::activeWindow());
  box.setTextFormat(Qt::PlainText);
  add_remedies(box);
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
