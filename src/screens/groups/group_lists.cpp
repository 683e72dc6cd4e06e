#include "screens/groups/group_lists.hpp"

#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include "screens/widgets/icons.hpp"

namespace twk::screens {
namespace {

QLayout* make_side(const ListSide& side, QWidget* parent) {
  auto* const column = new QVBoxLayout();
  auto* const pane = new ListPane(
      side.list,
      {.headings = side.columns, .many_selected = true, .sorted = side.sorted, .empty_text = side.empty_text},
      parent);
  pane->setObjectName(side.name);
  pane->setAccessibleName(QString(side.caption).remove('&'));
  pane->setMinimumHeight(90);
  pane->setHeaderHidden(true);
  pane->header()->setStretchLastSection(false);
  pane->header()->setSectionResizeMode(QHeaderView::ResizeToContents);
  pane->header()->setSectionResizeMode(0, QHeaderView::Stretch);
  pane->on_click = side.click;
  pane->on_activate = side.double_click;
  auto* const label = new QLabel(side.caption, parent);
  label->setBuddy(pane);
  column->addWidget(label);
  column->addWidget(add_filter(*pane, "Filter groups", parent));
  column->addWidget(pane, 1);
  return column;
}

QPushButton* make_button(const ListSide& side, const char* picture, QWidget* parent) {
  auto* const button = new QPushButton(icon(picture), side.button_caption, parent);
  button->setObjectName(side.button_name);
  button->setAutoDefault(false);
  bind_to(*button, side.button, side.move);
  return button;
}

}  // namespace

QWidget* make_two_lists(const ListSide& left, const ListSide& right, QWidget* parent) {
  auto* const lists = new QWidget(parent);
  auto* const row = new QHBoxLayout(lists);
  row->setContentsMargins(0, 0, 0, 0);
  row->addLayout(make_side(left, lists), 1);
  auto* const buttons = new QVBoxLayout();
  row->addLayout(buttons);
  buttons->addStretch();
  buttons->addWidget(make_button(left, "add", lists));
  buttons->addWidget(make_button(right, "remove", lists));
  buttons->addStretch();
  row->addLayout(make_side(right, lists), 1);
  return lists;
}

}  // namespace twk::screens
