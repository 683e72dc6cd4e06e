#pragma once

#include <string>

#include "controls/observable.hpp"

namespace twk::windows {

/// Where the session works, as the title and the badge of the status bar tell it.
struct Whereabouts {
  enum class Kind { kUnknown, kLab, kDomain };

  Kind kind = Kind::kUnknown;
  std::string folder;      ///< of a lab
  std::string controller;  ///< of a real domain
  std::string account;     ///< who is logged on there
};

}  // namespace twk::windows
