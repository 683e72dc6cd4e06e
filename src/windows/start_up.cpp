#include "windows/start_up.hpp"

#include "base/errors.hpp"
#include "base/text.hpp"
#include "directory/loading/select_domain.hpp"
#include "directory/operations.hpp"
#include "platform/adsi.hpp"
#include "session/loaded_database.hpp"
#include "session/loaded_domain.hpp"
#include "session/settings.hpp"
#include "stores/open_database.hpp"
#include "windows/controls_defaults.hpp"
#include "windows/load_databases.hpp"
#include "windows/load_domain.hpp"
#include "windows/read_settings.hpp"
#include "windows/refresh.hpp"
#include "windows/site_tab.hpp"
#include "windows/state/desktop.hpp"
#include "windows/state/form1.hpp"
#include "windows/state/import_windows.hpp"
#include "windows/template_tab.hpp"

namespace twk::windows {
namespace {

constexpr int kLeastScreenWidth = 1024;

void read_all_settings(Desktop& session) {
  session.domain.loading = std::string("Loading Registry Keys...");
  read_settings(session);
}

void show_first_run(Desktop& session) {
  session.form1.SSTab1 = tab::kSetup;
  session.form1.StatusBar1.panel1 = "Must Enter Setup Details...";
  session.form1.TreeView1.clear();
  session.form1.TreeView1.add(nullptr, {}, session.DomainName, "Domain");
}

/// Also true when the group cannot be read.
bool is_domain_admin(Desktop& session) {
  session.domain.loading = std::string("Checking Admin Rights...");
  const std::string user = session.platform.environment.variable("USERNAME");
  const platform::ObjectPtr admins =
      session.platform.directory.GetObject(platform::winnt_path(session.DomainName, "Domain Admins"));
  if (admins->IsMember(platform::winnt_path(session.DomainName, user)))
    return true;
  session.platform.dialogs.MsgBox(
      user +
          ": Is Not a Member of the Domain Admin Group.\r\n\r\n"
          "You Must Be a Member of the 'Domain Admin' Group To \r\nRun this Application.",
      platform::Buttons::kOk, platform::Icon::kCritical, "Access Control Error");
  return false;
}

/// False when the person may not continue.
bool open_domain(Desktop& session) {
  session.DomainName = base::trim(session.DomainName);
  session.domain.loading = std::string("Retrieving Domain Data...");
  if (!load_domain(session, session.DomainName)) {
    session.form1.StatusBar1.panel1 = std::string(directory::kNoController);
    return true;
  }
  // A tick is 1 and never -1: the preference is kept and shown, and costs no directory call.
  return session.form1.Domain_Admin.value != -1 || is_domain_admin(session);
}

void start_databases(Desktop& session) {
  prepare_controls(session);
  stores::open_database(session);
  show_databases(session);
  const auto clear_tabs = [&session] {
    Clear_Site(session);
    Clear_TT(session);
  };
  session.form1.records_taken = session.database.taken.watch(clear_tabs);
  clear_tabs();
  controls::ListView& sites = session.form1.ListView2;
  if (sites.empty())
    return;
  sites.select(&sites.at(0));
  ListView2_Click(session);
}

}  // namespace

bool screen_is_wide_enough(platform::Dialogs& dialogs, int width) {
  if (width >= kLeastScreenWidth)
    return true;
  dialogs.MsgBox("Video Resoultion must be 1024x768 or greater\r\nto run this program.",
                 platform::Buttons::kOk, platform::Icon::kCritical, "TWK - Video Resolution");
  return false;
}

StartUp start_session(Desktop& session) {
  session.splash.visible = true;
  read_all_settings(session);
  session.domain.loading = std::string("Retrieving Domain Names...");
  for (const std::string& domain : directory::Load_Domain_List(session))
    session.form1.DomName.add_item(domain);
  if (session.DomainName == session::kNoDomain) {
    show_first_run(session);
  } else if (!open_domain(session)) {
    return StartUp::kNotPermitted;
  }
  start_databases(session);
  show_managed_ou(session);
  session.splash.visible = false;
  if (session::is_debug(session))
    session.form1.StatusBar1.panel1 = "Debug Mode.";
  return StartUp::kReady;
}

void start_session_without_domain(Desktop& session) {
  read_all_settings(session);
  start_databases(session);
}

}  // namespace twk::windows
