#include <QGroupBox>
#include <QHBoxLayout>
#include <QVBoxLayout>

#include "screens/multi_user/multi_user_tabs.hpp"
#include "screens/widgets/form.hpp"
#include "windows/multi_user/groups_tab.hpp"
#include "windows/state/multi_user.hpp"

namespace twk::screens {
namespace {

using windows::Desktop;
using windows::MultiUser;

QComboBox* add_group(QFormLayout& fields, const char* caption, const char* name,
                     controls::ComboBox& control) {
  QComboBox* const box = add_combo(fields, caption, name, control, {}, true);
  box->setMinimumContentsLength(32);
  offer_matches(*box);
  return box;
}

QGroupBox* make_groups(MultiUser& window, QWidget* parent) {
  auto* const frame = new QGroupBox("Groups", parent);
  auto* const fields = new QFormLayout(frame);
  add_group(*fields, "&Add to:", "joined_group", window.joined_group);
  add_group(*fields, "Take out o&f:", "left_group", window.left_group);
  return frame;
}

}  // namespace

QWidget* make_multi_groups_tab(Desktop& session, QWidget* parent) {
  MultiUser& window = session.multi_user;
  auto* const page = new QWidget(parent);
  auto* const rows = new QVBoxLayout(page);
  rows->addWidget(make_groups(window, page));
  auto* const foot = new QHBoxLayout;
  rows->addLayout(foot);
  add_button(*foot, "Change &Groups", "change_groups", window.change_groups, [&session] {
    windows::change_groups_Click(session);
  })->setToolTip("Who is in a group already, or not in one, stays as it is");
  QPushButton* const move = add_button(*foot, "Move to &OU\u2026", "move_to_unit", window.move_to_unit,
                                       [&session] { windows::move_to_unit_Click(session); });
  move->setToolTip("Their data stays where it is; Move Users moves it");
  move->setVisible(session::is_active_directory(session));
  foot->addStretch(1);
  rows->addStretch(1);
  return page;
}

}  // namespace twk::screens
