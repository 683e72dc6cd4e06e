#include "groups/show_group.hpp"

#include <unordered_set>
#include <vector>

#include "base/errors.hpp"
#include "base/text.hpp"
#include "controls/drawing_off.hpp"
#include "directory/details_parts.hpp"
#include "directory/names.hpp"
#include "directory/operations.hpp"
#include "platform/adsi.hpp"
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

/// Takes the users whose primary group this is, and returns the keys of those that have a row: that
/// membership is an attribute of the user, not of the group.
std::vector<std::string> take_by_primary_group(Session& session, std::int32_t group_id, FoundRows& found,
                                               std::size_t& others) {
  platform::QueryOptions options;
  options.page_size = 1000;
  const auto rows = directory::run_query(session,
                                         "<LDAP://" + session.DomainName +
                                             ">;(&(objectCategory=Person)(objectClass=User)(PrimaryGroupID=" +
                                             base::to_text(group_id) + "));adsPath;SubTree",
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
      ++others;
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

GroupDetails read_group(Session& session, const GroupRow& group) {
  const bool active_directory = session::is_active_directory(session);
  const platform::ObjectPtr bound = bind_group(session, group);
  const std::int32_t id = active_directory ? directory::Group_RID(session, group.key) : 0;
  GroupDetails details;
  details.comment = platform::text_or_empty(*bound, "Description");
  FoundRows found(session);
  base::Trap trap;
  for (const platform::ObjectPtr& member : bound->Members()) {
    bool taken = false;
    trap([&] { taken = is_user(*member) && found.take(*member); });
    if (!taken)
      ++details.others;
  }
  std::vector<std::string> by_primary_group;
  if (active_directory)
    by_primary_group = take_by_primary_group(session, id, found, details.others);
  found.move();
  mark_primary(session.domain.Members, by_primary_group);
  details.users = found.count();
  return details;
}

}  // namespace

GroupDetails show_group(Session& session, const GroupRow& group) {
  give_members_back(session);
  GroupDetails details;
  base::Trap trap;
  if (trap([&] { details = read_group(session, group); }))
    return details;
  give_members_back(session);
  return {.failure = "Error reading group " + group.name + ": " + trap.description()};
}

}  // namespace twk::groups
