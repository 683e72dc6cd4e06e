#include "windows/load_databases.hpp"

#include "stores/open_database.hpp"
#include "windows/site_tab.hpp"
#include "windows/state/desktop.hpp"
#include "windows/state/multi_user.hpp"
#include "windows/template_tab.hpp"

namespace twk::windows {

void show_databases(Desktop& session) {
  session.multi_user.Multi_Site.clear_items();
  session.multi_user.Multi_Template.clear_items();
  list_sites(session);
  list_templates(session);
}

void Load_Databases(Desktop& session) {
  stores::load_database(session);
  show_databases(session);
}

}  // namespace twk::windows
