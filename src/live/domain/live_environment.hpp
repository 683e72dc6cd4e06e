#pragma once

#include "live/domain/live_domain.hpp"
#include "local/system_environment.hpp"

namespace twk::live {

/// The variables of this process, and those that a workstation of a domain has for the person who is logged
/// on to it: "USERNAME", "USERDOMAIN" (the pre-2000 name) and "LOGONSERVER", the controller's host name with
/// two backslashes in front. They tell of the ticket, or the user, that the domain is worked with by; where
/// the domain does not answer they are empty.
class LiveEnvironment final : public platform::Environment {
 public:
  explicit LiveEnvironment(LiveDomain& domain) : domain_(domain) {}
  std::string variable(std::string_view name) override;

 private:
  [[nodiscard]] std::string user_name();

  LiveDomain& domain_;
  local::SystemEnvironment system_;
};

}  // namespace twk::live
