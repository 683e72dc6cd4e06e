#pragma once

#include <QElapsedTimer>
#include <QWidget>
#include <algorithm>
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

/// Paints a widget when it is called: at once if it is due, otherwise when events get their turn. A run may
/// let none in before its end.
class PacedPainting {
 public:
  explicit PacedPainting(QWidget& widget) : widget_(&widget), pace_(std::make_shared<Pace>(kPart)) {}

  void operator()() const {
    if (!pace_->do_if_due([this] { widget_->repaint(); }))
      widget_->update();
  }

 private:
  /// About ten widgets show what a run is at.
  static constexpr qint64 kPart = 40;

  QWidget* widget_;
  std::shared_ptr<Pace> pace_;
};

}  // namespace twk::screens
