#include "windows/refresh.hpp"

#include "base/text.hpp"
#include "directory/loading/select_domain.hpp"
#include "windows/account/details_tab.hpp"
#include "windows/load_databases.hpp"
#include "windows/load_domain.hpp"
#include "windows/site_tab.hpp"
#include "windows/state/desktop.hpp"
#include "windows/state/form1.hpp"
#include "windows/state/group_windows.hpp"
#include "windows/state/multi_user.hpp"
#include "windows/template_tab.hpp"

namespace twk::windows {
namespace {

void clear_domain(Desktop& session) {
  Form1& form = session.form1;
  Clear_UM(session);
  Clear_TT(session);
  Clear_Site(session);
  form.TreeView1.clear();
  for (controls::ListView* const list :
       {&form.ListView3, &form.ListView4, &form.ListView5, &form.ListView6, &session.groups.ListView1,
        &session.groups.NotMembers, &session.multi_user.ListView2, &session.multi_user.ListView3,
        &session.multi_user.ListView4}) {
    list->clear();
  }
}

void load_typed_domain(Desktop& session) {
  session.DomainName = base::trim(session.form1.DomName.text.get());
  if (!load_domain(session, session.DomainName))
    session.form1.StatusBar1.panel1 = std::string(directory::kNoController);
}

void load_databases(Desktop& session) {
  Form1& form = session.form1;
  for (controls::ComboBox* const box : {&form.NUsitename, &form.nutemplate, &form.templatelst,
                                        &session.multi_user.Multi_Site, &session.multi_user.Multi_Template}) {
    box->clear();
  }
  form.ListView2.clear();
  windows::Load_Databases(session);
}

}  // namespace

void Refresh(Desktop& session) {
  clear_domain(session);
  load_typed_domain(session);
  load_databases(session);
  controls::TreeView& tree = session.form1.TreeView1;
  tree.select(tree.first());
  show_managed_ou(session);
}

void show_managed_ou(Desktop& session) {
  controls::MenuItem& entry = session.form1.mnuOption[5];
  entry.enabled = true;
  entry.tool_tip = session.ManagedOU.empty()
                       ? std::string()
                       : "Only " + session.ManagedOU + " is shown. Choose this to show the whole domain.";
}

}  // namespace twk::windows
