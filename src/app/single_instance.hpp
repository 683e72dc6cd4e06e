#pragma once

#include <QLockFile>
#include <QString>
#include <memory>

class QLocalServer;

namespace twk::app {

/// Allows one program for each person and display. The first one holds a lock and listens on a socket in
/// the person's runtime directory; both are taken over from a program that was killed.
class SingleInstance {
 public:
  SingleInstance();
  SingleInstance(const SingleInstance&) = delete;
  SingleInstance& operator=(const SingleInstance&) = delete;
  ~SingleInstance();

  /// False when the person already runs the program on this display.
  [[nodiscard]] bool is_first() const { return first_; }
  /// Asks that program to come forward. False when it does not listen.
  bool call_first() const;

 private:
  void listen();

  QString name_;
  QLockFile lock_;
  bool first_ = true;
  std::unique_ptr<QLocalServer> server_;
};

/// Brings the program's windows to the front, with the modal one, if any, above the others. A
/// minimised window is restored.
void come_forward();

}  // namespace twk::app
