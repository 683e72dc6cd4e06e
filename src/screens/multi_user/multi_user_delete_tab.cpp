#include <QGroupBox>
#include <QHBoxLayout>
#include <QVBoxLayout>

#include "screens/multi_user/multi_user_tabs.hpp"
#include "screens/widgets/form.hpp"
#include "windows/multi_user/delete_options.hpp"
#include "windows/multi_user/delete_tab.hpp"
#include "windows/state/multi_user.hpp"

namespace twk::screens {
namespace {

using windows::Desktop;
using windows::MultiUser;

using Clicked = void (*)(Desktop& session);

void add_box(QBoxLayout& column, Desktop& session, const QString& caption, const char* name,
             const QString& tip, controls::CheckBox& box, Clicked clicked) {
  add_check(column, caption, name, box, [&session, clicked] { clicked(session); })->setToolTip(tip);
}

void add_what_goes(QBoxLayout& columns, Desktop& session) {
  MultiUser& window = session.multi_user;
  auto* const column = new QVBoxLayout;
  columns.addLayout(column);
  add_box(*column, session, "Delete Users NT &Account", "Delete_NT_Account", "Will remove NT Account",
          window.Delete_NT_Account, windows::Delete_NT_Account_Click);
  add_box(*column, session, "Delete S&hares", "Del_Shares", "Remove users home/profile shares",
          window.Del_Shares, windows::Del_Shares_Click);
  add_box(*column, session, "Delete Users D&irectories", "Delete_Data",
          "Will remove home/profile directories", window.Delete_Data, windows::Delete_Data_Click);
  add_box(*column, session, "Ta&ke Ownership", "Del_Permissions",
          "Will take ownership of directories first before deleting", window.Del_Permissions,
          windows::Del_Permissions_Click);
  column->addStretch();
}

void add_how(QBoxLayout& columns, Desktop& session) {
  MultiUser& window = session.multi_user;
  auto* const column = new QVBoxLayout;
  columns.addLayout(column);
  add_box(*column, session, "Delete &Mail Account", "Delete_Mail", "Will delete mail account",
          window.Delete_Mail, windows::Delete_Mail_Click);
  auto* const server = new QFormLayout;
  column->addLayout(server);
  QComboBox* const box = add_combo(*server, "E&xchange server:", "EX_Server", window.EX_Server);
  box->setToolTip("Select Exchange 5.5 server that holds mailbox");
  box->setMinimumContentsLength(18);
  add_box(*column, session, "Run Command", "Run_command",
          "Will run command after user has been deleted (Setup TAB)", window.Run_command,
          windows::Run_command_Click);
  add_box(*column, session, "&No Prompting", "No_Prompting", "Will do silent delete", window.No_Prompting,
          windows::No_Prompting_Click);
  column->addStretch();
}

}  // namespace

QWidget* make_multi_delete_tab(Desktop& session, QWidget* parent) {
  auto* const page = new QWidget(parent);
  auto* const rows = new QVBoxLayout(page);
  auto* const frame = new QGroupBox("Delete User Options", page);
  rows->addWidget(frame);
  auto* const columns = new QHBoxLayout(frame);
  add_what_goes(*columns, session);
  columns->addSpacing(24);
  add_how(*columns, session);
  columns->addStretch(1);
  auto* const foot = new QHBoxLayout;
  rows->addLayout(foot);
  add_button(*foot, "&Delete Users", "Del_User", session.multi_user.Del_User, [&session] {
    windows::Del_User_Click(session);
  })->setToolTip("Start deleting selected users");
  foot->addStretch(1);
  rows->addStretch(1);
  return page;
}

}  // namespace twk::screens
