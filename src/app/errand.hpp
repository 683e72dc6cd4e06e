#pragma once

#include <QObject>
#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>

namespace twk::app {

/// Work in another thread for a window that need not wait for it. An errand that ends before its work drops
/// it: the work goes on, and nobody hears of it.
class Errand {
 public:
  /// The window, as its work sees it.
  class Home : public std::enable_shared_from_this<Home> {
   public:
    explicit Home(QObject& receiver) : receiver_(&receiver) {}

    /// True when the errand has ended.
    [[nodiscard]] bool is_left();
    /// Runs `act` in the window's thread, later; never after the errand's end.
    void post(std::function<void()> act);
    /// Runs `question` there and waits for the answer; none when the errand ends first.
    std::optional<std::string> ask(const std::function<std::optional<std::string>()>& question);
    /// The errand's end.
    void leave();

   private:
    std::mutex mutex_;
    std::condition_variable answered_;
    QObject* receiver_;
  };

  /// Starts the work. What it raises is shown in a box.
  explicit Errand(std::function<void(Home& home)> work);
  Errand(const Errand&) = delete;
  Errand& operator=(const Errand&) = delete;
  ~Errand();

  /// True while any work goes on, dropped work included. The program must then end without taking down what
  /// a thread may still use.
  static bool is_any_left();

 private:
  QObject receiver_;
  std::shared_ptr<Home> home_;
};

}  // namespace twk::app
