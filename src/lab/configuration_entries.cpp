#include "lab/configuration_entries.hpp"

#include "ads/dn.hpp"
#include "ads/schema.hpp"
#include "base/text.hpp"

namespace twk::lab {
namespace {

LdifRecord make_entry(const std::string& dn, std::string_view object_class,
                      std::vector<LdifAttribute> attributes) {
  LdifRecord record;
  record.dn = dn;
  record.attributes.push_back({"objectClass", base::split(ads::find_class(object_class)->chain, ' ')});
  const ads::Rdn rdn = ads::parse_rdn(ads::first_rdn(dn));
  record.attributes.push_back({base::lower(rdn.type), {rdn.value}});
  for (LdifAttribute& attribute : attributes)
    record.attributes.push_back(std::move(attribute));
  return record;
}

}  // namespace

std::vector<LdifRecord> configuration_entries(const LabConfig& config) {
  if (config.kind == DomainKind::kNt)
    return {};
  const std::string root = ads::domain_dn(config.domain);
  const std::string top = "CN=Configuration," + root;
  const std::string schema = "CN=Schema," + top;
  const std::string partitions = "CN=Partitions," + top;
  const auto partition = [&](const std::string& name, const std::string& naming_context,
                             std::vector<LdifAttribute> more) {
    more.push_back({"nCName", {naming_context}});
    more.push_back({"dnsRoot", {config.domain}});
    return make_entry("CN=" + name + "," + partitions, "crossRef", std::move(more));
  };
  return {make_entry(top, "configuration", {}),
          make_entry(partitions, "crossRefContainer", {}),
          partition("Enterprise Configuration", top, {}),
          partition("Enterprise Schema", schema, {}),
          partition(config.netbios, root, {{"nETBIOSName", {config.netbios}}}),
          make_entry(schema, "dMD", {})};
}

void add_missing_configuration(LabDomain& domain) {
  if (domain.store.find(domain.root_dn) == nullptr)
    return;
  for (LdifRecord& record : configuration_entries(domain.config)) {
    if (domain.store.find(record.dn) == nullptr)
      domain.store.add(record.dn, std::move(record.attributes), [] {});
  }
}

}  // namespace twk::lab
