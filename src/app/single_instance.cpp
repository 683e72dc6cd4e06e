#include "app/single_instance.hpp"

#include <QApplication>
#include <QDeadlineTimer>
#include <QLocalServer>
#include <QLocalSocket>
#include <QRegularExpression>
#include <QStandardPaths>
#include <QThread>
#include <QWidget>

namespace twk::app {
namespace {

constexpr int kPatience = 3000;  // milliseconds
constexpr qint64 kLongestToken = 1024;
constexpr const char* kActivationToken = "XDG_ACTIVATION_TOKEN";

QString display() {
  const QString wayland = qEnvironmentVariable("WAYLAND_DISPLAY");
  return wayland.isEmpty() ? qEnvironmentVariable("DISPLAY", "none") : wayland;
}

QString instance_name() {
  static const QRegularExpression unsafe("[^A-Za-z0-9.]");
  return QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation) + "/tarnwick-" +
         display().replace(unsafe, "-");
}

/// A compositor lets a window come forward with the token of the second start.
void answer_call(QLocalSocket& socket) {
  const QByteArray token = socket.bytesAvailable() > 0 ? socket.read(kLongestToken) : QByteArray();
  if (!token.isEmpty())
    qputenv(kActivationToken, token);
  come_forward();
}

void bring_forward(QWidget& window) {
  window.setWindowState((window.windowState() & ~Qt::WindowMinimized) | Qt::WindowActive);
  window.show();
  window.raise();
  window.activateWindow();
}

}  // namespace

SingleInstance::SingleInstance() : name_(instance_name()), lock_(name_ + ".lock") {
  // The lock never becomes stale by age, only when the program that holds it ends.
  lock_.setStaleLockTime(0);
  first_ = lock_.tryLock() || lock_.error() != QLockFile::LockFailedError;
  if (!first_)
    return;
  if (!lock_.isLocked())
    qWarning("tarnwick: cannot lock %s; a second start will not be noticed", qUtf8Printable(name_));
  listen();
}

SingleInstance::~SingleInstance() = default;

void SingleInstance::listen() {
  QLocalServer::removeServer(name_);
  server_ = std::make_unique<QLocalServer>();
  server_->setSocketOptions(QLocalServer::UserAccessOption);
  if (!server_->listen(name_)) {
    qWarning("tarnwick: cannot listen on %s: %s", qUtf8Printable(name_),
             qUtf8Printable(server_->errorString()));
    return;
  }
  QObject::connect(server_.get(), &QLocalServer::newConnection, server_.get(), [this] {
    while (QLocalSocket* const socket = server_->nextPendingConnection()) {
      const auto answer = [socket] {
        answer_call(*socket);
        socket->deleteLater();
      };
      if (socket->state() == QLocalSocket::UnconnectedState)
        answer();
      else
        QObject::connect(socket, &QLocalSocket::disconnected, socket, answer);
    }
  });
}

bool SingleInstance::call_first() const {
  QLocalSocket socket;
  QDeadlineTimer patience(kPatience);
  // The first one may have its lock but not listen yet.
  for (socket.connectToServer(name_); !socket.waitForConnected(kPatience); socket.connectToServer(name_)) {
    if (patience.hasExpired())
      return false;
    QThread::msleep(50);
  }
  const QByteArray token = qgetenv(kActivationToken).left(kLongestToken);
  if (!token.isEmpty()) {
    socket.write(token);
    socket.waitForBytesWritten(kPatience);
  }
  socket.disconnectFromServer();
  return socket.state() == QLocalSocket::UnconnectedState || socket.waitForDisconnected(kPatience);
}

void come_forward() {
  QWidget* const modal = QApplication::activeModalWidget();
  for (QWidget* const window : QApplication::topLevelWidgets()) {
    const bool is_window = window->windowType() == Qt::Window || window->windowType() == Qt::Dialog;
    if (window != modal && is_window && window->isVisible() && window->parentWidget() == nullptr)
      bring_forward(*window);
  }
  if (modal != nullptr)
    bring_forward(*modal);
}

}  // namespace twk::app
