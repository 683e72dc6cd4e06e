#pragma once

#include <QElapsedTimer>
#include <QWidget>
#include <algorithm>
#include <functional>
#include <memory>

/// A run reports far more often than anyone can see: what it reports is shown twenty times a second at the
/// most, and less often where that would take more than a part of the run's time.
namespace twk::screens {

class Pace {
 public:
  /// `part` of the time that passes, as its divisor.
  explicit Pace(qint64 part) : part_(part) {}

  /// Does the work at the first call, and when the pause since it was done last is over. True when it was.
  template <typename Work>
  bool do_if_due(const Work& work) {
    constexpr qint64 kShortest = 50;
    constexpr qint64 kLongest = 500;
    if (last_.isValid() && last_.elapsed() < pause_)
      return false;
    last_.start();
    work();
    pause_ = std::clamp(last_.elapsed() * part_, kShortest, kLongest);
    last_.start();
    return true;
  }

 private:
  qint64 part_;
  qint64 pause_ = 0;
  QElapsedTimer last_;
};

/// Shows in a widget what changed, at the latest when events get their turn. A run may let none in before its
/// end: while they stay away, it is also shown and painted at once when it is due.
class PacedShowing {
 public:
  PacedShowing(QWidget& widget, std::function<void()> show);

  void operator()() const;

 private:
  struct State;

  QWidget* widget_;
  std::shared_ptr<State> state_;
};

}  // namespace twk::screens
