#pragma once

#include <string>
#include <string_view>
#include <utility>

#include "controls/basic.hpp"
#include "controls/list_view.hpp"

namespace twk::session {
struct LoadedDomain;
}  // namespace twk::session

/// State of the window that works on many users at once. Fields have the names of its controls.
namespace twk::windows {

/// Tabs of the window, in their order.
namespace multi_tab {
inline constexpr int kDelete = 0;
inline constexpr int kMove = 1;
inline constexpr int kAccounts = 2;
inline constexpr int kProperties = 3;
inline constexpr int kGroups = 4;
}  // namespace multi_tab

/// Entries of `LockAcc`: functions that change accounts at once, then two searches.
namespace lock_acc {
inline constexpr int kEnable = 0;
inline constexpr int kDisable = 1;
inline constexpr int kPasswordExpires = 2;
inline constexpr int kPasswordNeverExpires = 3;
inline constexpr int kResetPassword = 4;
inline constexpr int kFindExpired = 5;
inline constexpr int kFindLocked = 6;
}  // namespace lock_acc

/// What a start button shows while its run is in progress: it then stops the run.
inline constexpr std::string_view kCancelCaption = "&Cancel";

/// A button whose caption changes.
inline controls::Button button(std::string caption) {
  return {controls::Observable<std::string>(std::move(caption)), controls::Observable<bool>(true),
          controls::Observable<bool>(true)};
}

struct Desktop;

/// How a run over the selection goes.
struct RunCourse {
  controls::Label pace;  ///< "12 of 822, 1 failed, about 2 minutes left"
  controls::ListView
      failures;  ///< who failed, with the reason in sub-item 1; keys are those of the selection
  void (*start)(Desktop&) = nullptr;  ///< begins the last run again
};

struct MultiUser {
  explicit MultiUser(session::LoadedDomain& domain);

  controls::ListView& ListView1;  ///< the selection: users, groups and organizational units
  controls::ListView& ListView2;  ///< users
  controls::ListView& ListView3;  ///< groups
  controls::ListView& ListView4;  ///< organizational units
  controls::Button Command1;      ///< moves what is selected in the three lists into the selection
  controls::Button Command2;      ///< moves it back
  controls::Button Command7;      ///< closes the window
  controls::Button btn_Showusers;
  controls::Button DELIMPORT;  ///< values of users from a file
  controls::Observable<int> SSTab1{multi_tab::kDelete};
  controls::Label progress;  ///< the current file
  controls::Label Label3;    ///< the current item
  controls::ProgressBar ProgressBar1;
  RunCourse course;
  controls::Observable<bool> ProgressBar1_visible{false};
  controls::Observable<int> mouse_pointer{0};  ///< 11 while the window is busy
  bool initialized = false;                    ///< the boxes show what is stored
  bool working = false;                        ///< see `is_running`

  // Delete Users tab.
  controls::CheckBox Del_Shares;
  controls::CheckBox Del_Permissions;  ///< take ownership first
  controls::CheckBox Delete_NT_Account;
  controls::CheckBox Delete_Data;
  controls::CheckBox Delete_Mail;
  controls::ComboBox EX_Server;  ///< "Exchange 2000", or the server of an Exchange 5.5 mailbox
  controls::CheckBox No_Prompting;
  controls::CheckBox Run_command;
  controls::Button Del_User = button("&Delete Users");

  // Move Users tab.
  controls::ComboBox Multi_Site;
  controls::ComboBox Multi_Template;
  controls::OptionGroup UserData;  ///< 0 move, 1 copy, 2 nothing
  controls::CheckBox Run_CMD;
  controls::CheckBox Add_to_Groups;
  controls::CheckBox Change_Logon;
  controls::CheckBox No_Prompt;
  controls::Button btn_MoveUser = button("&Move Users");

  // Accounts tab.
  controls::OptionGroup LockAcc;     ///< see `lock_acc`
  controls::CheckBox ctrChangePswd;  ///< password must change at the next logon
  controls::TextBox Expiredate;      ///< "31/12/26"
  controls::CheckBox Unlock_Reset;   ///< new passwords for the accounts that are unlocked
  controls::Button btnGo = button("&Go");
  bool Unlock_Stage = false;  ///< the next Go of "Find Locked Accounts" unlocks

  // AD Properties tab.
  controls::TextBox AD_CHANGE;  ///< the new value of the property

  // Groups and OU tab.
  controls::ComboBox joined_group;
  controls::ComboBox left_group;
  controls::Button change_groups = button("Change &Groups");
  controls::Button move_to_unit = button("Move to &OU\u2026");
};

/// True while one of the window's functions is running. Other functions, and changes of the selection, are
/// refused.
inline bool is_running(const MultiUser& window) {
  return window.working;
}

}  // namespace twk::windows
