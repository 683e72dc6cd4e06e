#pragma once

#include <string>
#include <utility>

#include "local/system_environment.hpp"

namespace twk::lab {

/// The variables of this process, and "LOGONSERVER", which a domain's workstation has and a Linux system does
/// not: the lab's controller, with two backslashes in front.
class LabEnvironment final : public platform::Environment {
 public:
  explicit LabEnvironment(std::string controller) : controller_(std::move(controller)) {}

  std::string plain_letters(std::string_view text) override { return system_.plain_letters(text); }
  std::string variable(std::string_view name) override {
    std::string value = system_.variable(name);
    return value.empty() && name == "LOGONSERVER" ? "\\\\" + controller_ : value;
  }

 private:
  std::string controller_;
  local::SystemEnvironment system_;
};

}  // namespace twk::lab
