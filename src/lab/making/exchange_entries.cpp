#include "lab/making/exchange_entries.hpp"

#include <utility>

#include "ads/dn.hpp"
#include "base/text.hpp"
#include "lab/making/configuration_entries.hpp"
#include "lab/making/exchange_schema.hpp"

namespace twk::lab {
namespace {

constexpr const char* kAdministrativeGroup = "First Administrative Group";
constexpr const char* kStorageGroup = "First Storage Group";

/// Collects entries and returns their names, for the entries below them.
class Directory {
 public:
  std::string add(std::string dn, const std::string& chain, std::vector<LdifAttribute> attributes = {}) {
    records_.push_back(make_entry(dn, chain, std::move(attributes)));
    return dn;
  }
  std::vector<LdifRecord> take() { return std::move(records_); }

 private:
  std::vector<LdifRecord> records_;
};

std::string below(const std::string& parent, std::string_view name) {
  return ads::make_rdn("CN", name) + "," + parent;
}

}  // namespace

std::vector<LdifRecord> exchange55_entries(const ExchangePlan& plan) {
  const std::string container(find_exchange_class("Container")->chain);
  Directory directory;
  const std::string top = directory.add(ads::make_rdn("O", plan.organisation), "top organization");
  const std::string site =
      directory.add(ads::make_rdn("OU", plan.site) + "," + top, "top organizationalUnit");
  const std::string configuration = directory.add(below(site, "Configuration"), container);
  const std::string servers = directory.add(below(configuration, "Servers"), container);
  const std::string server = directory.add(below(servers, plan.old_server), "top Computer");
  directory.add(below(server, "Microsoft MTA"), "top MTA");
  directory.add(below(server, "Microsoft Private MDB"), "top Home-MDB");
  const std::string recipients = directory.add(below(site, "Recipients"), container);
  directory.add(below(recipients, "All Staff"), std::string(find_exchange_class("groupOfNames")->chain));
  return directory.take();
}

std::vector<LdifRecord> exchange2000_entries(const LabConfig& config, const ExchangePlan& plan) {
  if (config.kind == DomainKind::kNt)
    return {};
  const std::string legacy_name = "/o=" + plan.organisation + "/ou=" + kAdministrativeGroup;
  const std::string legacy_server = legacy_name + "/cn=Configuration/cn=Servers/cn=" + plan.new_server;
  const auto legacy = [](std::string name) {
    return std::vector<LdifAttribute>{{"legacyExchangeDN", {std::move(name)}}};
  };
  const auto chain = [](std::string_view name) { return std::string(ads::find_class(name)->chain); };
  Directory directory;
  const std::string services =
      directory.add("CN=Services,CN=Configuration," + ads::domain_dn(config.domain), chain("container"));
  const std::string exchange =
      directory.add(below(services, "Microsoft Exchange"), chain("msExchConfigurationContainer"));
  const std::string organisation =
      directory.add(below(exchange, plan.organisation), chain("msExchOrganizationContainer"),
                    legacy("/o=" + plan.organisation));
  const std::string groups =
      directory.add(below(organisation, "Administrative Groups"), chain("msExchAdminGroupContainer"));
  const std::string group =
      directory.add(below(groups, kAdministrativeGroup), chain("msExchAdminGroup"), legacy(legacy_name));
  const std::string servers = directory.add(below(group, "Servers"), chain("msExchServersContainer"));
  const std::string server =
      directory.add(below(servers, plan.new_server), chain("msExchExchangeServer"), legacy(legacy_server));
  directory.add(below(server, "Microsoft MTA"), chain("mTA"));
  const std::string store = directory.add(below(server, "InformationStore"), chain("msExchInformationStore"));
  const std::string storage_group = directory.add(below(store, kStorageGroup), chain("msExchStorageGroup"));
  for (const char* const name : {"Mailbox Store", "Mailbox Store 2"})
    directory.add(below(storage_group, name), chain("msExchPrivateMDB"));
  return directory.take();
}

}  // namespace twk::lab
