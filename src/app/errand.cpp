#include "app/errand.hpp"

#include <atomic>
#include <exception>
#include <thread>
#include <utility>

#include "screens/widgets/application.hpp"

namespace twk::app {
namespace {

/// Threads belong to the process, and so does their number.
std::atomic<int>& running() {
  static std::atomic<int> count = 0;
  return count;
}

}  // namespace

bool Errand::Home::is_left() {
  const std::lock_guard lock(mutex_);
  return receiver_ == nullptr;
}

void Errand::Home::post(std::function<void()> act) {
  const std::lock_guard lock(mutex_);
  if (receiver_ == nullptr)
    return;
  QMetaObject::invokeMethod(
      receiver_, [act = std::move(act)] { screens::run_guarded(act); }, Qt::QueuedConnection);
}

std::optional<std::string> Errand::Home::ask(const std::function<std::optional<std::string>()>& question) {
  struct Answer {
    bool given = false;
    std::optional<std::string> text;
  };
  const auto answer = std::make_shared<Answer>();
  post([home = shared_from_this(), question, answer] {
    std::optional<std::string> text = question();
    const std::lock_guard lock(home->mutex_);
    *answer = {true, std::move(text)};
    home->answered_.notify_all();
  });
  std::unique_lock lock(mutex_);
  answered_.wait(lock, [&] { return answer->given || receiver_ == nullptr; });
  return answer->text;
}

void Errand::Home::leave() {
  const std::lock_guard lock(mutex_);
  receiver_ = nullptr;
  answered_.notify_all();
}

Errand::Errand(std::function<void(Home& home)> work) : home_(std::make_shared<Home>(receiver_)) {
  ++running();
  std::thread([home = home_, work = std::move(work)]() mutable {
    try {
      work(*home);
    } catch (...) {
      home->post([failure = std::current_exception()] { std::rethrow_exception(failure); });
    }
    work = {};
    --running();
  }).detach();
}

Errand::~Errand() {
  home_->leave();
}

bool Errand::is_any_left() {
  return running() > 0;
}

}  // namespace twk::app
