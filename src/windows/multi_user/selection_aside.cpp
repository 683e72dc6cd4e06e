#include "windows/multi_user/selection_aside.hpp"

#include "windows/state/multi_user.hpp"

namespace twk::windows {
namespace {

using controls::ListRow;
using controls::ListView;

ListView& home_of(MultiUser& window, const ListRow& row) {
  if (row.icon == "USER")
    return window.ListView2;
  return row.icon == "OU" ? window.ListView4 : window.ListView3;
}

}  // namespace

std::vector<const ListRow*> rows_of(const ListView& list) {
  std::vector<const ListRow*> rows;
  for (std::size_t place = 0; place < list.size(); ++place)
    rows.push_back(&list.at(place));
  return rows;
}

void put_back(MultiUser& window, const std::vector<const ListRow*>& rows) {
  std::vector<const ListRow*> users;
  std::vector<const ListRow*> groups;
  std::vector<const ListRow*> units;
  std::vector<const ListRow*> ghosts;
  for (const ListRow* const row : rows) {
    const ListView& home = home_of(window, *row);
    if (row->ghosted)
      ghosts.push_back(row);
    else
      (&home == &window.ListView2 ? users : &home == &window.ListView3 ? groups : units).push_back(row);
  }
  ListView gone;
  controls::move_rows(window.ListView1, ghosts, gone);
  controls::move_rows(window.ListView1, users, window.ListView2);
  controls::move_rows(window.ListView1, groups, window.ListView3);
  controls::move_rows(window.ListView1, units, window.ListView4);
}

SelectionAside::SelectionAside(MultiUser& window) : window_(window) {
  std::vector<const ListRow*> there = rows_of(window.ListView1);
  std::erase_if(there, [](const ListRow* row) { return row->ghosted; });
  controls::move_rows(window.ListView1, there, before_);
  window.ListView1.clear();
}

SelectionAside::~SelectionAside() {
  std::vector<const ListRow*> own;
  for (const ListRow* const row : rows_of(window_.ListView1)) {
    const ListRow* const same = before_.find_key(row->key);
    if (same == nullptr)
      own.push_back(row);
    else if (row->ghosted)
      before_.remove(*same);
  }
  put_back(window_, own);
  window_.ListView1.clear();
  controls::move_rows(before_, rows_of(before_), window_.ListView1);
}

}  // namespace twk::windows
