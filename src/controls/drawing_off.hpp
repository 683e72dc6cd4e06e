#pragma once

namespace twk::controls {

/// Drawing of a list or tree switched off for a scope: its watchers get one reset instead of each change.
/// Inside another such scope it does nothing. However the scope ends, the view then shows the current
/// contents.
template <typename View>
class DrawingOff {
 public:
  explicit DrawingOff(View& view) : view_(view), was_on_(view.drawing_) { view_.set_drawing(false); }
  DrawingOff(const DrawingOff&) = delete;
  DrawingOff& operator=(const DrawingOff&) = delete;
  ~DrawingOff() { view_.set_drawing(was_on_); }

 private:
  View& view_;
  bool was_on_;
};

}  // namespace twk::controls
