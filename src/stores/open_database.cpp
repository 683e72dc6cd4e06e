#include "stores/open_database.hpp"

#include "base/errors.hpp"
#include "session/loaded_domain.hpp"
#include "session/log_tab.hpp"
#include "session/session.hpp"
#include "stores/conversion.hpp"
#include "stores/database_files.hpp"
#include "stores/side_tables.hpp"
#include "stores/site_store.hpp"
#include "stores/template_store.hpp"

namespace twk::stores {

using session::Session;

void open_database(Session& session) {
  fill_wts_rows(session);
  session.SerialTokenUsed = false;
  session.AltIdTried = false;
  session.TemplateLogonHours.assign(platform::kLogonHoursSize, 255);
  session.domain.loading = std::string("Checking .dat versions...");
  convert_old_database(session);
  session.domain.loading = std::string("Loading Databases...");
  load_database(session);
}

void load_database(Session& session) {
  load_site_names(session);
  load_template_names(session);
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
