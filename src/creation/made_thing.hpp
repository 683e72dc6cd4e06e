#pragma once

#include <string>

#include "platform/directory.hpp"

namespace twk::creation {

/// Something that a creation made.
struct MadeThing {
  enum class Kind { kAccount, kFolder, kShare, kGroup, kMailbox };

  Kind kind = Kind::kAccount;
  std::string path;             ///< in the directory; of a folder its network path; of a share its folder
  std::string server;           ///< of a share
  std::string share;            ///< its name
  platform::ObjectPtr account;  ///< of an account
};

}  // namespace twk::creation
