#include "app/waiting_window.hpp"

#include <QDialog>
#include <QEventLoop>
#include <QLabel>
#include <QProgressBar>
#include <QThread>
#include <QTimer>
#include <QVBoxLayout>
#include <chrono>
#include <exception>
#include <memory>

namespace twk::app {
namespace {

/// Only the end of the work closes it.
class WaitingWindow final : public QDialog {
 public:
  explicit WaitingWindow(const QString& text)
      : QDialog(nullptr, Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint) {
    setObjectName("waiting");
    setWindowTitle("Tarnwick");
    auto* const layout = new QVBoxLayout(this);
    auto* const label = new QLabel(text, this);
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    layout->addWidget(label);
    auto* const bar = new QProgressBar(this);
    bar->setRange(0, 0);
    bar->setTextVisible(false);
    bar->setAccessibleName(text);
    layout->addWidget(bar);
    resize(sizeHint().expandedTo({420, 0}));
  }

  void reject() override {}
};

}  // namespace

void wait_for(const QString& text, const std::function<void()>& work) {
  constexpr std::chrono::milliseconds kMoment(150);
  std::exception_ptr failure;
  const std::unique_ptr<QThread> thread(QThread::create([&] {
    try {
      work();
    } catch (...) {
      failure = std::current_exception();
    }
  }));
  WaitingWindow window(text);
  QTimer::singleShot(kMoment, &window, &QWidget::show);
  QEventLoop until_it_ends;
  QObject::connect(thread.get(), &QThread::finished, &until_it_ends, &QEventLoop::quit);
  thread->start();
  until_it_ends.exec();
  thread->wait();
  if (failure)
    std::rethrow_exception(failure);
}

}  // namespace twk::app
