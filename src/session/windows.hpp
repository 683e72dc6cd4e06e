#pragma once

#include <array>

#include "controls/basic.hpp"
#include "controls/list_view.hpp"

/// State of the windows beside the main one. Fields bear the names of the windows' controls.
namespace twk::session {

struct frmSplash {
  controls::Observable<bool> visible{false};
  controls::Label Splash_TxT;
};

/// Variables of the loaded template: the name without percent signs, the value in sub-item 1.
struct Varibles_Form {
  controls::Observable<bool> visible{false};
  controls::ListView ListView1;
};

/// Share points of the loaded template, and the window that edits them.
struct frmSharePoints {
  std::string HomeSharePoint;
  std::string ProfileSharePoint;
  controls::TextBox HomeShareName;
  controls::TextBox ProfileShareName;
  controls::Button btnOK;
};

struct MultiUser {
  controls::ListView ListView1;  ///< chosen users
  controls::ListView ListView2;  ///< users
  controls::ListView ListView3;  ///< groups
  controls::ListView ListView4;  ///< organizational units
  controls::ComboBox Multi_Site;
  controls::ComboBox Multi_Template;
  controls::TextBox AD_CHANGE;  ///< the value that a property is to get
  controls::Button btn_Showusers;
  controls::Label progress;  ///< the file that the run is at
  controls::Label Label3;    ///< what the run is at

  // Delete Users tab.
  controls::CheckBox Del_Shares;
  controls::CheckBox Del_Permissions;  ///< take ownership first
  controls::CheckBox Delete_NT_Account;
  controls::CheckBox Delete_Data;
  controls::CheckBox Delete_Mail;
  controls::ComboBox EX_Server;  ///< "Exchange 2000", or the server of an Exchange 5.5 mailbox
  controls::CheckBox No_Prompting;
  controls::CheckBox Run_command;

  // Move Users tab.
  controls::OptionGroup UserData;  ///< 0 move, 1 copy, 2 nothing
  controls::CheckBox Run_CMD;
  controls::CheckBox Add_to_Groups;
  controls::CheckBox Change_Logon;
  controls::CheckBox No_Prompt;
};

/// Which columns of an import file are what.
struct CSV_Import {
  controls::Label File_Name;
  controls::ListView ListView1;          ///< the first two lines
  controls::Observable<int> columns{0};  ///< columns of the preview, headed 1, 2, …
  controls::CheckBox chkImport;
  controls::ComboBox ImportFirst;
  controls::ComboBox ImportMiddle;
  controls::ComboBox ImportLast;
  controls::ComboBox ImportUserID;
  controls::ComboBox ImportPassword;
};

/// Groups and expiry of imported accounts.
struct ImportGrps {
  controls::OptionGroup Grp_Range;  ///< 0 none, 1 all, 2 a range
  controls::TextBox LowerRange;
  controls::TextBox UpperRange;
  controls::TextBox Expiredate;
};

struct CancelImport {
  controls::Observable<bool> visible{false};
  controls::Button CancelButton;
};

}  // namespace twk::session
