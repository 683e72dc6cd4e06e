#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

/// What a window holds, without pixels. A screen shows these values and writes back what a person does; the
/// logic reads and writes them and needs no toolkit.
namespace twk::controls {

/// Ends its watch when destroyed. It may outlive what it watches.
class Watch {
 public:
  Watch() = default;
  explicit Watch(std::shared_ptr<void> hold) : hold_(std::move(hold)) {}

 private:
  std::shared_ptr<void> hold_;
};

/// A list of callbacks. Adding or ending one while they run takes effect with the next call.
template <typename... Args>
class Channel {
 public:
  using Callback = std::function<void(Args...)>;

  [[nodiscard]] Watch watch(Callback callback) const {
    auto hold = std::make_shared<Callback>(std::move(callback));
    callbacks_.push_back(hold);
    return Watch(std::move(hold));
  }

  void emit(Args... args) const {
    if (callbacks_.empty())
      return;
    const auto now = callbacks_;
    for (const auto& weak : now) {
      if (const auto callback = weak.lock())
        (*callback)(args...);
    }
    std::erase_if(callbacks_, [](const auto& weak) { return weak.expired(); });
  }

 private:
  mutable std::vector<std::weak_ptr<Callback>> callbacks_;
};

using Signal = Channel<>;

/// A value that notifies its watchers when it changes.
template <typename T>
class Observable {
 public:
  Observable() = default;
  explicit Observable(T value) : value_(std::move(value)) {}
  Observable(const Observable&) = delete;
  Observable& operator=(const Observable&) = delete;

  Observable& operator=(T value) {
    if (!(value == value_)) {
      value_ = std::move(value);
      changed_.emit();
    }
    return *this;
  }

  [[nodiscard]] const T& get() const { return value_; }
  operator const T&() const { return value_; }  // NOLINT: it acts as its value
  [[nodiscard]] Watch watch(Signal::Callback callback) const { return changed_.watch(std::move(callback)); }

  friend bool operator==(const Observable& observable, const T& value) { return observable.value_ == value; }

 private:
  T value_{};
  Signal changed_;
};

}  // namespace twk::controls
