#include "lab/namespace_object.hpp"

#include "base/text.hpp"
#include "lab/errors.hpp"

namespace twk::lab {

using platform::ObjectPtr;
using platform::Value;

NamespaceObject::NamespaceObject(std::string name, std::string child_class, std::vector<std::string> children,
                                 std::function<ObjectPtr(const std::string&)> bind_domain)
    : name_(std::move(name)),
      child_class_(std::move(child_class)),
      children_(std::move(children)),
      bind_domain_(std::move(bind_domain)) {}

void NamespaceObject::enumerate(std::span<const std::string> classes,
                                const std::function<bool(const ObjectPtr&)>& visit) {
  if (!ads::is_wanted(classes, child_class_))
    return;
  for (const std::string& child : children_) {
    if (!visit(bind_domain_(child)))
      return;
  }
}

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
