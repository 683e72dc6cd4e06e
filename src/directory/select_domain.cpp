#include "directory/select_domain.hpp"

#include "base/errors.hpp"
#include "base/text.hpp"
#include "directory/ad_load.hpp"
#include "directory/load_options.hpp"
#include "directory/nt_load.hpp"
#include "directory/operations.hpp"
#include "session/session.hpp"

namespace twk::directory {
namespace {

using session::Session;

std::string mode_text(std::int32_t mode) {
  if (mode == session::kNativeMode)
    return "2000-Native Mode";
  return mode == session::kMixedMode ? "2000-Mixed Mode" : "WinNT:";
}

void show_directory_fields(session::Form1& form, bool visible) {
  for (controls::TextBox* field :
       {&form.UM_Initails, &form.UM_First, &form.UM_Last, &form.UM_Office, &form.UM_MailAddress,
        &form.UM_Logon_Name, &form.UM_W2KDomain_Name, &form.UM_PreW2K}) {
    field->visible = visible;
  }
}

bool load_domain(Session& session) {
  session::Form1& form = session.form1;
  session.DirectoryMode = Determine_Mode(session, session.DomainName);
  const bool active_directory = session::is_active_directory(session);
  form.StatusBar1.panel2 = mode_text(session.DirectoryMode);
  show_directory_fields(form, active_directory);
  session.Error_Status_Text = "Can't Find " + form.DomName.text.get() + " Domain";
  if (!active_directory)
    return Load_NT_Domain(session);
  const bool loaded = Load_AD_Domain(session);
  session.multi_user.btn_Showusers.visible = true;
  session.groups.btn_showGrpusers.visible = true;
  return loaded;
}

}  // namespace

bool Select_Domain(Session& session, std::string_view name) {
  session::Form1& form = session.form1;
  session.UserCount = 0;
  session.GroupCount = 0;
  form.DomName.text = std::string(name);
  if (name.empty())
    return false;
  form.mouse_pointer = 11;
  Clear_UM(session);
  session.DomainName = form.DomName.text;
  bool loaded = false;
  base::Trap trap(session::is_debug(session));
  trap([&] { loaded = load_domain(session); });
  session.CurrentUser.reset();
  session.CurrentGroup.reset();
  form.mouse_pointer = 0;
  if (!loaded) {
    if (trap.number() != 0)
      form.StatusBar1.panel1 = session.Error_Status_Text;
    return false;
  }
  form.StatusBar1.panel1 = "Number of Users:" + base::to_text(session.UserCount) +
                           "  Number of Groups:" + base::to_text(session.GroupCount);
  return true;
}

void Clear_UM(Session& session) {
  session::Form1& form = session.form1;
  if (!read_load_options(session).SkipGroups) {
    while (!form.ListView4.empty()) {
      base::Trap trap;
      if (!trap([&] {
            controls::move_row(form.ListView4, form.ListView4.at(form.ListView4.size() - 1), form.ListView3);
          }))
        break;
    }
  }
  for (controls::CheckBox* box : {&form.chkMustChange, &form.chkCantChange, &form.chkAcctLockedOut,
                                  &form.chkPwdNever, &form.chkAcctDisabled}) {
    box->value = 0;
  }
  for (controls::TextBox* field :
       {&form.USERID, &form.UM_Full_Name, &form.UM_Description, &form.UM_First, &form.UM_Last,
        &form.UM_Initails, &form.UM_Office, &form.UM_MailAddress, &form.UM_Logon_Name, &form.UM_PreW2K,
        &form.UM_Profile_Dir, &form.UM_Home_Dir, &form.UM_Logon_Script, &form.AccExpires}) {
    field->text = std::string();
  }
  for (controls::TextBox& field : form.Custom_Value)
    field.text = std::string();
  form.UM_Drive_Letter.text = std::string();
  form.UM_W2KDomain_Name.text = "@" + session.DomainName;
  form.ListView4.clear();
}

}  // namespace twk::directory
