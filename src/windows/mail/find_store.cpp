#include "windows/mail/find_store.hpp"

#include "base/errors.hpp"
#include "base/text.hpp"
#include "mail/find_store.hpp"
#include "windows/state/desktop.hpp"
#include "windows/state/form1.hpp"
#include "windows/state/hourglass.hpp"

namespace twk::windows {
namespace {

constexpr const char* kTitle = "Find Store";

void tell(Desktop& session, const std::string& text, const char* title) {
  session.platform.dialogs.MsgBox(text, platform::Buttons::kOk, platform::Icon::kExclamation, title);
}

std::string server_of(const Form1& form) {
  return std::string(base::trim(form.EXSERVER.text.get()));
}

void fill(controls::ComboBox& list, const std::vector<std::string>& names) {
  list.clear();
  for (const std::string& name : names)
    list.add_item(name);
  list.select(names.empty() ? -1 : 0);
}

void fill_stores(Desktop& session) {
  Form1& form = session.form1;
  std::vector<std::string> stores;
  base::Trap trap;
  if (!form.EXSite.text.get().empty()) {
    trap([&] {
      stores = mail::find_stores(session, server_of(form), form.EXorg.text.get(), form.EXSite.text.get());
    });
  }
  fill(form.Mail_Store, stores);
  if (trap.number() != 0)
    tell(session, "The stores cannot be read.\r\n" + trap.description(), kTitle);
}

}  // namespace

void Find_Store_Click(Desktop& session) {
  Form1& form = session.form1;
  if (!session::is_active_directory(session))
    return tell(session, "Not Available in WinNT mode. Windows 2000 only", "WIN2000 only");
  if (!form.EXSite.enabled) {
    session.status.panel1 = "Edit the site to choose its store.";
    return;
  }
  const std::string server = server_of(form);
  if (server.empty())
    return tell(session, "Enter the name of the Exchange server first.", kTitle);
  mail::StorageGroups found;
  base::Trap trap;
  trap([&] {
    const Hourglass hourglass(form);
    found = mail::find_storage_groups(session, server, std::string(base::trim(form.EXorg.text.get())));
  });
  if (!found.organisation.empty())
    form.EXorg.text = found.organisation;
  if (found.names.empty()) {
    return tell(
        session,
        "No storage group of an Exchange 2000 server " + server + " was found.\r\n" + trap.description(),
        kTitle);
  }
  fill(form.EXSite, found.names);
  fill_stores(session);
}

void storage_group_chosen(Desktop& session) {
  const Form1& form = session.form1;
  const bool newer = form.EXH5.index == 1 && session::is_active_directory(session);
  if (newer && form.EXSite.list_index() >= 0)
    fill_stores(session);
}

}  // namespace twk::windows
