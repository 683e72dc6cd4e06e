#include "batch/selected_users.hpp"

#include <unordered_set>

#include "base/error_words.hpp"
#include "base/errors.hpp"
#include "base/text.hpp"
#include "batch/selection_walk.hpp"
#include "session/loaded_domain.hpp"
#include "session/session.hpp"

namespace twk::batch {
namespace {

void count_rows(const controls::ListView& selection, SelectedUsers& found) {
  for (std::size_t place = 0; place < selection.size(); ++place) {
    const controls::ListRow& row = selection.at(place);
    if (!selection.shows(row))
      found.hidden.push_back(row.text);
    else if (row.ghosted)
      found.gone.push_back(row.text);
    else if (row.icon == "OU")
      ++found.units;
    else if (row.icon != "USER")
      ++found.groups;
  }
}

}  // namespace

SelectedUsers read_selected_users(session::Session& session, const std::function<bool()>& goes_on) {
  SelectedUsers found;
  count_rows(session.domain.selection, found);
  WalkRules rules;
  rules.binds = false;
  rules.goes_on = goes_on;
  rules.failed = [&found](const std::string& what, const base::RuntimeError& failure) {
    found.unreadable.push_back(what + ": " + base::in_words(failure));
    return true;
  };
  std::unordered_set<std::string> seen;
  found.whole = walk_selection(session, rules, [&](SelectedUser& user) {
    if (seen.insert(base::upper(user.path)).second)
      found.users.push_back({user.path, user.name, user.through == nullptr ? "" : user.through->text});
    else
      ++found.repeated;
  });
  return found;
}

}  // namespace twk::batch
