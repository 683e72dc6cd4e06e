#include "stores/site_store.hpp"

#include "base/text.hpp"
#include "records/record_file.hpp"
#include "session/form1.hpp"
#include "session/hourglass.hpp"
#include "session/log_tab.hpp"
#include "session/multi_user.hpp"
#include "session/session.hpp"
#include "stores/database_files.hpp"
#include "stores/typed_text.hpp"

namespace twk::stores {
namespace {

using session::Form1;
using session::Session;

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
void show_browsing(Session& session) {
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

/// The first live record of a name.
records::RecordSearch find_live(records::RecordFile& file, std::string_view name) {
  const std::string wanted = folded_name(name);
  return file.search([&wanted](std::string_view bytes) {
    return !records::is_deleted(bytes) && folded_name(records::decode_site(bytes).Name) == wanted;
  });
}

bool is_taken(Form1& form1, std::string_view name) {
  for (const controls::ListRow* const row : form1.ListView2.find_text(name)) {
    if (row->key.empty())
      return true;
  }
  return false;
}

void refuse_new_name(Session& session, std::string_view status) {
  Clear_Site(session);
  session.platform.dialogs.beep();
  session.status.panel1 = std::string(status);
}

void warn(Session& session, std::string_view text, std::string_view title) {
  session.platform.dialogs.MsgBox(text, platform::Buttons::kOk, platform::Icon::kExclamation, title);
}

/// Tells the person what keeps the fields from being saved.
bool can_save(Session& session, std::string_view name) {
  Form1& form1 = session.form1;
  if (form1.NTSERVER.text.get().empty() || name.empty()) {
    warn(session, "Must Enter a Site Name, And a Home Server Name", "Incorect entry");
    return false;
  }
  if (refuses(session, record_refusal,
              {name, form1.NTSERVER.text.get(), form1.EXSERVER.text.get(), form1.EXSite.text.get(),
               form1.EXorg.text.get(), form1.Mail_Store.text.get()}))
    return false;
  if (!session.EditingSite && is_taken(form1, name)) {
    warn(session, "Site Name " + std::string(name) + " Already Exist \r\nChange Site Name.",
         "Site Name Conflict...");
    return false;
  }
  const int filled = static_cast<int>(!form1.EXSERVER.text.get().empty()) +
                     static_cast<int>(!form1.EXSite.text.get().empty()) +
                     static_cast<int>(!form1.EXorg.text.get().empty());
  if (filled == 1 || filled == 2) {
    warn(session, "Must enter all three vaules for exchange.", "Incorrect Exchange Settings");
    return false;
  }
  return true;
}

records::SiteRecord record_of_fields(const Form1& form1, std::string_view name) {
  records::SiteRecord record;
  record.Exchange2000 = is_exchange_2000(form1);
  record.Name = name;
  record.NTServer = form1.NTSERVER.text;
  record.ExchangeServer = form1.EXSERVER.text;
  record.ExchangeOrg = form1.EXorg.text;
  record.ExchangeSite = form1.EXSite.text;
  if (record.Exchange2000)
    record.MailStore = form1.Mail_Store.text;
  return record;
}

/// False when there is no live record of that name.
bool replace_live(records::RecordFile& file, std::string_view name, const std::string& bytes) {
  const records::RecordFile::NumbersHold held = file.hold_numbers();
  const records::RecordSearch live = find_live(file, name);
  if (live.found)
    file.write(live.number, bytes);
  return live.found;
}

void write_record(Session& session, std::string_view name) {
  const std::string bytes = records::encode_site(record_of_fields(session.form1, name));
  records::RecordFile file = records::RecordFile::open(
      session.platform.files, database_path(session, kSiteFile), records::kSiteRecordSize);
  if (session.EditingSite && replace_live(file, name, bytes))
    return;
  file.append(bytes);
}

void list_new_site(Session& session, const std::string& name) {
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

void mark_record_deleted(Session& session, std::string_view name) {
  records::RecordFile file = records::RecordFile::open(
      session.platform.files, database_path(session, kSiteFile), records::kSiteRecordSize);
  const records::RecordFile::NumbersHold held = file.hold_numbers();
  records::RecordSearch live = find_live(file, name);
  if (!live.found)
    return;
  records::mark_deleted(live.bytes);
  file.write(live.number, live.bytes);
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

records::RecordFile open_to_read(Session& session) {
  return records::RecordFile::open_read(session.platform.files, database_path(session, kSiteFile),
                                        records::kSiteRecordSize);
}

/// Reports once that a deleted site is loaded instead of the current one of that name.
void tell_shadow(Session& session, records::RecordFile& file, std::string_view name) {
  if (!find_live(file, name).found || !session.told_shadows.insert(folded_name(name)).second)
    return;
  session::LOG_TAB(session, session::kYellow,
                   "Site.dat holds a deleted site \"" + std::string(base::trim(name)) +
                       "\" before the current one, and its values are used. Compact the database.");
}

/// False, with the tab unchanged, when there is no such site.
bool load(Session& session, std::string_view name) {
  const std::string_view wanted = base::trim(name);
  records::RecordFile file = open_to_read(session);
  const records::RecordSearch found = file.search(
      [&](std::string_view bytes) { return base::trim(records::decode_site(bytes).Name) == wanted; });
  if (found.found && records::is_deleted(found.bytes))
    tell_shadow(session, file, wanted);
  if (found.number > 0)
    session.ActiveSite = records::decode_site(found.bytes);
  if (found.found)
    show_site(session.form1, session.ActiveSite);
  return found.found;
}

}  // namespace

void Loadsite(Session& session, std::string_view name) {
  try {
    load(session, name);
  } catch (const base::RuntimeError& failure) {
    report_file_error(session, kSiteFile, failure);
  }
}

void require_site(Session& session, std::string_view name) {
  if (!load(session, name))
    raise_no_record(session, kSiteFile, "site", name);
}

void load_sites(Session& session) {
  Form1& form1 = session.form1;
  base::Trap trap;
  trap([&] {
    open_to_read(session).search([&](std::string_view bytes) {
      if (records::is_deleted(bytes))
        return false;
      const std::string name(base::trim(records::decode_site(bytes).Name));
      form1.NUsitename.locked = true;
      form1.ListView2.add({}, name, "SITE");
      form1.NUsitename.add_item(name);
      session.multi_user.Multi_Site.add_item(name);
      return false;
    });
  });
  if (trap.number() != 0)
    session::LOG_TAB(session, session::kYellow, "Cannot read Site.dat: " + trap.description());
}

void Clear_Site(Session& session) {
  drop_new_row(session.form1);
  session.form1.ListView2.select(nullptr);
  empty_fields(session.form1);
  show_browsing(session);
}

void ListView2_Click(Session& session) {
  Form1& form1 = session.form1;
  controls::ListRow* const row = form1.ListView2.selected();
  if (row == nullptr || row == new_row(form1) || base::trim(row->text).empty())
    return;
  drop_new_row(form1);
  show_browsing(session);
  Loadsite(session, row->text);
  if (session.ActiveSite.Deleted)
    session.status.panel1 = "These are the values of a deleted site of this name. Compact the database.";
  form1.Find_Store.enabled = is_exchange_2000(form1);
}

void New_Site(Session& session) {
  Form1& form1 = session.form1;
  drop_new_row(form1);
  empty_fields(form1);
  unlock_fields(form1);
  session.EditingSite = false;
  form1.New_Site_Name.text = std::string();
  form1.ListView2.select(&form1.ListView2.add(std::string(kNewRow), {}, "SITE"));
}

void site_name_edited(Session& session, std::string_view typed) {
  Form1& form1 = session.form1;
  controls::ListRow* const row = new_row(form1);
  if (row == nullptr)
    return;
  const std::string name(base::trim(typed));
  if (const std::string refusal = record_name_refusal(name); !refusal.empty()) {
    refuse_new_name(session, refusal);
  } else if (name.empty()) {
    refuse_new_name(session, "Site Name cannot be Blank");
  } else if (is_taken(form1, name)) {
    refuse_new_name(session, "Site name already used");
  } else if (base::length(name) > records::kSiteNameLength) {
    refuse_new_name(session, "Site name too long (20 chrs max)");
  } else {
    form1.ListView2.set_text(*row, name);
    form1.New_Site_Name.text = name;
  }
}

void Edit_Site(Session& session) {
  const std::string name = selected_name(session.form1);
  if (name.empty())
    return;
  // A save over the live record starts from its own fields, not from those of a deleted namesake.
  try {
    records::RecordFile file = open_to_read(session);
    if (const records::RecordSearch live = find_live(file, name); live.found)
      show_site(session.form1, records::decode_site(live.bytes));
  } catch (const base::RuntimeError& failure) {
    report_file_error(session, kSiteFile, failure);
    return;
  }
  session.status.panel1 = "Edit Site...";
  session.EditingSite = true;
  unlock_fields(session.form1);
}

void Save_Site(Session& session) {
  Form1& form1 = session.form1;
  if (session.EditingSite)
    form1.New_Site_Name.text = selected_name(form1);
  const std::string name(base::trim(form1.New_Site_Name.text.get()));
  const session::WorkingStatus saving(form1, "Saving Site...");
  if (!can_save(session, name))
    return;
  try {
    write_record(session, name);
  } catch (const base::RuntimeError& failure) {
    report_file_error(session, kSiteFile, failure);
    return;
  }
  if (!session.EditingSite)
    list_new_site(session, name);
  session.status.panel1 = "Site Saved.";
  show_browsing(session);
  form1.NUsitename.locked = false;
}

void Delete_site(Session& session) {
  Form1& form1 = session.form1;
  const std::string name = selected_name(form1);
  if (name.empty())
    return;
  if (form1.Confirm_Deletes.on() &&
      session.platform.dialogs.MsgBox("Sure to Delete Site Record", platform::Buttons::kYesNo,
                                      platform::Icon::kQuestion,
                                      "Delete Site Record") != platform::Answer::kYes)
    return;
  const session::WorkingStatus deleting(form1, "Deleting Site...");
  try {
    mark_record_deleted(session, name);
  } catch (const base::RuntimeError& failure) {
    report_file_error(session, kSiteFile, failure);
    return;
  }
  form1.NUsitename.remove_item(name);
  session.multi_user.Multi_Site.remove_item(name);
  form1.ListView2.remove(*form1.ListView2.selected());
  Clear_Site(session);
  session.status.panel1 = "Site Deleted.";
}

void Site_Cancel(Session& session) {
  session.EditingSite = false;
  Clear_Site(session);
}

void EXH5_Click(Session& session) {
  Form1& form1 = session.form1;
  show_kind(form1, is_exchange_2000(form1));
  form1.Find_Store.enabled = is_exchange_2000(form1);
}

}  // namespace twk::stores
