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

/// The button "Move". False without a selected place.
bool Choose_OU_Move_Click(Desktop& session);

}  // namespace twk::windows
