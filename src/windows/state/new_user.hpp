#pragma once

#include <array>
#include <memory>
#include <string>

#include "controls/basic.hpp"

namespace twk::batch {
class RehearsedSession;
}

namespace twk::windows {

/// What "Create User" would make of the fields as they are.
struct Foresight {
  controls::Label verdict;  ///< whether it would be made, and why not
  controls::Label place;
  controls::Label account;
  controls::Label full_name;
  controls::Label principal_name;
  controls::Label home;
  controls::Label profile;
  controls::Label groups;
  std::shared_ptr<batch::RehearsedSession> session;  ///< over what was loaded; none once that changed
  bool working = false;
};

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

  Foresight foresight;
};

}  // namespace twk::windows
