#include "controls/basic.hpp"

#include <algorithm>

#include "base/errors.hpp"
#include "base/text.hpp"

namespace twk::controls {

void ComboBox::add_item(std::string item) {
  items_.push_back(std::move(item));
  items_changed_.emit();
}

void ComboBox::set_items(std::vector<std::string> items) {
  items_ = std::move(items);
  items_changed_.emit();
}

void ComboBox::remove_item(std::string_view item) {
  std::erase_if(items_, [item](const std::string& one) {
    return base::equals_fold(base::trim(one), base::trim(item));
  });
  items_changed_.emit();
}

void ComboBox::clear() {
  items_.clear();
  text = std::string();
  items_changed_.emit();
}

void ComboBox::clear_items() {
  items_.clear();
  items_changed_.emit();
}

void ComboBox::select(int index) {
  if (index < -1 || index >= static_cast<int>(items_.size())) {
    throw base::RuntimeError(base::error::kOutOfBounds, "The list has no item " + base::to_text(index));
  }
  text = index < 0 ? std::string() : items_[static_cast<std::size_t>(index)];
}

int ComboBox::list_index() const {
  const auto found = std::find(items_.begin(), items_.end(), text.get());
  return found == items_.end() ? -1 : static_cast<int>(found - items_.begin());
}

}  // namespace twk::controls
