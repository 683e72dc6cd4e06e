#include "session/session.hpp"

#include "base/text.hpp"
#include "session/account_windows.hpp"
#include "session/ad_properties.hpp"
#include "session/directory_windows.hpp"
#include "session/editor_windows.hpp"
#include "session/form1.hpp"
#include "session/group_windows.hpp"
#include "session/loaded_database.hpp"
#include "session/loaded_domain.hpp"
#include "session/multi_user.hpp"
#include "session/windows.hpp"

namespace twk::session {

Form1::Form1(LoadedDomain& domain, LoadedDatabase& database, controls::StatusBar& status,
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

Varibles_Form::Varibles_Form(LoadedDatabase& database) : ListView1(database.variables) {}

MultiUser::MultiUser(LoadedDomain& domain)
    : ListView1(domain.selection),
      ListView2(domain.users),
      ListView3(domain.groups),
      ListView4(domain.units) {}

Groupsfrm::Groupsfrm(LoadedDomain& domain)
    : ListView1(domain.all_groups), Members(domain.Members), NotMembers(domain.NotMembers) {}

struct Session::Windows {
  LoadedDomain domain;
  LoadedDatabase database;
  controls::StatusBar status;
  controls::ListView log_rows;
  Form1 form1{domain, database, status, log_rows};
  frmSplash splash;
  Varibles_Form variables{database};
  frmSharePoints share_points;
  Groupsfrm groups{domain};
  GroupAdd group_add;
  frmCopy_Group copy_group;
  MultiUser multi_user{domain};
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
  Permissions permissions;
};

Session::Session(const platform::Platform& services, std::string_view command_line_text,
                 std::string_view program_directory_text)
    : windows_(std::make_unique<Windows>()),
      platform(services),
      command_line(command_line_text),
      program_directory(program_directory_text),
      domain(windows_->domain),
      database(windows_->database),
      status(windows_->status),
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
      permissions(windows_->permissions),
      details(form1),
      log(platform, dbpath, windows_->log_rows) {}

Session::~Session() = default;

bool is_debug(const Session& session) {
  return base::upper(session.command_line) == "/DEBUG";
}

bool logs_load(const Session& session) {
  return is_debug(session) || base::upper(session.command_line) == "/DEBUG1";
}

}  // namespace twk::session
