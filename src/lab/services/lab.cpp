#include "lab/services/lab.hpp"

#include "ads/dn.hpp"
#include "ads/exchange_mailboxes.hpp"
#include "lab/domain/lab_domain.hpp"
#include "lab/domain/lab_query.hpp"
#include "lab/exchange/exchange_servers.hpp"
#include "lab/making/configuration_entries.hpp"
#include "lab/services/lab_directory.hpp"
#include "lab/services/lab_environment.hpp"
#include "lab/services/lab_files.hpp"
#include "lab/services/lab_network.hpp"
#include "lab/services/lab_security.hpp"
#include "lab/services/process_identity.hpp"
#include "lab/store/entry_store.hpp"
#include "local/posix_files.hpp"
#include "local/registry_file.hpp"
#include "local/system_clock.hpp"
#include "local/system_process.hpp"

namespace twk::lab {

struct Lab::Services {
  Services(const std::filesystem::path& root, const LabConfig& config,
           const std::function<void(const std::string&)>& warn)
      : folder(root),
        servers(root / "servers", names, turn, warn),
        store(entry_store_opened_at_use(root, "domain", warn, {turn, true},
                                        [this] { add_missing_configuration(domain); })),
        environment(config.controller),
        domain{.config = config,
               .store = *store,
               .clock = clock,
               .servers = servers,
               .root_dn = ads::domain_dn(domain_name(config)),
               .configuration_dn = "CN=Configuration," + ads::domain_dn(domain_name(config))},
        exchange(root / "exchange", turn, warn),
        directory(domain, exchange, turn),
        query(domain),
        identity(domain),
        network(domain, identity),
        files(servers, identity, workstation_files),
        security(domain, identity, files),
        mailboxes(directory, config.domain),
        registry((root / "settings").string(), turn) {}

  std::filesystem::path folder;
  local::TurnPtr turn = std::make_shared<local::Turn>();
  std::shared_ptr<local::FoldedNames> names = std::make_shared<local::FoldedNames>(turn);
  FileServers servers;
  std::unique_ptr<EntryStore> store;
  local::SystemClock clock;
  LabEnvironment environment;
  local::SystemProcess process;
  local::PosixFiles workstation_files{names};
  LabDomain domain;
  ExchangeServers exchange;
  LabDirectory directory;
  LabQuery query;
  ProcessIdentity identity;
  LabNetwork network;
  LabFiles files;
  LabSecurity security;
  ads::ExchangeMailboxes mailboxes;
  local::RegistryFile registry;
};

Lab::Lab(const std::filesystem::path& folder, const std::function<void(const std::string&)>& warn)
    : services_(std::make_unique<Services>(std::filesystem::absolute(folder),
                                           read_lab_config(folder / "lab.conf"), warn)) {}

Lab::~Lab() = default;

void Lab::open_directory() {
  services_->store->open();
}

void Lab::begin_trial() {
  services_->store->begin_trial();
  services_->exchange.begin_trial();
}

const LabConfig& Lab::config() const {
  return services_->domain.config;
}

LogonVerdict Lab::try_logon(std::string_view user, std::optional<std::string_view> password,
                            std::optional<base::Date> at) {
  return lab::try_logon(services_->domain, user, password, at);
}

void Lab::lock_account(std::string_view user) {
  lab::lock_account(services_->domain, user);
}

std::string Lab::database_path() const {
  return (services_->folder / "db").string() + "/";
}

platform::Platform Lab::platform(platform::Dialogs& dialogs) {
  Services& s = *services_;
  return {.registry = s.registry,
          .directory = s.directory,
          .query = s.query,
          .files = s.files,
          .network = s.network,
          .security = s.security,
          .mailboxes = s.mailboxes,
          .process = s.process,
          .environment = s.environment,
          .clock = s.clock,
          .dialogs = dialogs};
}

platform::RegistryListing& Lab::registry_listing() {
  return services_->registry;
}

}  // namespace twk::lab
