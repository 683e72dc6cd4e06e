#pragma once

#include <vector>

#include "controls/list_view.hpp"

namespace twk::windows {

struct MultiUser;

/// All rows, from the top.
std::vector<const controls::ListRow*> rows_of(const controls::ListView& list);

/// Moves rows of the selection back to the lists that they came from. What is gone stays away.
void put_back(MultiUser& window, const std::vector<const controls::ListRow*>& rows);

/// Lays the selection aside for a command of the tree, which acts on its own users alone. Afterwards those go
/// back to the list, and the selection comes back without those who are gone.
class SelectionAside {
 public:
  explicit SelectionAside(MultiUser& window);
  SelectionAside(const SelectionAside&) = delete;
  SelectionAside& operator=(const SelectionAside&) = delete;
  ~SelectionAside();

 private:
  MultiUser& window_;
  controls::ListView before_;
};

}  // namespace twk::windows
