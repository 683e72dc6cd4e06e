#include "lab/making/configuration_entries.hpp"

#include "ads/dn.hpp"
#include "ads/schema.hpp"
#include "base/text.hpp"

namespace twk::lab {
LdifRecord make_entry(const std::string& dn, const std::string& chain,
                      std::vector<LdifAttribute> attributes) {
  LdifRecord record;
  record.dn = dn;
  record.attributes.push_back({"objectClass", base::split(chain, ' ')});
  const ads::Rdn rdn = ads::parse_rdn(ads::first_rdn(dn));
  record.attributes.push_back({base::lower(rdn.type), {rdn.value}});
  for (LdifAttribute& attribute : attributes)
    record.attributes.push_back(std::move(attribute));
  return record;
}

std::vector<LdifRecord> configuration_entries(const LabConfig& config) {
  if (config.kind == DomainKind::kNt)
    return {};
  const std::string root = ads::domain_dn(config.domain);
  const std::string top = "CN=Configuration," + root;
  const std::string schema = "CN=Schema," + top;
  const std::string partitions = "CN=Partitions," + top;
  const auto chain = [](std::string_view name) { return std::string(ads::find_class(name)->chain); };
  const auto partition = [&](const std::string& name, const std::string& naming_context,
                             std::vector<LdifAttribute> more) {
    more.push_back({"nCName", {naming_context}});
    more.push_back({"dnsRoot", {config.domain}});
    return make_entry("CN=" + name + "," + partitions, chain("crossRef"), std::move(more));
  };
  return {make_entry(top, chain("configuration"), {}),
          make_entry(partitions, chain("crossRefContainer"), {}),
          partition("Enterprise Configuration", top, {}),
          partition("Enterprise Schema", schema, {}),
          partition(config.netbios, root, {{"nETBIOSName", {config.netbios}}}),
          make_entry(schema, chain("dMD"), {})};
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
