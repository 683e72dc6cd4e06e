#pragma once

#include <array>
#include <string>
#include <string_view>

#include "controls/basic.hpp"
#include "controls/list_view.hpp"
#include "controls/tree_view.hpp"

namespace twk::session {
struct LoadedDatabase;
struct LoadedDomain;
}  // namespace twk::session

namespace twk::windows {

/// Tabs of the main window by their place in `SSTab1`.
namespace tab {
inline constexpr int kNewUser = 0;
inline constexpr int kDetails = 1;
inline constexpr int kLog = 2;
inline constexpr int kSite = 3;
inline constexpr int kTemplate = 4;
inline constexpr int kSetup = 5;
}  // namespace tab

/// Tabs inside the set-up tab by their place in `SSTab2`.
namespace setup_tab {
inline constexpr int kSetup = 0;
inline constexpr int kPreferences = 1;
inline constexpr int kMail = 2;
inline constexpr int kW2k = 3;
inline constexpr int kWts = 4;
}  // namespace setup_tab

/// Buttons of the toolbar by their keys.
inline constexpr std::array<std::string_view, 10> kToolbarKeys = {
    "NewUser", "deleteuser", "FIND", "Refresh", "MultiUser", "Groups", "IMPORTU", "Vlog", "Help", "Exit1"};

/// State of the main window `form1`, tab by tab. Fields have the names of the window's controls.
struct Form1 {
  Form1(session::LoadedDomain& domain, session::LoadedDatabase& database, controls::StatusBar& status,
        controls::ListView& log_rows);

  controls::Observable<bool> enabled{true};
  controls::Watch records_taken;  ///< empties the Site and the Template tab, see `LoadedDatabase`
  /// Set when the program should end.
  controls::Observable<bool> ended{false};
  /// 0 the arrow, 11 the hourglass.
  controls::Observable<int> mouse_pointer{0};
  controls::StatusBar& StatusBar1;
  controls::TreeView& TreeView1;
  controls::Observable<int> SSTab1{0};  ///< the current tab

  /// Called with the name of the control that gets the focus.
  controls::Channel<std::string_view> SetFocus;
  /// Called with the name of the help topic to show.
  controls::Channel<std::string_view> ShowHelp;

  // Menus "File" and "Options"; entry numbers as the window counts them.
  std::array<controls::MenuItem, 6> mnuFile;
  std::array<controls::MenuItem, 8> mnuOption;
  // Popup of the tree; 13 and 14 are the custom commands.
  std::array<controls::MenuItem, 15> mnupopup;
  std::array<controls::MenuItem, 10> Toolbar1;  ///< in the order of `kToolbarKeys`
  // The user being dragged in the tree and the OU under the pointer, by their keys.
  std::string DragNode;
  controls::Observable<std::string> DropHighlight;
  // Inner tabs of the set-up tab.
  std::array<controls::Frame, 5> SSTab2;
  controls::Frame Frame3;   ///< format of the account name
  controls::Frame Frame4;   ///< the default passwords
  controls::Frame Frame13;  ///< format of the full name

  // New User tab.
  controls::ComboBox nutemplate;  ///< template names, padded to 25 characters
  controls::ComboBox NUsitename;
  controls::TextBox strFirst;
  controls::TextBox StrMiddle;
  controls::TextBox strLast;
  controls::TextBox UserID_Box;
  controls::TextBox Description;
  controls::CheckBox Copy_User;
  controls::CheckBox Create_Dirs;
  controls::CheckBox Create_Shares;
  controls::CheckBox Dir_Security;
  controls::CheckBox Create_User_Account;
  controls::CheckBox Create_Mail_Account;
  controls::CheckBox Run_script;
  controls::Label Createdirs;
  controls::Label Sharedirs;
  controls::Label Security;
  controls::Label UserAccount;
  controls::Label MailAccount;
  controls::Label run;
  controls::ProgressBar ProgressBar1;
  controls::Label progress;
  controls::Label import_pace;  ///< how far an import is, and how fast
  controls::Label Import_Text;

