#pragma once

#include <string>
#include <vector>

#include "controls/basic.hpp"
#include "controls/list_view.hpp"

namespace twk::windows {

/// Entries of the tree's popup besides those of `Form1::mnupopup`, and the nodes that they act on.
struct TreeCommands {
  std::vector<std::string> chosen;  ///< keys of the selected nodes; the one under the pointer is among them

  // For the users that are chosen.
  controls::MenuItem Enable;
  controls::MenuItem Disable;
  controls::MenuItem Unlock;
  controls::MenuItem Reset;  ///< of several; one has the entry of `mnupopup`
  controls::MenuItem Move_To;
  // For a unit.
  controls::MenuItem New_Here;
  controls::MenuItem Import_Here;
  controls::MenuItem Find_Here;
  controls::MenuItem Rename_OU;
  controls::MenuItem Move_OU;
  controls::MenuItem Delete_OU;
};

/// The window that asks for a unit.
struct UnitChooser {
  std::string title;
  controls::Label question;
  controls::ListView units;  ///< "Sales / North", and in sub-item 1 how many users are in it; keys are names
  bool accepted = false;     ///< it was closed by "Move"
};

}  // namespace twk::windows
