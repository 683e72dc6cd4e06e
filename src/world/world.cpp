#include "world/world.hpp"

#include "base/errors.hpp"
#include "platform/directory.hpp"
#include "session/settings.hpp"
#include "world/lab_ground.hpp"
#include "world/real_domains.hpp"
#include "world/run_registry.hpp"
#include "world/stored_connection.hpp"

namespace twk::world {
namespace {

/// Options that `live_settings` refuses make a world that cannot be connected, in which settings can be
/// corrected.
std::unique_ptr<Ground> make_real_ground(const ConnectionOptions& options, live::Prompts prompts,
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
  return real_domains().make_ground(std::move(settings), std::move(prompts), folders, std::move(refusal));
}

std::string root_key(std::string_view sub_key) {
  return std::string(session::kTree) + "\\" + std::string(sub_key);
}

}  // namespace

World::World(std::unique_ptr<Ground> ground, platform::Dialogs& dialogs)
    : ground_(std::move(ground)),
      stored_(ground_->platform(dialogs)),
      registry_(std::make_unique<RunRegistry>(stored_.registry)),
      services_{.registry = *registry_,
                .directory = stored_.directory,
                .query = stored_.query,
                .files = stored_.files,
                .network = stored_.network,
                .security = stored_.security,
                .mailboxes = stored_.mailboxes,
                .process = stored_.process,
                .environment = stored_.environment,
                .clock = stored_.clock,
                .dialogs = dialogs} {
  ground_->registry_listing().require_readable();
}

World::World(const std::filesystem::path& folder, platform::Dialogs& dialogs,
             const std::function<void(const std::string&)>& warn)
    : World(make_lab_ground(folder, warn), dialogs) {}

World::~World() = default;

lab::Lab& World::lab() {
  if (lab::Lab* const lab = ground_->lab())
    return *lab;
  base::raise(platform::ads_error::kNotImplementedByProvider, "This needs a lab, not a real domain");
}

RealDomain& World::real() {
  if (RealDomain* const real = ground_->real())
    return *real;
  base::raise(platform::ads_error::kNotImplementedByProvider, "This needs a real domain, not a lab");
}

void World::override_setting(std::string_view sub_key, std::string_view name, std::string value) {
  registry_->put(root_key(sub_key), name, std::move(value));
}

void World::forget_overrides() {
  registry_->clear();
}

void World::choose_domain_and_database(const std::string& database) {
  std::string stored;
  const bool named =
      stored_.registry.Reg_Read(platform::kHiveLocalMachine, root_key("Setup"), "Domain", stored);
  const std::string own = ground_->domain_name();
  if (!own.empty() && (ground_->has_one_domain() ? stored != own : !named))
    override_setting("Setup", "Domain", own);
  if (!database.empty())
    override_setting("Setup", "DataBasePath", std::filesystem::absolute(database).string());
}

std::string World::program_directory() const {
  std::string directory = ground_->database_path();
  while (directory.ends_with('/'))
    directory.pop_back();
  return directory;
}

std::unique_ptr<World> make_live_world(const ConnectionOptions& given, live::Prompts prompts,
                                       platform::Dialogs& dialogs) {
  const live::Folders folders = live::user_folders();
  const ConnectionOptions wanted = wanted_connection(folders, given);
  if (says_anything(given))
    live_settings(wanted);
  return std::make_unique<World>(make_real_ground(wanted, std::move(prompts), folders), dialogs);
}

bool may_be_lab(const std::filesystem::path& folder) {
  std::error_code unreadable;
  return std::filesystem::exists(folder / "lab.conf", unreadable) || unreadable;
}

}  // namespace twk::world
