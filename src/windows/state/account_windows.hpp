#pragma once

#include <string>

#include "controls/basic.hpp"

/// State of the windows that change existing accounts. Fields have the names of the
/// windows' controls.
namespace twk::windows {

/// Renames a user of an Active Directory domain.
struct RenameUser {
  controls::TextBox Full_Name;
  controls::TextBox First_Name;
  controls::TextBox Last_Name;
  controls::TextBox Display_Name;
  controls::TextBox User_logon_name;
  controls::ComboBox AD_Domain;  ///< "@twk.test", one of the forest's suffixes
  controls::TextBox Logon_Name_pre2000;
  controls::Label WINNT_Domain;  ///< "TWK\"
  controls::CheckBox ReNameSD;   ///< shares and directories too
  std::string PrincipalShown;    ///< logon name and suffix as the window first showed them
  bool Full_Name_Changed = false;
  bool Logon_Name_Changed = false;
};

/// Renames a user of a WinNT domain.
struct Rename_NT {
  controls::TextBox User_Logon;
  controls::TextBox Full_Name;
  controls::CheckBox RenameDir;
  std::string OldName;
  bool Logon_Changed = false;
  bool Name_Changed = false;
};

/// Asks for the workstation whose copy of a profile will be deleted.
struct WKS_PROFILE {
  controls::TextBox WKS_NAME1;
  controls::OptionButton W2K;
  controls::OptionButton NT40;
  std::string WKS_Name;  ///< as confirmed; empty when it was cancelled
  bool WKS_Is_NT40 = false;
};

/// Shown during work on a folder when no run's own window shows progress.
struct FileProgress {
  controls::Observable<bool> visible{false};
  controls::Label text;
  controls::ProgressBar done;
  controls::Button CancelButton;
};

}  // namespace twk::windows
