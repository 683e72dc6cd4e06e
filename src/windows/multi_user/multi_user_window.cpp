#include "windows/multi_user/multi_user_window.hpp"

#include <algorithm>
#include <string>
#include <vector>

#include "base/error_words.hpp"
#include "base/errors.hpp"
#include "base/text.hpp"
#include "controls/tree_view.hpp"
#include "directory/loading/ad_load.hpp"
#include "directory/loading/nt_load.hpp"
#include "directory/units.hpp"
#include "records/record_file.hpp"
#include "session/loaded_domain.hpp"
#include "session/settings.hpp"
#include "stores/database_files.hpp"
#include "stores/site_store.hpp"
#include "stores/template_store.hpp"
#include "windows/multi_user/delete_options.hpp"
#include "windows/multi_user/groups_tab.hpp"
#include "windows/multi_user/properties_tab.hpp"
#include "windows/multi_user/selection_aside.hpp"
#include "windows/state/desktop.hpp"
#include "windows/state/multi_user.hpp"

namespace twk::windows {
namespace {

using controls::ListRow;
using controls::ListView;

bool skips_users(Desktop& session) {
  return base::equals_fold(session::read_setting(session, session::kADO, "SkipUsers"), "TRUE");
}

/// The live records of a file, all read before a list is touched. A missing file has
/// none.
std::vector<std::string> live_records(Desktop& session, std::string_view file, std::size_t size) {
  std::vector<std::string> records;
  records::RecordFile::open_read(session.platform.files, stores::database_path(session, file), size)
      .search([&](std::string_view bytes) {
        if (!records::is_deleted(bytes))
          records.emplace_back(bytes);
        return false;
      });
  return records;
}

void add_once(controls::ComboBox& box, const std::string& item) {
  const std::vector<std::string>& items = box.items();
  if (!item.empty() && std::find(items.begin(), items.end(), item) == items.end())
    box.add_item(item);
}

void fill_sites(Desktop& session) {
  MultiUser& window = session.multi_user;
  std::vector<std::string> records;
  base::Trap trap;
  trap([&] { records = live_records(session, stores::kSiteFile, records::kSiteRecordSize); });
  window.Multi_Site.clear_items();
  window.EX_Server.clear_items();
  window.EX_Server.add_item("Exchange 2000");
  for (const std::string& bytes : records) {
    const records::SiteRecord site = records::decode_site(bytes);
    window.Multi_Site.add_item(std::string(base::trim(site.Name)));
    add_once(window.EX_Server, std::string(base::trim(site.ExchangeServer)));
  }
  if (trap.number() != 0) {
    session.platform.dialogs.MsgBox(
        "Error Opening site file, In multiuser form\r\nCheck 'Path to Database' in setup tab",
        platform::Buttons::kOk, platform::Icon::kExclamation, "");
  }
}

void fill_templates(Desktop& session) {
  controls::ComboBox& box = session.multi_user.Multi_Template;
  std::vector<std::string> records;
  base::Trap trap;
  trap([&] { records = live_records(session, stores::kTemplateFile, records::kTemplateRecordSize); });
  box.clear_items();
  for (const std::string& bytes : records)
    box.add_item(records::listed_template_name(bytes));
}

/// A load lists those of one level only; without the others a class or a department cannot be chosen.
void list_all_units(Desktop& session) {
  base::Trap trap;
  if (!trap([&] { directory::list_deeper_units(session); }))
    session.multi_user.Label3.caption =
        "The OU's below others are not listed: " + base::in_words(trap.number(), trap.description());
}

/// Adds what is not in the selection yet. An account that was created again is no longer a ghost.
void take(Desktop& session, ListView& list, const std::vector<const ListRow*>& rows) {
  ListView& selection = session.domain.selection;
  for (const ListRow* const row : rows) {
    const ListRow* const there = selection.find_key(row->key);
    if (there != nullptr && there->ghosted)
      selection.set_ghosted(selection.at(selection.place_of(*there)), false);
  }
  controls::move_rows(list, rows, selection);
}

}  // namespace

void MultiUser_Initialize(Desktop& session) {
  session.multi_user.initialized = true;
  read_delete_options(session);
}

void MultiUser_Load(Desktop& session) {
  if (!session.multi_user.initialized)
    MultiUser_Initialize(session);
  fill_sites(session);
  fill_templates(session);
  // Loading a directory leaves the list of users to this button.
  session.multi_user.btn_Showusers.visible = session::is_active_directory(session) || skips_users(session);
}

void show_multi_user(Desktop& session) {
  if (!session.multi_user.initialized)
    MultiUser_Initialize(session);
  prepare_properties(session);
  fill_group_choices(session);
  if (session::is_active_directory(session))
    list_all_units(session);
  session.platform.dialogs.show_modal("MultiUser");
}

void show_for_users(Desktop& session, const std::vector<std::string>& keys, int tab) {
  MultiUser& window = session.multi_user;
  const bool by_key = session::is_active_directory(session);
  const SelectionAside aside(window);
  for (const std::string& node_key : keys) {
    const controls::TreeNode* const node = session.domain.tree.find(node_key);
    if (node == nullptr)
      continue;
    const std::string& key = by_key ? node->key : node->text;
    if (const ListRow* const row = window.ListView2.find_key(key))
      take(session, window.ListView2, {row});
    else
      window.ListView1.add(key, node->text, "USER", {}).marks = node->marks;
  }
  window.SSTab1 = tab;
  show_multi_user(session);
}

void select_from(Desktop& session, ListView& list) {
  if (!is_running(session.multi_user))
    take(session, list, list.selected_rows());
}

void Command1_Click(Desktop& session) {
  MultiUser& window = session.multi_user;
  for (ListView* const list : {&window.ListView2, &window.ListView3, &window.ListView4})
    select_from(session, *list);
}

void Command2_Click(Desktop& session) {
  MultiUser& window = session.multi_user;
  if (!is_running(window))
    put_back(window, window.ListView1.selected_rows());
}

void btn_Showusers_Click(Desktop& session) {
  if (is_running(session.multi_user))
    return;
  if (session::is_active_directory(session))
    directory::show_all_users(session, directory::UserList::kSelection, session.status);
  else
    directory::show_nt_users(session);
}

bool Command7_Click(Desktop& session) {
  if (is_running(session.multi_user))
    return false;
  if (skips_users(session))
    session.domain.users.clear();
  return true;
}

}  // namespace twk::windows
