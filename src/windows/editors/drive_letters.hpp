#pragma once

#include "controls/basic.hpp"

namespace twk::windows {

/// An empty entry and "A:" to "Z:"; the empty one is chosen.
void fill_drive_letters(controls::ComboBox& box);

}  // namespace twk::windows
