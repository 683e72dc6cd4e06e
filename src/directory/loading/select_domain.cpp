#include "directory/loading/select_domain.hpp"

#include "base/errors.hpp"
#include "base/text.hpp"
#include "directory/custom_fields.hpp"
#include "directory/loading/ad_load.hpp"
#include "directory/loading/nt_load.hpp"
#include "directory/operations.hpp"
#include "directory/user_details.hpp"
#include "session/form1.hpp"
#include "session/group_windows.hpp"
#include "session/hourglass.hpp"
#include "session/session.hpp"
#include "session/settings.hpp"

namespace twk::directory {
namespace {

using session::Session;

std::string mode_text(std::int32_t mode) {
  if (mode == session::kNativeMode)
    return "2000-Native Mode";
  return mode == session::kMixedMode ? "2000-Mixed Mode" : "WinNT:";
}

/// The fields of the details tab that a WinNT account lacks.
void show_directory_fields(Session& session, bool visible) {
  session::Form1& form = session.form1;
  for (controls::TextBox* field :
       {&form.UM_Initails, &form.UM_First, &form.UM_Last, &form.UM_Office, &form.UM_MailAddress,
        &form.UM_Logon_Name, &form.UM_W2KDomain_Name, &form.UM_PreW2K}) {
    field->visible = visible;
  }
  show_custom_fields(session);
  for (std::size_t i = 0; !visible && i < form.Custom_Value.size(); ++i) {
    form.Custom_Label.at(i).visible = false;
    form.Custom_Value.at(i).visible = false;
  }
}

bool load_domain(Session& session) {
  session::Form1& form = session.form1;
  session.DirectoryMode = Determine_Mode(session, session.DomainName);
  const bool active_directory = session::is_active_directory(session);
  session.status.panel2 = mode_text(session.DirectoryMode);
  show_directory_fields(session, active_directory);
  session.Error_Status_Text = "Can't Find " + form.DomName.text.get() + " Domain";
  if (!active_directory)
    return Load_NT_Domain(session);
  const bool loaded = Load_AD_Domain(session);
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
  const session::Hourglass hourglass(form);
  Clear_UM(session);
  session.DomainName = form.DomName.text;
  bool loaded = false;
  base::Trap trap(session::is_debug(session));
  trap([&] { loaded = load_domain(session); });
  session.CurrentUser.reset();
  session.CurrentGroup.reset();
  if (!loaded) {
    if (trap.number() != 0)
      session.status.panel1 = session.Error_Status_Text;
    return false;
  }
  session.status.panel1 = "Number of Users:" + base::to_text(session.UserCount) +
                          "  Number of Groups:" + base::to_text(session.GroupCount);
  return true;
}

}  // namespace twk::directory
