#pragma once

#include <QElapsedTimer>
#include <QWidget>
#include <memory>

/// A run reports far more often than anyone can see: what it reports is shown twenty times a second at the
/// most.
namespace twk::screens {

class Pace {
 public:
  /// True at the first call, and when the last one that was true is 50 ms ago.
  bool is_due() {
    constexpr qint64 kPause = 50;
    if (last_.isValid() && last_.elapsed() < kPause)
      return false;
    last_.start();
    return true;
  }

 private:
  QElapsedTimer last_;
};

/// Paints a widget when it is called: at once if it is due, otherwise when events get their turn. A run may
/// let none in before its end.
class PacedPainting {
 public:
  explicit PacedPainting(QWidget& widget) : widget_(&widget), pace_(std::make_shared<Pace>()) {}

  void operator()() const {
    if (pace_->is_due())
      widget_->repaint();
    else
      widget_->update();
  }

 private:
  QWidget* widget_;
  std::shared_ptr<Pace> pace_;
};

}  // namespace twk::screens
