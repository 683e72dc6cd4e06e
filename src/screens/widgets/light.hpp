#pragma once

#include <QWidget>

#include "controls/basic.hpp"

class QLabel;

namespace twk::screens {

/// The light of a stage: a dot in the control's colour next to its caption; blank while there is none. It
/// is painted while a routine runs, too.
class Light final : public QWidget {
 public:
  Light(controls::Label& control, QWidget* parent);

 private:
  void show_state();

  controls::Label* control_;
  QLabel* dot_;
  QLabel* text_;
};

}  // namespace twk::screens
