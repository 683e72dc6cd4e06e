#include <QGroupBox>
#include <QHBoxLayout>
#include <QVBoxLayout>
#include <array>

#include "screens/multi_user/multi_user_tabs.hpp"
#include "screens/widgets/form.hpp"
#include "windows/multi_user/delete_options.hpp"
#include "windows/multi_user/move_tab.hpp"
#include "windows/state/multi_user.hpp"

namespace twk::screens {
namespace {

using windows::Desktop;
using windows::MultiUser;

void add_target(QBoxLayout& columns, MultiUser& window) {
  auto* const fields = new QFormLayout;
  columns.addLayout(fields);
  for (QComboBox* const box : {add_combo(*fields, "S&ite:", "Multi_Site", window.Multi_Site),
                               add_combo(*fields, "Temp&late:", "Multi_Template", window.Multi_Template)})
    box->setMinimumContentsLength(25);
}

void add_options(QBoxLayout& columns, Desktop& session) {
  MultiUser& window = session.multi_user;
  auto* const column = new QVBoxLayout;
  columns.addLayout(column);
  add_check(*column, "&Add Users to groups", "Add_to_Groups", window.Add_to_Groups);
  add_check(*column, "Chan&ge Logon Script", "Change_Logon", window.Change_Logon);
  add_check(*column, "Run Comman&d", "Run_CMD", window.Run_CMD);
  add_check(*column, "&No Prompting", "No_Prompt", window.No_Prompt,
            [&session] { windows::No_Prompt_Click(session); });
  column->addStretch();
}

}  // namespace

QWidget* make_multi_move_tab(Desktop& session, QWidget* parent) {
  auto* const page = new QWidget(parent);
  auto* const rows = new QVBoxLayout(page);
  auto* const columns = new QHBoxLayout;
  rows->addLayout(columns);
  add_target(*columns, session.multi_user);
  columns->addSpacing(24);
  auto* const data = new QGroupBox("Users Data", page);
  constexpr std::array kData = {"Mo&ve", "Cop&y", "Not&hing"};
  data->setLayout(make_options(*data, kData, "UserData", session.multi_user.UserData, {}));
  columns->addWidget(data, 0, Qt::AlignTop);
  columns->addSpacing(24);
  add_options(*columns, session);
  columns->addStretch(1);
  auto* const foot = new QHBoxLayout;
  rows->addLayout(foot);
  add_button(*foot, "&Move Users", "btn_MoveUser", session.multi_user.btn_MoveUser,
             [&session] { windows::btn_MoveUser_Click(session); });
  foot->addStretch(1);
  rows->addStretch(1);
  return page;
}

}  // namespace twk::screens
