#include "batch/selection_walk.hpp"

#include <vector>

#include "base/errors.hpp"
#include "base/text.hpp"
#include "directory/names.hpp"
#include "directory/operations.hpp"
#include "platform/ldap_text.hpp"
#include "session/loaded_domain.hpp"
#include "session/session.hpp"

namespace twk::batch {
namespace {

using controls::ListRow;
using platform::ObjectPtr;
using session::Session;

/// What a path says of the user, with or without domain or server: "CN=JO SMITH,OU=…" or "JO".
std::string identity(std::string_view path) {
  if (base::starts_with_fold(path, "LDAP:"))
    return base::upper(directory::name_in_path(path));
  const std::string_view name = path.substr(path.rfind('/') + 1);
  return base::upper(name.substr(0, name.find(',')));
}

class Walk {
 public:
  Walk(Session& session, const WalkRules& rules, const std::function<void(SelectedUser&)>& visit)
      : session_(session),
        rules_(rules),
        visit_(visit),
        list_(session.domain.selection),
        terms_(session.domain.selection_terms) {}

  bool run() {
    for (std::size_t place = 0; place < list_.size() && goes_on(); ++place) {
      ListRow& row = list_.at(place);
      if (!list_.shows(row))
        continue;
      guarded(row.text, [&] { visit_row(row); });
    }
    session_.run.user.clear();
    return !ended_;
  }

 private:
  bool goes_on() {
    ended_ = ended_ || (rules_.goes_on && !rules_.goes_on());
    return !ended_;
  }

  template <typename Step>
  void guarded(const std::string& what, Step&& step) {
    try {
      step();
    } catch (const base::RuntimeError& failure) {
      if (!rules_.failed || !rules_.failed(what, failure))
        throw;
    }
  }

  void visit_row(ListRow& row) {
    if (session::is_active_directory(session_)) {
      if (row.icon == "W2KGRP")
        visit_members(row.key, row);
      else if (row.icon == "OU")
        visit_unit(row);
      else if (!row.ghosted)
        visit_user({row.key, row.text, &row, {}});
    } else if (row.icon == "Global" || row.icon == "Local" || row.icon == "W2KGRP") {
      visit_members(directory::winnt_path(session_, row.text), row);
    } else if (!row.ghosted) {
      visit_user({directory::winnt_path(session_, row.text), row.text, &row, {}});
    }
  }

  void visit_members(const std::string& group, const ListRow& row) {
    std::vector<ObjectPtr> members = session_.platform.directory.GetObject(group)->Members();
    for (ObjectPtr& member : members) {
      if (!goes_on())
        return;
      // Each is released after its visit: what it has read would stay in memory.
      const ObjectPtr one = std::move(member);
      if (!base::equals_fold(one->Class(), "user")) {
        session_.log.line("Not a user: " + one->ADsPath());
        continue;
      }
      const std::string name = platform::plain_name(one->Name());
      const bool ad = session::is_active_directory(session_);
      const std::string path = ad ? one->ADsPath() : directory::winnt_path(session_, name);
      guarded(path, [&] { visit_user({path, name, row_of(path, name), ad ? one : nullptr, true, &row}); });
    }
  }

  void visit_unit(const ListRow& row) {
    constexpr std::size_t kOwnFields = 3;
    struct Found {
      std::string path;
      std::string name;
      std::vector<platform::Value> values;
    };
    std::vector<std::string> attributes = {"ADsPath", "Name", "objectClass"};
    attributes.insert(attributes.end(), rules_.attributes.begin(), rules_.attributes.end());
    std::vector<Found> users;
    const auto rows = session_.platform.query.execute(
        {"LDAP://" + session_.DomainName + "/" + row.key, "(&(objectClass=User)" + terms_.filter + ")",
         attributes, terms_.units_below ? platform::Scope::kSubtree : platform::Scope::kOneLevel},
        {});
    for (; !rows->at_eof(); rows->MoveNext()) {
      if (is_computer(rows->field(2)))
        continue;
      Found& user = users.emplace_back(Found{rows->field(0).text(), rows->field(1).text(), {}});
      for (std::size_t i = kOwnFields; i < attributes.size(); ++i)
        user.values.push_back(rows->field(i));
    }
    for (Found& user : users) {
      if (!goes_on())
        return;
      guarded(user.path, [&] {
        visit_user({user.path, user.name, list_row(user.path), {}, false, &row, std::move(user.values)});
      });
    }
  }

  /// A computer's class is derived from that of users.
  static bool is_computer(const platform::Value& classes) {
    for (const platform::Value& one : classes.list()) {
      if (base::equals_fold(one.text(), "computer"))
        return true;
    }
    return false;
  }

  ListRow* list_row(const std::string& key) {
    const ListRow* const row = list_.find_key(key);
    return row == nullptr ? nullptr : &list_.at(list_.place_of(*row));
  }

  ListRow* row_of(const std::string& path, const std::string& name) {
    if (session::is_active_directory(session_))
      return list_row(path);
    for (const ListRow* const row : list_.find_text(name)) {
      if (row->icon == "USER")
        return &list_.at(list_.place_of(*row));
    }
    return nullptr;
  }

  void visit_user(SelectedUser user) {
    if (!terms_.excepted.empty() && terms_.excepted.contains(identity(user.path)))
      return;
    if (!rules_.binds)
      user.object.reset();
    else if (user.object == nullptr)
      user.object = session_.platform.directory.GetObject(user.path);
    // A list may show another of the user's names.
    if (user.object != nullptr)
      user.name = platform::plain_name(user.object->Name());
    session_.run.user = user.name;
    visit_(user);
  }

  Session& session_;
  const WalkRules& rules_;
  const std::function<void(SelectedUser&)>& visit_;
  controls::ListView& list_;
  const session::SelectionTerms& terms_;
  bool ended_ = false;
};

}  // namespace

void leave_out(Session& session, std::string_view path) {
  session.domain.selection_terms.excepted.insert(identity(path));
}

bool walk_selection(Session& session, const WalkRules& rules,
                    const std::function<void(SelectedUser& user)>& visit) {
  return Walk(session, rules, visit).run();
}

}  // namespace twk::batch
