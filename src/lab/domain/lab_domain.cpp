#include "lab/domain/lab_domain.hpp"

#include "base/text.hpp"

namespace twk::lab {

bool is_domain_name(const LabDomain& domain, std::string_view name) {
  const bool is_dns_name = !domain.config.domain.empty() && base::equals_fold(name, domain.config.domain);
  return is_dns_name || base::equals_fold(name, domain.config.netbios);
}

bool is_domain_server(const LabDomain& domain, std::string_view name) {
  if (name.empty() || is_domain_name(domain, name))
    return true;
  const std::string& controller = domain.config.controller;
  return base::equals_fold(name, controller) ||
         base::equals_fold(name, controller + "." + domain.config.domain);
}

}  // namespace twk::lab
