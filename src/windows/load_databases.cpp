#include "windows/load_databases.hpp"

#include "session/log_tab.hpp"
#include "session/multi_user.hpp"
#include "session/session.hpp"
#include "stores/database_files.hpp"
#include "stores/side_tables.hpp"
#include "windows/site_tab.hpp"
#include "windows/template_tab.hpp"

namespace twk::windows {

void Load_Databases(session::Session& session) {
  session.multi_user.Multi_Site.clear_items();
  session.multi_user.Multi_Template.clear_items();
  load_sites(session);
  load_templates(session);
  session.platform.dialogs.DoEvents();
  base::Trap trap;
  trap([&session] {
    if (!session.platform.files.exists(stores::database_path(session, stores::kMailFile)))
      stores::create_mail_table(session);
    stores::load_mail_table(session);
    stores::load_w2k_table(session);
    stores::load_wts_table(session);
  });
  if (trap.number() != 0)
    session::LOG_TAB(session, session::kYellow, "Cannot read the property tables: " + trap.description());
}

}  // namespace twk::windows
