#include "stores/load_databases.hpp"

#include "session/session.hpp"
#include "stores/record_file.hpp"
#include "stores/side_tables.hpp"
#include "stores/site_store.hpp"
#include "stores/template_store.hpp"

namespace twk::stores {

void Load_Databases(session::Session& session) {
  session.multi_user.Multi_Site.clear_items();
  session.multi_user.Multi_Template.clear_items();
  load_sites(session);
  load_templates(session);
  session.platform.dialogs.DoEvents();
  base::Trap trap;
  trap([&session] {
    if (!session.platform.files.exists(database_path(session, kMailFile)))
      create_mail_table(session);
    load_mail_table(session);
    load_w2k_table(session);
    load_wts_table(session);
  });
  if (trap.number() != 0)
    session::LOG_TAB(session, session::kYellow, "Cannot read the property tables: " + trap.description());
}

}  // namespace twk::stores
