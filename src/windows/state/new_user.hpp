#pragma once

#include <array>
#include <string>

#include "controls/basic.hpp"

namespace twk::windows {

/// What the last press of "Create User" left behind on the New User tab.
struct NewUser {
  std::array<std::string, 4>
      made_from;       ///< first, middle and last name and User ID after an account was made
  std::string made;    ///< that account; empty when none was
  std::string formed;  ///< a User ID that was formed from the names, not typed

  // The card that says what came of it.
  controls::Observable<bool> card_visible{false};
  controls::Label card;  ///< a line for each fact
  std::string card_key;  ///< the account's node in the tree; empty when none was made
  controls::Button Show_Made;
};

}  // namespace twk::windows
