#pragma once

#include "lab/lab_domain.hpp"
#include "platform/network.hpp"

namespace twk::lab {

/// Knows one domain and its controller.
class LabNetwork final : public platform::Network {
 public:
  explicit LabNetwork(const LabDomain& domain) : domain_(domain) {}
  /// The controller answers whatever `server` is asked; an empty domain is the lab's.
  std::string NetGetDCName(std::string_view server, std::string_view domain) override;

 private:
  const LabDomain& domain_;
};

}  // namespace twk::lab
