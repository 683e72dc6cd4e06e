#include "screens/widgets/pace.hpp"

#include <QTimer>

namespace twk::screens {
namespace {

/// About ten widgets show what a run is at.
constexpr qint64 kPart = 40;
/// After so many milliseconds without a turn of the events, none may come for long.
constexpr qint64 kAbsence = 200;

}  // namespace

struct PacedShowing::State {
  std::function<void()> show;
  Pace pace{kPart};
  bool waits = false;
  QElapsedTimer turn;  ///< since events had their turn
};

PacedShowing::PacedShowing(QWidget& widget, std::function<void()> show)
    : widget_(&widget), state_(std::make_shared<State>()) {
  state_->show = std::move(show);
}

void PacedShowing::operator()() const {
  if (!state_->waits) {
    state_->waits = true;
    QTimer::singleShot(0, widget_, [state = state_] {
      state->waits = false;
      state->turn.start();
      state->show();
    });
  }
  if (state_->turn.isValid() && state_->turn.elapsed() < kAbsence)
    return;
  state_->pace.do_if_due([this] {
    state_->show();
    widget_->repaint();
  });
}

}  // namespace twk::screens
