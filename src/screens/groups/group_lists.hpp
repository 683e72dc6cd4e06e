#pragma once

#include <QWidget>

#include "screens/widgets/bind.hpp"
#include "screens/widgets/list_pane.hpp"

namespace twk::screens {

/// One of two lists between which rows are moved.
struct ListSide {
  controls::ListView& list;
  const char* name;
  QString caption;
  QStringList columns;  ///< the first takes the available width; headings are not shown
  bool sorted = true;
  QString empty_text;
  controls::Button& button;  ///< moves the selected rows to the other list
  const char* button_name;
  QString button_caption;
  Action move;
  Action click;  ///< a row was selected; may be empty
  Action double_click;
};

/// Two lists side by side, each under a field that filters it, with the buttons that move rows between them.
QWidget* make_two_lists(const ListSide& left, const ListSide& right, QWidget* parent);

}  // namespace twk::screens
