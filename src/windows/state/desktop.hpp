#pragma once

#include <memory>
#include <string_view>

#include "session/session.hpp"

/// The state of the windows: what their controls show and hold, without pixels.
namespace twk::windows {

struct ADProperties;
struct CSV_Import;
struct CancelImport;
struct Custom;
struct Edit_Properties;
struct FileProgress;
struct Form1;
struct GroupAdd;
struct Groupsfrm;
struct ImportGrps;
struct LogWindow;
struct Logon_Hours;
struct MultiUser;
struct NewUser;
struct Permissions;
struct RenameUser;
struct Rename_NT;
struct RunHistory;
struct RunPreview;
struct Select_OU;
struct Serach_Mail;
struct TreeCommands;
struct UnitChooser;
struct Varibles_Form;
struct WKS_PROFILE;
struct Whereabouts;
struct frmADOptions;
struct frmCopy_Group;
struct frmFindW2KUser;
struct frmSharePoints;
struct frmSplash;
struct DetailsChanges;

/// A session with its windows. The state of each has its own header, so that a change of it affects only the
/// code that uses it. What the session loads and reports is followed here: the captions that depend on the
/// kind of domain, the splash, the lists.
struct Desktop : session::Session {
  Desktop(const platform::Platform& services, std::string_view command_line,
          std::string_view program_directory);
  ~Desktop();

 private:
  struct Windows;
  std::unique_ptr<Windows> windows_;

 public:
  Form1& form1;
  frmSplash& splash;
  Varibles_Form& variables;
  frmSharePoints& share_points;
  Groupsfrm& groups;
  GroupAdd& group_add;
  frmCopy_Group& copy_group;
  MultiUser& multi_user;
  ADProperties& ad_properties;
  RenameUser& rename_user;
  Rename_NT& rename_nt;
  WKS_PROFILE& wks_profile;
  FileProgress& file_progress;
  CSV_Import& csv_import;
  ImportGrps& import_grps;
  CancelImport& cancel_import;
  frmADOptions& ad_options;
  frmFindW2KUser& find_user;
  Select_OU& select_ou;
  Serach_Mail& serach_mail;
  Edit_Properties& edit_properties;
  Custom& custom;
  Logon_Hours& logon_hours;
  LogWindow& log_window;
  Permissions& permissions;
  DetailsChanges& details;  ///< what was changed on the user details tab
  NewUser& new_user;
  RunHistory& run_history;
  RunPreview& run_preview;
  TreeCommands& tree_commands;
  UnitChooser& unit_chooser;
  Whereabouts& whereabouts;
  bool EditingSite = false;
  bool EditingTemplate = false;
};

/// The labels and boxes of the four custom attributes on the user details tab; those without a display name
/// are hidden.
void show_custom_fields(Desktop& desktop);

}  // namespace twk::windows
