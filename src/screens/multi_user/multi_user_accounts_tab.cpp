#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QProgressBar>
#include <QVBoxLayout>
#include <array>
#include <vector>

#include "screens/multi_user/multi_user_tabs.hpp"
#include "screens/widgets/form.hpp"
#include "windows/multi_user/accounts_tab.hpp"
#include "windows/state/multi_user.hpp"

namespace twk::screens {
namespace {

using windows::Desktop;
using windows::MultiUser;

/// An option button of `LockAcc`, in the order of its numbers, and its position.
struct Option {
  const char* caption;
  int row;
  int column;
};

constexpr std::array<Option, 7> kOptions = {{{"&Enable accounts", 0, 0},
                                             {"&Disable accounts", 1, 0},
                                             {"Set passwords to &expire", 0, 1},
                                             {"Set passwords &not to expire", 1, 1},
                                             {"&Reset passwords", 2, 0},
                                             {"&Find Expired Accounts", 0, 3},
                                             {"Find &Locked Accounts", 1, 3}}};

void add_options(QGridLayout& grid, MultiUser& window, QWidget* parent) {
  std::vector<QRadioButton*> buttons;
  buttons.reserve(kOptions.size());
  for (const Option& option : kOptions) {
    auto* const button = new QRadioButton(option.caption, parent);
    button->setObjectName("LockAcc_" + QString::number(buttons.size()));
    grid.addWidget(button, option.row, option.column);
    buttons.push_back(button);
  }
  bind_options(buttons, window.LockAcc);
}

/// The inputs of three of the functions, next to them.
void add_details(QGridLayout& grid, MultiUser& window, QWidget* parent) {
  const auto add = [&](const char* caption, const char* name, const char* tip, controls::CheckBox& control,
                       int column) {
    auto* const box = new QCheckBox(caption, parent);
    box->setObjectName(name);
    box->setToolTip(tip);
    grid.addWidget(box, 1, column);
    bind_to(*box, control);
  };
  add("C&hange at next logon", "ctrChangePswd", "User to change password next logon", window.ctrChangePswd,
      2);
  add("Reset Pass&words", "Unlock_Reset", "Will reset passwords when accounts are unlocked",
      window.Unlock_Reset, 4);
  auto* const date = new QLineEdit(parent);
  date->setObjectName("Expiredate");
  date->setAccessibleName("Date before which accounts expired, day first");
  date->setPlaceholderText("< Enter Date >");
  date->setToolTip("Accounts that expired before this day: d/M/yy");
  date->setMaximumWidth(date->fontMetrics().averageCharWidth() * 18);
  grid.addWidget(date, 0, 4);
  bind_to(*date, window.Expiredate);
}

QProgressBar* make_progress(MultiUser& window, QWidget* parent) {
  auto* const bar = new QProgressBar(parent);
  bar->setObjectName("ProgressBar1");
  bar->setAccessibleName("Progress of the search");
  QSizePolicy policy = bar->sizePolicy();
  policy.setRetainSizeWhenHidden(true);
  bar->setSizePolicy(policy);
  bind_to(*bar, window.ProgressBar1);
  follow(*bar, window.ProgressBar1_visible, [bar](bool shown) { bar->setVisible(shown); });
  return bar;
}

}  // namespace

QWidget* make_multi_accounts_tab(Desktop& session, QWidget* parent) {
  MultiUser& window = session.multi_user;
  auto* const page = new QWidget(parent);
  auto* const rows = new QVBoxLayout(page);
  auto* const frame = new QGroupBox("Account Functions", page);
  rows->addWidget(frame);
  auto* const grid = new QGridLayout(frame);
  grid->setHorizontalSpacing(24);
  add_options(*grid, window, frame);
  add_details(*grid, window, frame);
  grid->setColumnStretch(5, 1);
  auto* const foot = new QHBoxLayout;
  rows->addLayout(foot);
  add_button(*foot, "&Go", "btnGo", window.btnGo, [&session] { windows::btnGo_Click(session); });
  foot->addWidget(make_progress(window, page), 1);
  rows->addStretch(1);
  return page;
}

}  // namespace twk::screens