  // User details tab.
  controls::TextBox USERID;
  controls::TextBox USERID_W2K;  ///< key of the account that is shown
  controls::TextBox UM_Full_Name;
  controls::TextBox UM_Description;
  controls::TextBox UM_First;
  controls::TextBox UM_Last;
  controls::TextBox UM_Initails;
  controls::TextBox UM_Office;
  controls::TextBox UM_MailAddress;
  controls::TextBox UM_Logon_Name;
  controls::TextBox UM_W2KDomain_Name;
  controls::TextBox UM_PreW2K;
  controls::TextBox UM_Profile_Dir;
  controls::TextBox UM_Home_Dir;
  controls::TextBox UM_Logon_Script;
  controls::ComboBox UM_Drive_Letter;
  controls::TextBox AccExpires;
  std::array<controls::Label, 4> Custom_Label;  ///< captions of the administrator's own attributes
  std::array<controls::TextBox, 4> Custom_Value;
  controls::CheckBox chkMustChange;
  controls::CheckBox chkCantChange;
  controls::CheckBox chkAcctLockedOut;
  controls::CheckBox chkPwdNever;
  controls::CheckBox chkAcctDisabled;
  controls::ListView& ListView3;  ///< groups the account is not in
  controls::ListView& ListView4;  ///< groups the account is in
  controls::Button Userman_Save;
  controls::Button UM_ADD_GROUP;
  controls::Button UM_REMOVE_GROUP;

  // Log tab: icon, message, date and time.
  controls::ListView& ListView1;

  // Site tab.
  controls::ListView ListView2;
  controls::TextBox New_Site_Name;
  controls::TextBox NTSERVER;
  controls::TextBox EXSERVER;
  controls::TextBox EXorg;
  controls::ComboBox EXSite;      ///< any text; `Find_Store` offers the storage groups
  controls::ComboBox Mail_Store;  ///< any text; `Find_Store` offers the stores
  controls::OptionGroup EXH5;     ///< 0 Exchange 5.5, 1 Exchange 2000
  controls::Label Label13;
  controls::Label Label14;
  controls::Label Label42;
  controls::Button Find_Store;
  controls::Button New_Site;
  controls::Button Edit_Site;
  controls::Button Save_Site;
  controls::Button Delete_site;

  // Template tab.
  controls::ComboBox templatelst;  ///< names padded to 25 characters
  controls::TextBox New_Template_Name;
  controls::TextBox propath;
  controls::TextBox homedir;
  controls::TextBox Profilepath;
  controls::TextBox Homedirpath;
  controls::TextBox sharenameprofile;
  controls::TextBox Sharenamehomedir;
  controls::TextBox logon;
  controls::ComboBox Home_Drive_letter;
  controls::Label PrimaryGrp;
  controls::ListView& ListView5;  ///< groups of the domain to choose from
  controls::ListView& ListView6;  ///< groups of the template
  controls::Button add;
  controls::Button remove;
  controls::Button SetPriGroup;
  controls::Button NewTemplate;
  controls::Button EditTemplate;
  controls::Button savetemplate;
  controls::Button DeleteTemplate;
  controls::Button paste;
  controls::Button LogonHours;
  controls::Button Variables;
  controls::Button btnSharePoints;

  // Tables: directory rows, mailbox rows, terminal-server rows.
  controls::ListView& ListView7;
  controls::ListView& ListView8;
  controls::ListView& ListView9;

  // Set-up tab.
  controls::ComboBox DomName;
  controls::TextBox defaultpassword;
  controls::TextBox Formatted_Password;
  controls::TextBox dbpath;
  controls::TextBox Create_Script;
  controls::TextBox Move_Script;
  controls::TextBox Delete_Script;
  controls::TextBox setupid;
  controls::TextBox ALTID;
  controls::TextBox testuserid;
  controls::TextBox TESTUSERALTID;
  controls::OptionGroup Option1;  ///< how account names are formed; entry 4 is custom
  std::array<controls::CheckBox, 3> Run_Hidden;
  std::array<controls::CheckBox, 3> Wait_NEW;

  // Preferences tab.
  controls::CheckBox FmtPass;
  controls::TextBox FN_Format;
  controls::TextBox FN_Format_Check;
  controls::OptionGroup FullName_Format;  ///< entry 3 is custom
  controls::OptionButton CNName;
  controls::OptionButton SamAccountName;
  controls::CheckBox USR_Cant_Change;
  controls::CheckBox PWD_NVR_EXPIRE;
  controls::CheckBox Password_Change;
  controls::CheckBox New_Disabled;
  controls::CheckBox Profile_Delete_Name;
  controls::CheckBox Confirm_Deletes;
  controls::CheckBox Confirm_Resets;
  controls::CheckBox chkAdmin_Shares;
  controls::CheckBox Domain_Admin;
  std::array<controls::CheckBox, 3> STOP_ON_RED;  ///< halt on errors, halt on warnings, skip prompt fields
  controls::OptionButton Sorted_Yes;
  controls::OptionButton Sorted_No;
  controls::OptionButton DisplayName;
  controls::OptionButton DNName;

  // Mail tab.
  controls::TextBox PORT;
  controls::TextBox txtAdmin;
  controls::TextBox txtPassword;
  controls::CheckBox Mail_Logon;
};

}  // namespace twk::windows
