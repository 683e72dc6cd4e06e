#pragma once

#include <string>

#include "creation/command_text.hpp"
#include "session/current_run.hpp"
#include "session/preferences.hpp"

namespace twk::lifecycle {

/// What happens to what home and profile hold; the numbers are those of the file operations.
enum class MovedData { kStays = 0, kMove = 1, kCopy = 2 };

/// What is asked of the move of users to a site and a template.
struct MoveOrder {
  std::string site;
  std::string template_name;  ///< as the list holds it, padded
  MovedData data = MovedData::kStays;
  bool add_to_groups = false;
  bool change_logon = false;
  bool command = false;
  bool through_drive_shares = false;   ///< "D$" leads to a folder whose share is gone
  bool profile_named_by_user = false;  ///< in a WinNT domain the folder named after the user is the profile
  session::CommandSetting script;
  creation::CommandUser names;  ///< what the command's name tags mean
  session::RunTerms terms;
};

/// With what the preferences say, and nothing chosen yet.
MoveOrder move_order(const session::Preferences& preferences);

}  // namespace twk::lifecycle
