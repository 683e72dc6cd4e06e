#include "windows/editors/permissions_window.hpp"

#include "base/errors.hpp"
#include "base/text.hpp"
#include "stores/side_tables.hpp"
#include "stores/store_outcome.hpp"
#include "stores/typed_text.hpp"
#include "windows/editors/editor_messages.hpp"
#include "windows/state/desktop.hpp"
#include "windows/state/editor_windows.hpp"

namespace twk::windows {
namespace {

using controls::ListRow;

constexpr std::size_t kNameLength = 50;
constexpr std::string_view kAccessOfNewRow = "Read";

std::string_view file_of(const Desktop& session) {
  return session.permissions.share ? stores::kSharePermissionFile : stores::kPermissionFile;
}

void show_rows(Desktop& session, const std::vector<records::PermissionRecord>& records) {
  Permissions& window = session.permissions;
  window.ListView1.clear();
  for (const records::PermissionRecord& record : records)
    window.ListView1.add({}, std::string(base::trim(record.Account)), {},
                         {std::string(base::trim(record.Access))});
  // Only the first record counts for the whole table.
  window.NEW_Security.value = !records.empty() && records.front().NewSecurity ? 1 : 0;
  window.ctrOwner.text = records.empty() ? std::string() : std::string(base::trim(records.front().Owner));
}

void show_form(Permissions& window) {
  window.title.caption = window.share ? "Share Permissions" : "Directory Permissions";
  window.NEW_Security.visible = !window.share;
  window.ctrOwner.visible = !window.share;
  window.Label2.visible = !window.share;
  window.Label2.caption = "Owner";
  window.hint.caption = std::string();
  window.Access.clear();
  for (const std::string_view word : {"Full Control", "Change", "Read"})
    window.Access.add_item(std::string(word));
  window.Access.text = std::string();
  window.Access.enabled = false;
}

void open_table(Desktop& session, bool share) {
  session.permissions.share = share;
  show_form(session.permissions);
  try {
    show_rows(session, stores::read_permissions(session, file_of(session)));
  } catch (const base::RuntimeError& failure) {
    stores::tell(session, stores::file_failure(file_of(session), failure));
    return;
  }
  if (!session.permissions.ListView1.empty())
    session.permissions.ListView1.select(&session.permissions.ListView1.at(0));
  Permissions_ListView1_Click(session);
  session.platform.dialogs.show_modal("Permissions");
}

std::vector<records::PermissionRecord> records_of(const Permissions& window) {
  std::vector<records::PermissionRecord> records;
  for (std::size_t i = 0; i < window.ListView1.size(); ++i) {
    const ListRow& row = window.ListView1.at(i);
    records::PermissionRecord record;
    record.NewSecurity = !window.share && window.NEW_Security.on();
    record.Account = row.text;
    record.Access = row.sub_items.front();
    if (!window.share)
      record.Owner = base::trim(window.ctrOwner.text.get());
    records.push_back(std::move(record));
  }
  return records;
}

/// The owner and the box are stored in the rows: without rows they are lost.
bool loses_owner(const Permissions& window) {
  return !window.share && window.ListView1.empty() &&
         (window.NEW_Security.on() || !base::trim(window.ctrOwner.text.get()).empty());
}

/// Why a name cannot be stored; empty when it can.
std::string refusal_of(std::string_view name) {
  if (std::string refusal = stores::record_refusal(name); !refusal.empty())
    return refusal;
  return base::length(name) > kNameLength ? "An account has at most 50 characters." : std::string();
}

void remove_row(Desktop& session, const ListRow& row) {
  session.permissions.ListView1.remove(row);
  Permissions_ListView1_Click(session);
}

}  // namespace

void Set_Security_Click(Desktop& session) {
  open_table(session, false);
}

void Sharepermissions_Click(Desktop& session) {
  open_table(session, true);
}

void Permissions_ListView1_Click(Desktop& session) {
  Permissions& window = session.permissions;
  const ListRow* const row = window.ListView1.selected();
  window.Access.text = row == nullptr ? std::string() : row->sub_items.front();
  window.Access.enabled = row != nullptr;
}

void Permissions_Access_Click(Desktop& session) {
  Permissions& window = session.permissions;
  if (ListRow* const row = window.ListView1.selected())
    window.ListView1.set_sub_item(*row, 1, window.Access.text);
}

void Permissions_Command3_Click(Desktop& session) {
  if (const ListRow* const row = session.permissions.ListView1.selected())
    remove_row(session, *row);
}

void Permissions_Command4_Click(Desktop& session) {
  controls::ListView& rows = session.permissions.ListView1;
  rows.select(&rows.add({}, {}, {}, {std::string(kAccessOfNewRow)}));
  Permissions_ListView1_Click(session);
}

void Permissions_AfterLabelEdit(Desktop& session, ListRow& row, const std::string& typed) {
  const std::string name(base::trim(typed));
  const std::string refusal = refusal_of(name);
  session.permissions.hint.caption = refusal;
  if (!refusal.empty())
    session.platform.dialogs.beep();
  if (!name.empty() && refusal.empty())
    session.permissions.ListView1.set_text(row, name);
  else if (row.text.empty())
    remove_row(session, row);
}

bool Permissions_OK_Button_Click(Desktop& session) {
  const Permissions& window = session.permissions;
  const std::string refusal = refusal_of(base::trim(window.ctrOwner.text.get()));
  if (!window.share && !refusal.empty()) {
    warn(session, "Owner: " + refusal, window.title.caption.get());
    return false;
  }
  if (loses_owner(window)) {
    warn(session, "The owner is kept with the rows: add at least one.", window.title.caption.get());
    return false;
  }
  try {
    stores::write_permissions(session, file_of(session), records_of(window));
    return true;
  } catch (const base::RuntimeError& failure) {
    stores::tell(session, stores::file_failure(file_of(session), failure));
    return false;
  }
}

}  // namespace twk::windows
