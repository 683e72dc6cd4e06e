#include "lab/lab_network.hpp"

#include "lab/errors.hpp"

namespace twk::lab {

namespace {
constexpr std::uint32_t kControllerNotFound = 2453;  // NERR_DCNotFound
}

std::string LabNetwork::NetGetDCName(std::string_view /*server*/, std::string_view domain) {
  if (!domain.empty() && !is_domain_name(domain_, domain)) {
    raise(kControllerNotFound, "There is no domain controller for " + std::string(domain));
  }
  return "\\\\" + domain_.config.controller;
}

}  // namespace twk::lab
