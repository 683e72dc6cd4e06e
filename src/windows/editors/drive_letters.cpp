#include "windows/editors/drive_letters.hpp"

namespace twk::windows {

void fill_drive_letters(controls::ComboBox& box) {
  box.clear();
  box.add_item({});
  for (char letter = 'A'; letter <= 'Z'; ++letter)
    box.add_item({letter, ':'});
  box.select(0);
}

}  // namespace twk::windows
