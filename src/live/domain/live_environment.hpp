#pragma once

#include "live/domain/live_domain.hpp"
#include "local/system_environment.hpp"

namespace twk::live {

/// The variables of this process, and those that a domain's workstation has for the person logged on to
/// it: "USERNAME", "USERDOMAIN" (the pre-2000 name) and "LOGONSERVER", the controller's host name with
/// two backslashes in front. They describe the ticket or user in use; while the domain does not answer they
/// are empty.
class LiveEnvironment final : public platform::Environment {
 public:
  explicit LiveEnvironment(LiveDomain& domain) : domain_(domain) {}
  std::string plain_letters(std::string_view text) override { return system_.plain_letters(text); }
  std::string variable(std::string_view name) override;

 private:
  [[nodiscard]] std::string user_name();

  LiveDomain& domain_;
  local::SystemEnvironment system_;
};

}  // namespace twk::live
