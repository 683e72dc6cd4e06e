#include "world/live_ground.hpp"

#include <optional>

#include "base/errors.hpp"
#include "live/domain/discover_domains.hpp"
#include "live/logon/network_probe.hpp"
#include "local/registry_file.hpp"
#include "platform/directory.hpp"
#include "session/settings.hpp"

namespace twk::world {
namespace {

class LiveGround final : public Ground {
 public:
  LiveGround(live::LiveSettings settings, live::Prompts prompts, const live::Folders& folders,
             std::optional<base::RuntimeError> refusal)
      : folders_(folders),
        live_(std::move(settings), std::move(prompts), folders),
        refusal_(std::move(refusal)) {}

  platform::Platform platform(platform::Dialogs& dialogs) override { return live_.platform(dialogs); }
  platform::RegistryListing& registry_listing() override { return live_.registry_listing(); }
  [[nodiscard]] std::string settings_folder() const override { return live::registry_folder(folders_); }
  [[nodiscard]] std::string database_path() const override { return live_.database_path(); }
  [[nodiscard]] std::string domain_name() const override { return domain().settings().domain; }
  [[nodiscard]] bool has_one_domain() const override { return !domain_name().empty(); }
  DomainNames names() override {
    connect();
    const bool directory = domain().has_directory();
    return {domain_name(), directory ? domain().netbios() : domain_name(), directory};
  }
  void connect() override {
    if (refusal_)
      throw base::RuntimeError(*refusal_);
    if (domain_name().empty())
      base::raise(platform::ads_error::kNoSuchDomain,
                  "There is no domain to work in: none is named, and "
                  "this computer is in none");
    if (domain().has_directory())
      domain().ldap().open();
    else
      live::resolve_host(domain().controller());
  }
  live::Live* live() override { return &live_; }

 private:
  [[nodiscard]] live::LiveDomain& domain() const { return live_.domain(); }

  live::Folders folders_;
  mutable live::Live live_;
  std::optional<base::RuntimeError> refusal_;  ///< of the options
};

}  // namespace

void require_settings(const live::Folders& folders) {
  local::RegistryFile(live::registry_folder(folders)).require_readable();
}

ConnectionOptions stored_connection(const live::Folders& folders) {
  local::RegistryFile registry(live::registry_folder(folders));
  registry.require_readable();
  return read_connection(registry);
}

bool store_connection(const live::Folders& folders, const ConnectionOptions& options) {
  local::RegistryFile registry(live::registry_folder(folders));
  return save_connection(registry, options);
}

ConnectionOptions wanted_connection(const live::Folders& folders, const ConnectionOptions& given) {
  ConnectionOptions options = merge_connection(stored_connection(folders), given);
  if (options.domain.empty())
    options.domain = live::usual_domain();
  return options;
}

std::string stored_unit(const live::Folders& folders) {
  local::RegistryFile registry(live::registry_folder(folders));
  const std::string key = std::string(session::kTree) + "\\" + std::string(session::kSetup);
  std::string unit;
  if (!registry.Reg_Read(platform::kHiveLocalMachine, key, "OU", unit) || unit.empty())
    registry.Reg_Read(platform::kHiveCurrentUser, key, "OU", unit);
  return unit;
}

std::unique_ptr<Ground> make_live_ground(const ConnectionOptions& options, live::Prompts prompts,
                                         const live::Folders& folders) {
  live::LiveSettings settings;
  std::optional<base::RuntimeError> refusal;
  try {
    settings = live_settings(options);
  } catch (const base::RuntimeError& failure) {
    refusal = failure;
    settings.domain = options.domain;
    // Nobody logs on in another way than intended.
    settings.logon = live::LiveSettings::Logon::kPassword;
  }
  return std::make_unique<LiveGround>(std::move(settings), std::move(prompts), folders, std::move(refusal));
}

}  // namespace twk::world
