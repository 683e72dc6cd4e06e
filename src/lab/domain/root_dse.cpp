#include "lab/domain/root_dse.hpp"

#include "base/text.hpp"
#include "lab/store/errors.hpp"

namespace twk::lab {

using platform::Value;

Value RootDse::Get(std::string_view attribute) {
  const auto is = [&](std::string_view name) { return base::equals_fold(attribute, name); };
  const LabConfig& config = domain_.config;
  if (is("defaultNamingContext") || is("rootDomainNamingContext"))
    return domain_.root_dn;
  if (is("configurationNamingContext"))
    return domain_.configuration_dn;
  if (is("schemaNamingContext"))
    return "CN=Schema," + domain_.configuration_dn;
  if (is("namingContexts")) {
    return platform::ValueList{domain_.root_dn, domain_.configuration_dn,
                               "CN=Schema," + domain_.configuration_dn};
  }
  if (is("dnsHostName"))
    return base::lower(config.controller) + "." + config.domain;
  if (is("serverName"))
    return "CN=" + config.controller + ",CN=Servers,CN=Sites," + domain_.configuration_dn;
  raise(ads_error::kPropertyNotFound, "RootDSE has no value for " + std::string(attribute));
}

}  // namespace twk::lab
