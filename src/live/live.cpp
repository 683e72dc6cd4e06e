#include "live/live.hpp"

#include "ads/exchange_mailboxes.hpp"
#include "live/domain/live_directory.hpp"
#include "live/domain/live_environment.hpp"
#include "live/domain/live_network.hpp"
#include "live/domain/live_query.hpp"
#include "live/files/live_files.hpp"
#include "live/files/live_security.hpp"
#include "local/posix_files.hpp"
#include "local/registry_file.hpp"
#include "local/system_clock.hpp"
#include "local/system_process.hpp"

namespace twk::live {

struct Live::Services {
  Services(LiveSettings settings, Prompts prompts, const Folders& folders)
      : data(folders.data),
        domain(std::move(settings), std::move(prompts)),
        registry(registry_folder(folders)) {}

  std::string data;
  LiveDomain domain;
  LiveDirectory directory{domain};
  LiveQuery query{domain};
  local::PosixFiles workstation_files;
  SmbClient smb{domain.shared_credentials()};
  LiveFiles files{smb, workstation_files};
  LiveNetwork network{domain};
  LiveSecurity security{domain, smb};
  ads::ExchangeMailboxes mailboxes{directory, domain.settings().domain};
  LiveEnvironment environment{domain};
  local::SystemProcess process;
  local::SystemClock clock;
  local::RegistryFile registry;
};

Live::Live(LiveSettings settings, Prompts prompts, const Folders& folders)
    : services_(std::make_unique<Services>(std::move(settings), std::move(prompts), folders)) {}

Live::~Live() = default;

LiveDomain& Live::domain() {
  return services_->domain;
}

std::string Live::database_path() const {
  const std::filesystem::path folder = services_->data + "/db";
  std::error_code failure;
  std::filesystem::create_directories(folder.parent_path().parent_path(), failure);
  for (const std::filesystem::path& own : {folder.parent_path(), folder}) {
    if (std::filesystem::create_directory(own, failure))
      std::filesystem::permissions(own, std::filesystem::perms::owner_all, failure);
  }
  // If it cannot be made, the first write there reports it.
  return folder.string() + "/";
}

platform::Platform Live::platform(platform::Dialogs& dialogs) {
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

platform::RegistryListing& Live::registry_listing() {
  return services_->registry;
}

}  // namespace twk::live
