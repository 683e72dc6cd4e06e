#pragma once

#include <functional>
#include <memory>
#include <string>

#include "controls/basic.hpp"

namespace twk::lifecycle {
class FolderUse;
}

/// State of the windows that change existing accounts, and of the runs that do. Fields have the names of the
/// windows' controls.
namespace twk::session {

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
};

/// Shown during work on a folder when no run's own window shows progress.
struct FileProgress {
  controls::Observable<bool> visible{false};
  controls::Label text;
  controls::ProgressBar done;
  controls::Button CancelButton;
};

/// A person's answer to a step that a run does not take on its own.
enum class Consent {
  kAsk,  ///< asked when the step is reached, in a box that defaults to No
  kNo,
  kYes
};

/// Flags of the runs that delete and move users, set by their callers.
struct AccountRuns {
  bool Delete_Running = false;
  bool Move_Running = false;
  bool Delete_Mail_Flag = false;
  bool Delete_Data_Flag = false;
  bool Run_Command_Flag = false;
  std::string WKS_Name;  ///< of the last `WKS_PROFILE`; empty when it was cancelled
  bool WKS_Is_NT40 = false;
  Consent even_if_shared = Consent::kAsk;  ///< folders and shares that others also use are changed
  Consent new_paths_anyway =
      Consent::kAsk;  ///< an account gets its new paths although its data was not copied
  std::shared_ptr<lifecycle::FolderUse> folders;  ///< see `lifecycle::KnownFolders`
  /// Set for a rehearsal: called with what would be done to a tree, instead of doing it.
  std::function<void(const std::string&)> rehearse;
};

}  // namespace twk::session
