#include <unordered_set>

#include "base/errors.hpp"
#include "base/text.hpp"
#include "controls/drawing_off.hpp"
#include "directory/details_fields.hpp"
#include "directory/names.hpp"
#include "directory/operations.hpp"
#include "directory/user_details.hpp"
#include "groups/group_object.hpp"
#include "groups/groups_window.hpp"
#include "platform/adsi.hpp"
#include "session/form1.hpp"
#include "session/group_windows.hpp"
#include "session/hourglass.hpp"
#include "session/loaded_domain.hpp"
#include "session/session.hpp"

namespace twk::groups {
namespace {

using controls::ListRow;
using session::Session;

constexpr std::string_view kCatalogue = "GC://";

/// The rows of `NotMembers` to move, each once.
class FoundRows {
 public:
  explicit FoundRows(Session& session) : session_(session) {}

  /// False when the member has no row.
  bool take(const platform::DirectoryObject& member) {
    if (session::is_active_directory(session_))
      return take_key(member.ADsPath());
    const auto rows = session_.domain.NotMembers.find_text(member.Name());
    return !rows.empty() && take(rows.front());
  }
  bool take_key(std::string_view key) { return take(session_.domain.NotMembers.find_key(base::trim(key))); }
  void move() const { controls::move_rows(session_.domain.NotMembers, rows_, session_.domain.Members); }
  [[nodiscard]] std::size_t count() const { return rows_.size(); }

 private:
  bool take(const ListRow* row) {
    if (row == nullptr)
      return false;
    if (known_.insert(row).second)
      rows_.push_back(row);
    return true;
  }

  Session& session_;
  std::vector<const ListRow*> rows_;
  std::unordered_set<const ListRow*> known_;
};

/// The keys of users whose primary group this is and who have a row: that membership is an attribute of
/// the user, not of the group.
std::vector<std::string> take_by_primary_group(Session& session, FoundRows& found) {
  platform::QueryOptions options;
  options.page_size = 1000;
  const auto rows = directory::run_query(session,
                                         "<LDAP://" + session.DomainName +
                                             ">;(&(objectCategory=Person)(objectClass=User)(PrimaryGroupID=" +
                                             base::to_text(session.groups.Group_RID) + "));adsPath;SubTree",
                                         options);
  std::vector<std::string> keys;
  if (!rows->at_eof())
    rows->MoveFirst();
  for (; !rows->at_eof(); rows->MoveNext()) {
    const std::string path = rows->field(0).text();
    std::string key = directory::rewrite_path(path.substr(0, kCatalogue.size()), path);
    if (found.take_key(key))
      keys.push_back(std::move(key));
    else
      ++session.groups.OtherMembers;
  }
  return keys;
}

void mark_primary(controls::ListView& members, const std::vector<std::string>& keys) {
  if (keys.empty())
    return;
  const controls::DrawingOff off(members);
  for (const std::string& key : keys) {
    if (const ListRow* const row = members.find_key(key))
      members.set_sub_item(members.at(members.place_of(*row)), 1, std::string(directory::kPrimaryGroup));
  }
}

/// The number of members that have a row.
std::size_t show_group(Session& session, const ListRow& row) {
  session::Groupsfrm& window = session.groups;
  const bool active_directory = session::is_active_directory(session);
  session.CurrentGroup = bind_group(session, row);
  window.Group_RID = active_directory ? directory::Group_RID(session, row.key) : 0;
  const std::string comment = platform::text_or_empty(*session.CurrentGroup, "Description");
  FoundRows found(session);
  base::Trap trap;
  for (const platform::ObjectPtr& member : session.CurrentGroup->Members()) {
    bool taken = false;
    trap([&] { taken = is_user(*member) && found.take(*member); });
    if (!taken)
      ++window.OtherMembers;
  }
  std::vector<std::string> by_primary_group;
  if (active_directory)
    by_primary_group = take_by_primary_group(session, found);
  window.Decsription_Text.text = comment;
  window.ShownGroup = row.key;
  found.move();
  mark_primary(window.Members, by_primary_group);
  return found.count();
}

}  // namespace

void Groupsfrm_Group_Details_Click(Session& session) {
  session::Groupsfrm& window = session.groups;
  const ListRow* const row = window.ListView1.selected();
  if (row == nullptr)
    return;
  window.StatusBar1.panel1 = "Please wait...";
  window.StatusBar1.panel2 = std::string();
  const session::Hourglass hourglass(session.form1);
  give_members_back(session);
  std::size_t count = 0;
  base::Trap trap;
  trap([&] { count = show_group(session, *row); });
  session.CurrentGroup.reset();
  if (trap.number() != 0) {
    give_members_back(session);
    window.StatusBar1.panel1 = "Error reading group " + row->text + ": " + trap.description();
  } else {
    window.StatusBar1.panel1 = "Number of Members = " + base::to_text(static_cast<std::int64_t>(count));
    if (window.OtherMembers != 0) {
      window.StatusBar1.panel2 =
          "Not in the lists: " + base::to_text(static_cast<std::int64_t>(window.OtherMembers));
    }
  }
  enable_buttons(session);
}

void Groupsfrm_ListView1_DblClick(Session& session) {
  Groupsfrm_Group_Details_Click(session);
}

}  // namespace twk::groups
