#include "platform/share_name.hpp"

#include "base/text.hpp"

namespace twk::platform {

std::string share_name_fault(std::string_view name) {
  constexpr std::string_view kForbidden = "\"/\\[]:|<>+=;,*?";
  constexpr std::size_t kLongest = 80;
  if (base::trim(name).empty())
    return "is empty";
  if (base::length(name) > kLongest)
    return "is longer than 80 characters";
  if (name.find_first_of(kForbidden) != base::npos)
    return "holds a character that a share name cannot have";
  if (const auto control = base::find_control_character(name))
    return "holds the control character " + *control;
  return {};
}

}  // namespace twk::platform
