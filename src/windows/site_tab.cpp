#include "windows/site_tab.hpp"

#include "base/text.hpp"
#include "session/loaded_database.hpp"
#include "stores/site_store.hpp"
#include "windows/account/unsaved.hpp"
#include "windows/state/desktop.hpp"
#include "windows/state/form1.hpp"
#include "windows/state/hourglass.hpp"
#include "windows/state/multi_user.hpp"

namespace twk::windows {
namespace {

/// Key of the row of a site that has not been saved yet: the last one. No other row has a key.
constexpr std::string_view kNewRow = "NewSite";

/// Runs `change` on each field of a site.
template <typename Change>
void for_each_field(Form1& form1, Change change) {
  for (controls::TextBox* const field : {&form1.NTSERVER, &form1.EXSERVER, &form1.EXorg})
    change(*field);
  for (controls::ComboBox* const field : {&form1.EXSite, &form1.Mail_Store})
    change(*field);
}

/// What `Find_Store` offered belongs to the server of one site.
void forget_stores(Form1& form1) {
  form1.EXSite.clear_items();
  form1.Mail_Store.clear_items();
}

bool is_exchange_2000(const Form1& form1) {
  return form1.EXH5.index == 1;
}

controls::ListRow* new_row(Form1& form1) {
  controls::ListView& sites = form1.ListView2;
  if (sites.empty())
    return nullptr;
  controls::ListRow& last = sites.at(sites.size() - 1);
  return last.key == kNewRow ? &last : nullptr;
}

void drop_new_row(Form1& form1) {
  if (const controls::ListRow* const row = new_row(form1))
    form1.ListView2.remove(*row);
}

std::string selected_name(Form1& form1) {
  const controls::ListRow* const row = form1.ListView2.selected();
  return row == nullptr ? std::string() : std::string(base::trim(row->text));
}

void empty_fields(Form1& form1) {
  for_each_field(form1, [](auto& field) { field.text = std::string(); });
  forget_stores(form1);
}

void unlock_fields(Form1& form1) {
  for_each_field(form1, [](auto& field) {
    field.enabled = true;
    field.paint = controls::Paint::kEditing;
  });
  form1.Save_Site.enabled = true;
  form1.EXH5.enabled = true;
  form1.New_Site.enabled = false;
  form1.Delete_site.enabled = false;
  form1.Edit_Site.enabled = false;
  form1.Find_Store.enabled = is_exchange_2000(form1);
}

/// Locks the fields and sets the buttons for a tab on which nothing is edited.
void show_chosen_site(Desktop& session) {
  Form1& form1 = session.form1;
  for_each_field(form1, [](auto& field) {
    field.enabled = false;
    field.paint = controls::Paint::kDefault;
  });
  const bool chosen = !selected_name(form1).empty();
  form1.EXH5.enabled = false;
  form1.Find_Store.enabled = false;
  form1.Save_Site.enabled = false;
  form1.New_Site.enabled = true;
  form1.Edit_Site.enabled = chosen;
  form1.Delete_site.enabled = chosen;
  form1.New_Site_Name.text = std::string();
  form1.New_Site_Name.visible = false;
  session.EditingSite = false;
}

void show_kind(Form1& form1, bool exchange_2000) {
  form1.EXH5.index = exchange_2000 ? 1 : 0;
  form1.Mail_Store.visible = exchange_2000;
  form1.Find_Store.visible = exchange_2000;
  if (exchange_2000) {
    form1.Label42.caption = "Mailbox Store";
    form1.Label13.caption = "Storage Group";
  } else {
    forget_stores(form1);
    form1.Label13.caption = "Exchange Site";
    form1.Label14.caption = "Exchange Org";
  }
}

void show_site(Form1& form1, const records::SiteRecord& site) {
  forget_stores(form1);
  show_kind(form1, site.Exchange2000);
  form1.NTSERVER.text = std::string(base::trim(site.NTServer));
  form1.EXSERVER.text = std::string(base::trim(site.ExchangeServer));
  form1.EXSite.text = std::string(base::trim(site.ExchangeSite));
  form1.EXorg.text = std::string(base::trim(site.ExchangeOrg));
  form1.Mail_Store.text = std::string(base::trim(site.MailStore));
}

records::SiteRecord site_of_fields(const Form1& form1) {
  return {.Exchange2000 = is_exchange_2000(form1),
          .Name = form1.New_Site_Name.text,
          .NTServer = form1.NTSERVER.text,
          .ExchangeServer = form1.EXSERVER.text,
          .ExchangeOrg = form1.EXorg.text,
          .ExchangeSite = form1.EXSite.text,
          .MailStore = form1.Mail_Store.text};
}

void list_new_site(Desktop& session, const std::string& name) {
  Form1& form1 = session.form1;
  controls::ListRow* row = new_row(form1);
  if (row == nullptr)
    row = &form1.ListView2.add({}, {}, "SITE");
  form1.ListView2.set_key(*row, {});
  form1.ListView2.set_text(*row, name);
  form1.ListView2.select(row);
  form1.NUsitename.add_item(name);
  session.multi_user.Multi_Site.add_item(name);
}

/// The row of the site that is being edited.
controls::ListRow* edited_row(Desktop& session) {
  controls::ListView& sites = session.form1.ListView2;
  if (!session.EditingSite)
    return new_row(session.form1);
  const auto rows = sites.find_text(base::trim(session.ActiveSite.Name));
  return rows.empty() ? nullptr : &sites.at(sites.place_of(*rows.front()));
}

/// True when the tab is open for changes and holds something that is not stored.
bool is_site_unsaved(Desktop& session) {
  if (!session.form1.Save_Site.enabled.get())
    return false;
  const records::SiteRecord before = session.EditingSite ? session.ActiveSite : records::SiteRecord{};
  const records::SiteRecord now = site_of_fields(session.form1);
  const controls::ListRow* const row = edited_row(session);
  return (!session.EditingSite && row != nullptr && !base::trim(row->text).empty()) ||
         (session.EditingSite && now.Exchange2000 != before.Exchange2000) ||
         base::trim(now.NTServer) != base::trim(before.NTServer) ||
         base::trim(now.ExchangeServer) != base::trim(before.ExchangeServer) ||
         base::trim(now.ExchangeOrg) != base::trim(before.ExchangeOrg) ||
         base::trim(now.ExchangeSite) != base::trim(before.ExchangeSite) ||
         base::trim(now.MailStore) != base::trim(before.MailStore);
}

}  // namespace

bool may_leave_site(Desktop& session) {
  if (!is_site_unsaved(session))
    return true;
  const controls::ListRow* const row = edited_row(session);
  const std::string name(base::trim(row == nullptr ? std::string_view() : std::string_view(row->text)));
  return may_leave(session, name.empty() ? "the new site" : "the changes to the site " + name, [&] {
    // A save goes to the selected row, which a person may have left.
    if (controls::ListRow* const edited = edited_row(session))
      session.form1.ListView2.select(edited);
    Save_Site(session);
    return !session.form1.Save_Site.enabled.get();
  });
}

void list_sites(Desktop& session) {
  Form1& form1 = session.form1;
  for (const std::string& name : session.database.sites) {
    form1.NUsitename.locked = true;
    form1.ListView2.add({}, name, "SITE");
    form1.NUsitename.add_item(name);
    session.multi_user.Multi_Site.add_item(name);
  }
}

void Clear_Site(Desktop& session) {
  drop_new_row(session.form1);
  session.form1.ListView2.select(nullptr);
  empty_fields(session.form1);
  show_chosen_site(session);
}

void ListView2_Click(Desktop& session) {
  Form1& form1 = session.form1;
  controls::ListRow* const row = form1.ListView2.selected();
  if (row == nullptr || row == new_row(form1) || base::trim(row->text).empty())
    return;
  if (!may_leave_site(session)) {
    form1.ListView2.select(edited_row(session));
    return;
  }
  form1.ListView2.select(row);
  drop_new_row(form1);
  show_chosen_site(session);
  const stores::StoreOutcome loaded = stores::load_site(session, row->text);
  if (loaded.done)
    show_site(form1, session.ActiveSite);
  stores::tell(session, loaded);
  form1.Find_Store.enabled = is_exchange_2000(form1);
}

void New_Site(Desktop& session) {
  Form1& form1 = session.form1;
  drop_new_row(form1);
  empty_fields(form1);
  unlock_fields(form1);
  session.EditingSite = false;
  form1.New_Site_Name.text = std::string();
  form1.ListView2.select(&form1.ListView2.add(std::string(kNewRow), {}, "SITE"));
}

void site_name_edited(Desktop& session, std::string_view typed) {
  Form1& form1 = session.form1;
  controls::ListRow* const row = new_row(form1);
  if (row == nullptr)
    return;
  if (std::string refusal = stores::site_name_refusal(session, typed); !refusal.empty()) {
    Clear_Site(session);
    stores::tell(session, stores::refused(std::move(refusal)));
    return;
  }
  const std::string name(base::trim(typed));
  form1.ListView2.set_text(*row, name);
  form1.New_Site_Name.text = name;
}

void Edit_Site(Desktop& session) {
  const std::string name = selected_name(session.form1);
  if (name.empty())
    return;
  // A save over the live record starts from its own fields, not from those of a deleted namesake.
  try {
    if (const auto live = stores::live_site(session, name))
      show_site(session.form1, *live);
  } catch (const base::RuntimeError& failure) {
    stores::tell(session, stores::file_failure(stores::kSiteFile, failure));
    return;
  }
  session.status.panel1 = "Edit Site...";
  session.EditingSite = true;
  unlock_fields(session.form1);
}

void Save_Site(Desktop& session) {
  Form1& form1 = session.form1;
  if (session.EditingSite)
    form1.New_Site_Name.text = selected_name(form1);
  const WorkingStatus saving(form1, "Saving Site...");
  const records::SiteRecord site = site_of_fields(form1);
  const stores::StoreOutcome outcome =
      stores::save_site(session, site, session.EditingSite ? stores::SaveAs::kLive : stores::SaveAs::kNew);
  if (outcome.done && !session.EditingSite)
    list_new_site(session, std::string(base::trim(site.Name)));
  stores::tell(session, outcome);
  if (!outcome.done)
    return;
  show_chosen_site(session);
  form1.NUsitename.locked = false;
}

void Delete_site(Desktop& session) {
  Form1& form1 = session.form1;
  const std::string name = selected_name(form1);
  if (name.empty() || (form1.Confirm_Deletes.on() && !stores::agrees_to_delete_site(session)))
    return;
  const WorkingStatus deleting(form1, "Deleting Site...");
  const stores::StoreOutcome outcome = stores::delete_site(session, name);
  if (outcome.done) {
    form1.NUsitename.remove_item(name);
    session.multi_user.Multi_Site.remove_item(name);
    form1.ListView2.remove(*form1.ListView2.selected());
    Clear_Site(session);
  }
  stores::tell(session, outcome);
}

void Site_Cancel(Desktop& session) {
  session.EditingSite = false;
  Clear_Site(session);
}

void Site_Escape(Desktop& session) {
  if (may_leave_site(session))
    Site_Cancel(session);
}

void EXH5_Click(Desktop& session) {
  Form1& form1 = session.form1;
  show_kind(form1, is_exchange_2000(form1));
  form1.Find_Store.enabled = is_exchange_2000(form1);
}

}  // namespace twk::windows
