#include "controls/list_view.hpp"

#include <algorithm>
#include <optional>

#include "base/errors.hpp"
#include "base/text.hpp"
#include "controls/drawing_off.hpp"

namespace twk::controls {
namespace {

using Kind = ListChange::Kind;

}  // namespace

ListRow& ListView::add(std::string key, std::string text, SharedText icon,
                       std::vector<std::string> sub_items) {
  auto row = std::make_unique<ListRow>();
  row->key = std::move(key);
  row->text = std::move(text);
  row->icon = icon;
  row->sub_items = std::move(sub_items);
  ListRow& added = *row;
  if (!added.key.empty() && !by_key_.insert(&added).second) {
    throw base::RuntimeError(base::error::kKeyNotUnique, "Key is not unique in collection: " + added.key);
  }
  by_text_.insert(&added);
  const std::size_t place = rows_.size();
  tell(Kind::kInserting, place);
  if (numbered_ == place)
    added.place_ = numbered_++;
  rows_.push_back(std::move(row));
  tell(Kind::kInserted, place);
  return added;
}

void ListView::unlink_text(const ListRow& row) {
  const auto [first, last] = by_text_.equal_range(std::string_view(row.text));
  const auto found = std::find(first, last, &row);
  if (found != last)
    by_text_.erase(found);
}

std::size_t ListView::place_of(const ListRow& row) const {
  if (row.place_ >= numbered_ || rows_[row.place_].get() != &row) {
    for (; numbered_ < rows_.size(); ++numbered_)
      rows_[numbered_]->place_ = numbered_;
  }
  return row.place_;
}

bool ListView::holds(const ListRow& row) const {
  const std::size_t place = place_of(row);
  return place < rows_.size() && rows_[place].get() == &row;
}

void ListView::forget(const ListRow& row) {
  const auto found = by_key_.find(std::string_view(row.key));
  if (found != by_key_.end() && *found == &row)
    by_key_.erase(found);
  unlink_text(row);
}

void ListView::remove(const ListRow& row) {
  if (!holds(row))
    return;
  const std::size_t place = place_of(row);
  forget(row);
  tell(Kind::kRemoving, place);
  rows_.erase(rows_.begin() + static_cast<std::ptrdiff_t>(place));
  numbered_ = std::min(numbered_, static_cast<std::uint32_t>(place));
  tell(Kind::kRemoved, place);
}

ListView::Rows ListView::take(const std::vector<const ListRow*>& rows) {
  Rows taken;
  taken.reserve(rows.size());
  for (const ListRow* const row : rows) {
    if (!holds(*row))
      continue;
    forget(*row);
    taken.push_back(std::move(rows_[place_of(*row)]));
  }
  rows_.erase(std::remove(rows_.begin(), rows_.end(), nullptr), rows_.end());
  numbered_ = 0;
  return taken;
}

void ListView::clear() {
  tell(Kind::kResetting);
  by_key_.clear();
  by_text_.clear();
  rows_.clear();
  numbered_ = 0;
  tell(Kind::kReset);
}

const ListRow* ListView::find_key(std::string_view key) const {
  const auto found = by_key_.find(key);
  return found == by_key_.end() ? nullptr : *found;
}

std::vector<const ListRow*> ListView::find_text(std::string_view text) const {
  std::vector<const ListRow*> found;
  const auto [first, last] = by_text_.equal_range(text);
  found.assign(first, last);
  std::sort(found.begin(), found.end(),
            [this](const ListRow* a, const ListRow* b) { return place_of(*a) < place_of(*b); });
  return found;
}

void ListView::set_text(ListRow& row, std::string text) {
  unlink_text(row);
  row.text = std::move(text);
  by_text_.insert(&row);
  tell(Kind::kChanged, place_of(row));
}

void ListView::set_key(ListRow& row, std::string key) {
  const auto found = by_key_.find(std::string_view(key));
  if (found != by_key_.end() && *found != &row) {
    throw base::RuntimeError(base::error::kKeyNotUnique, "Key is not unique in collection: " + key);
  }
  if (!row.key.empty())
    by_key_.erase(&row);
  row.key = std::move(key);
  if (!row.key.empty())
    by_key_.insert(&row);
}

void ListView::set_sub_item(ListRow& row, std::size_t number, std::string text) {
  if (row.sub_items.size() < number)
    row.sub_items.resize(number);
  row.sub_items.at(number - 1) = std::move(text);
  tell(Kind::kChanged, place_of(row));
}

void ListView::set_icon(ListRow& row, SharedText icon) {
  row.icon = icon;
  tell(Kind::kChanged, place_of(row));
}

void ListView::set_selected(ListRow& row, bool selected) {
  if (row.selected == selected)
    return;
  row.selected = selected;
  tell(Kind::kSelected);
}

void ListView::set_checked(ListRow& row, bool checked) {
  row.checked = checked;
  tell(Kind::kChanged, place_of(row));
}

void ListView::set_ghosted(ListRow& row, bool ghosted) {
  row.ghosted = ghosted;
  tell(Kind::kChanged, place_of(row));
}

void ListView::set_marks(ListRow& row, std::uint8_t marks) {
  if (row.marks == marks)
    return;
  row.marks = marks;
  tell(Kind::kChanged, place_of(row));
}

ListRow* ListView::selected() {
  const auto found = std::find_if(rows_.begin(), rows_.end(), [](const auto& row) { return row->selected; });
  return found == rows_.end() ? nullptr : found->get();
}

std::vector<const ListRow*> ListView::selected_rows() const {
  std::vector<const ListRow*> all;
  for (const auto& row : rows_) {
    if (row->selected)
      all.push_back(row.get());
  }
  return all;
}

void ListView::select(ListRow* row) {
  for (const auto& one : rows_)
    one->selected = one.get() == row;
  tell(Kind::kSelected);
}

void ListView::set_filter(std::function<bool(const ListRow&)> accepts) {
  accepts_ = std::move(accepts);
  tell(Kind::kFiltered);
}

std::size_t ListView::hidden() const {
  return static_cast<std::size_t>(
      std::count_if(rows_.begin(), rows_.end(), [this](const auto& row) { return !shows(*row); }));
}

void ListView::set_drawing(bool on) {
  if (on == drawing_)
    return;
  if (on) {
    drawing_ = true;
    tell(Kind::kReset);
  } else {
    tell(Kind::kResetting);
    drawing_ = false;
  }
}

void ListView::tell(Kind kind, std::size_t place) const {
  if (drawing_)
    changes_.emit({kind, place});
}

void move_row(ListView& from, const ListRow& row, ListView& to) {
  std::string key = row.key;
  std::string text = row.text;
  const SharedText icon = row.icon;
  from.remove(row);
  to.add(std::move(key), std::move(text), icon);
}

void move_rows(ListView& from, const std::vector<const ListRow*>& rows, ListView& to) {
  constexpr std::size_t kFew = 32;
  std::optional<DrawingOff<ListView>> from_off;
  std::optional<DrawingOff<ListView>> to_off;
  if (rows.size() > kFew) {
    from_off.emplace(from);
    to_off.emplace(to);
  }
  const auto put = [&to](const ListRow& row) {
    if (row.key.empty() || to.find_key(row.key) == nullptr)
      to.add(row.key, row.text, row.icon);
  };
  if (rows.size() > kFew) {
    for (const auto& row : from.take(rows))
      put(*row);
  } else {
    for (const ListRow* const row : rows) {
      if (!from.holds(*row))
        continue;
      const ListRow taken = *row;
      from.remove(*row);
      put(taken);
    }
  }
}

}  // namespace twk::controls
