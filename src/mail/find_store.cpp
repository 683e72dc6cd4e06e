#include "mail/find_store.hpp"

#include <optional>
#include <vector>

#include "base/errors.hpp"
#include "base/text.hpp"
#include "directory/names.hpp"
#include "mail/create_mailbox2000.hpp"
#include "platform/ldap_text.hpp"
#include "session/form1.hpp"
#include "session/hourglass.hpp"
#include "session/session.hpp"

namespace twk::mail {
namespace {

using platform::ObjectPtr;
using session::Session;

constexpr const char* kTitle = "Find Store";

void tell(Session& session, const std::string& text, const char* title) {
  session.platform.dialogs.MsgBox(text, platform::Buttons::kOk, platform::Icon::kExclamation, title);
}

std::string path_of(const Session& session, std::string_view dn) {
  return "LDAP://" + session.DomainName + "/" + std::string(dn);
}

/// Names of an object's children of a class, without their type.
std::vector<std::string> children(Session& session, const std::string& dn, const std::string& object_class) {
  std::vector<std::string> names;
  const std::vector<std::string> classes{object_class};
  session.platform.directory.GetObject(path_of(session, dn))->enumerate(classes, [&](const ObjectPtr& child) {
    names.push_back(platform::plain_name(child->Name()));
    return true;
  });
  return names;
}

/// What is below a server of the tab's fields, see `store_path`.
std::string place(const Session& session, std::string_view organisation, std::string_view storage_group) {
  return store_path(organisation, base::trim(session.form1.EXSERVER.text.get()), storage_group, {},
                    directory::domain_distinguished_name(session.DomainName));
}

/// The organisation that was typed, or all of them.
std::vector<std::string> organisations(Session& session) {
  const std::string typed(base::trim(session.form1.EXorg.text.get()));
  if (!typed.empty())
    return {typed};
  return children(session,
                  "CN=Microsoft Exchange,CN=Services,CN=Configuration," +
                      directory::domain_distinguished_name(session.DomainName),
                  "msExchOrganizationContainer");
}

/// The storage groups of the server, in the first organisation that has it. Raises the last failure when none
/// has.
std::vector<std::string> storage_groups(Session& session) {
  std::optional<base::RuntimeError> failure;
  for (const std::string& organisation : organisations(session)) {
    base::Trap trap;
    std::vector<std::string> groups;
    if (trap([&] { groups = children(session, place(session, organisation, {}), "msExchStorageGroup"); })) {
      session.form1.EXorg.text = organisation;
      return groups;
    }
    failure.emplace(trap.number(), trap.description());
  }
  if (failure)
    throw base::RuntimeError(*failure);
  return {};
}

void fill(controls::ComboBox& list, const std::vector<std::string>& names) {
  list.clear();
  for (const std::string& name : names)
    list.add_item(name);
  list.select(names.empty() ? -1 : 0);
}

void fill_stores(Session& session) {
  session::Form1& form = session.form1;
  std::vector<std::string> stores;
  base::Trap trap;
  if (!form.EXSite.text.get().empty()) {
    trap([&] {
      stores = children(session, place(session, form.EXorg.text.get(), form.EXSite.text.get()),
                        "msExchPrivateMDB");
    });
  }
  fill(form.Mail_Store, stores);
  if (trap.number() != 0)
    tell(session, "The stores cannot be read.\r\n" + trap.description(), kTitle);
}

}  // namespace

void Find_Store_Click(Session& session) {
  session::Form1& form = session.form1;
  if (!session::is_active_directory(session))
    return tell(session, "Not Available in WinNT mode. Windows 2000 only", "WIN2000 only");
  if (!form.EXSite.enabled) {
    session.status.panel1 = "Edit the site to choose its store.";
    return;
  }
  if (base::trim(form.EXSERVER.text.get()).empty())
    return tell(session, "Enter the name of the Exchange server first.", kTitle);
  std::vector<std::string> groups;
  base::Trap trap;
  const bool asked = trap([&] {
    const session::Hourglass hourglass(form);
    groups = storage_groups(session);
  });
  if (!asked || groups.empty()) {
    return tell(session,
                "No storage group of an Exchange 2000 server " +
                    std::string(base::trim(form.EXSERVER.text.get())) + " was found.\r\n" +
                    trap.description(),
                kTitle);
  }
  fill(form.EXSite, groups);
  fill_stores(session);
}

void storage_group_chosen(Session& session) {
  const session::Form1& form = session.form1;
  const bool newer = form.EXH5.index == 1 && session::is_active_directory(session);
  if (newer && form.EXSite.list_index() >= 0)
    fill_stores(session);
}

}  // namespace twk::mail
