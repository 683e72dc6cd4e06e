#include "windows/state/desktop.hpp"

#include "directory/user_details.hpp"
#include "session/loaded_database.hpp"
#include "session/loaded_domain.hpp"
#include "windows/state/account_windows.hpp"
#include "windows/state/ad_properties.hpp"
#include "windows/state/details_changes.hpp"
#include "windows/state/directory_windows.hpp"
#include "windows/state/editor_windows.hpp"
#include "windows/state/form1.hpp"
#include "windows/state/group_windows.hpp"
#include "windows/state/import_windows.hpp"
#include "windows/state/log_window.hpp"
#include "windows/state/multi_user.hpp"
#include "windows/state/new_user.hpp"
#include "windows/state/run_history.hpp"
#include "windows/state/run_preview.hpp"
#include "windows/state/tree_commands.hpp"
#include "windows/state/whereabouts.hpp"

namespace twk::windows {

Form1::Form1(session::LoadedDomain& domain, session::LoadedDatabase& database, controls::StatusBar& status,
             controls::ListView& log_rows)
    : StatusBar1(status),
      TreeView1(domain.tree),
      ListView3(domain.other_groups),
      ListView4(domain.own_groups),
      ListView1(log_rows),
      ListView5(domain.template_choice),
      ListView6(domain.template_groups),
      ListView7(database.directory_rows),
      ListView8(database.mail_rows),
      ListView9(database.terminal_rows) {}

Varibles_Form::Varibles_Form(session::LoadedDatabase& database) : ListView1(database.variables) {}

MultiUser::MultiUser(session::LoadedDomain& domain)
    : ListView1(domain.selection),
      ListView2(domain.users),
      ListView3(domain.groups),
      ListView4(domain.units) {}

Groupsfrm::Groupsfrm(session::LoadedDomain& domain)
    : ListView1(domain.all_groups), Members(domain.Members), NotMembers(domain.NotMembers) {}

struct Desktop::Windows {
  explicit Windows(Desktop& desktop)
      : form1(desktop.domain, desktop.database, desktop.status, desktop.log_rows),
        variables(desktop.database),
        groups(desktop.domain),
        multi_user(desktop.domain) {}

  Form1 form1;
  frmSplash splash;
  Varibles_Form variables;
  frmSharePoints share_points;
  Groupsfrm groups;
  GroupAdd group_add;
  frmCopy_Group copy_group;
  MultiUser multi_user;
  ADProperties ad_properties;
  RenameUser rename_user;
  Rename_NT rename_nt;
  WKS_PROFILE wks_profile;
  FileProgress file_progress;
  CSV_Import csv_import;
  ImportGrps import_grps;
  CancelImport cancel_import;
  frmADOptions ad_options;
  frmFindW2KUser find_user;
  Select_OU select_ou;
  Serach_Mail serach_mail;
  Edit_Properties edit_properties;
  Custom custom;
  Logon_Hours logon_hours;
  LogWindow log_window;
  Permissions permissions;
  DetailsChanges details{form1};
  NewUser new_user;
  RunHistory run_history;
  RunPreview run_preview;
  TreeCommands tree_commands;
  UnitChooser unit_chooser;
  Whereabouts whereabouts;
  controls::Watch mode_known;
  controls::Watch loading;
};

namespace {

void show_captions(Form1& form, bool active_directory) {
  form.mnuOption[4].visible = active_directory;
  form.SSTab2[3].visible = active_directory;
  if (active_directory) {
    form.mnuOption[2].visible = true;
    form.SSTab2[2].visible = true;
  }
  form.Frame3.caption = active_directory ? "CN and SamAccountName" : "User ID";
  form.Frame3.tool_tip = active_directory
                             ? "CN & SamAccountName are the same by default. This can be changed by "
                               "adding 'SamAccountName' to W2K Tab"
                             : "";
  form.Frame13.caption = active_directory ? "Display Name" : "Full Name";
}

/// The fields of the details tab that a WinNT account lacks.
void show_directory_fields(Form1& form, bool visible) {
  for (controls::TextBox* field :
       {&form.UM_Initails, &form.UM_First, &form.UM_Last, &form.UM_Office, &form.UM_MailAddress,
        &form.UM_Logon_Name, &form.UM_W2KDomain_Name, &form.UM_PreW2K}) {
    field->visible = visible;
  }
  for (std::size_t i = 0; !visible && i < form.Custom_Value.size(); ++i) {
    form.Custom_Label.at(i).visible = false;
    form.Custom_Value.at(i).visible = false;
  }
}

/// The kind of the domain that is being loaded is known.
void follow_mode(Desktop& desktop) {
  Form1& form = desktop.form1;
  const bool active_directory = session::is_active_directory(desktop);
  show_captions(form, active_directory);
  show_custom_fields(desktop);
  show_directory_fields(form, active_directory);
  if (!active_directory)
    return;
  desktop.groups.btn_showGrpusers.visible = true;
  form.UM_W2KDomain_Name.text = "@" + desktop.DomainName;
  if (!desktop.ManagedOU.empty()) {
    form.DomName.enabled = false;
    form.mnuOption[5].enabled = false;
  }
}

}  // namespace

Desktop::Desktop(const platform::Platform& services, std::string_view command_line_text,
                 std::string_view program_directory_text)
    : Session(services, command_line_text, program_directory_text),
      windows_(std::make_unique<Windows>(*this)),
      form1(windows_->form1),
      splash(windows_->splash),
      variables(windows_->variables),
      share_points(windows_->share_points),
      groups(windows_->groups),
      group_add(windows_->group_add),
      copy_group(windows_->copy_group),
      multi_user(windows_->multi_user),
      ad_properties(windows_->ad_properties),
      rename_user(windows_->rename_user),
      rename_nt(windows_->rename_nt),
      wks_profile(windows_->wks_profile),
      file_progress(windows_->file_progress),
      csv_import(windows_->csv_import),
      import_grps(windows_->import_grps),
      cancel_import(windows_->cancel_import),
      ad_options(windows_->ad_options),
      find_user(windows_->find_user),
      select_ou(windows_->select_ou),
      serach_mail(windows_->serach_mail),
      edit_properties(windows_->edit_properties),
      custom(windows_->custom),
      logon_hours(windows_->logon_hours),
      log_window(windows_->log_window),
      permissions(windows_->permissions),
      details(windows_->details),
      new_user(windows_->new_user),
      run_history(windows_->run_history),
      run_preview(windows_->run_preview),
      tree_commands(windows_->tree_commands),
      unit_chooser(windows_->unit_chooser),
      whereabouts(windows_->whereabouts) {
  windows_->mode_known = domain.mode_known.watch([this] { follow_mode(*this); });
  windows_->loading = domain.loading.watch([this] {
    if (splash.visible)
      splash.Splash_TxT.caption = domain.loading.get();
  });
}

Desktop::~Desktop() = default;

void show_custom_fields(Desktop& desktop) {
  const auto captions = directory::custom_captions(desktop);
  for (std::size_t i = 0; i < captions.size(); ++i) {
    const bool shown = !captions.at(i).empty();
    if (shown)
      desktop.form1.Custom_Label.at(i).caption = captions.at(i);
    desktop.form1.Custom_Label.at(i).visible = shown;
    desktop.form1.Custom_Value.at(i).visible = shown;
  }
}

}  // namespace twk::windows
