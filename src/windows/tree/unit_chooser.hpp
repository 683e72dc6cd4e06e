#pragma once

#include <functional>
#include <optional>
#include <string>

/// The window `Choose_OU`, which asks where something shall be moved, so that no drag is needed.
namespace twk::windows {

struct Desktop;

struct UnitQuestion {
  std::string title;
  std::string question;
  bool with_containers = false;                          ///< offers "Users", too, where an OU cannot be
  bool with_domain = false;                              ///< offers the domain itself
  std::function<bool(const std::string& dn)> fits = {};  ///< others are left out
};

/// The name of the chosen place; none when it was cancelled.
std::optional<std::string> choose_unit(Desktop& session, const UnitQuestion& question);

/// The user of that path was moved to the unit: the tree, the lists and the details tab go on showing it.
void follow_move(Desktop& session, const std::string& path, const std::string& unit);

/// The button "Move". False without a selected place.
bool Choose_OU_Move_Click(Desktop& session);

}  // namespace twk::windows
