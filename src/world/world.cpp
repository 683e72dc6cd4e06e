#include "world/world.hpp"

#include "session/settings.hpp"

namespace twk::world {
namespace {

std::string root_key(std::string_view sub_key) {
  return std::string(session::kTree) + "\\" + std::string(sub_key);
}

}  // namespace

World::World(const std::filesystem::path& folder, platform::Dialogs& dialogs,
             const std::function<void(const std::string&)>& warn)
    : lab_(folder, warn),
      stored_(lab_.platform(dialogs)),
      registry_(stored_.registry),
      services_{.registry = registry_,
                .directory = stored_.directory,
                .query = stored_.query,
                .files = stored_.files,
                .network = stored_.network,
                .security = stored_.security,
                .mailboxes = stored_.mailboxes,
                .process = stored_.process,
                .environment = stored_.environment,
                .clock = stored_.clock,
                .dialogs = dialogs} {}

World::~World() = default;

void World::override_setting(std::string_view sub_key, std::string_view name, std::string value) {
  registry_.put(root_key(sub_key), name, std::move(value));
}

void World::choose_domain_and_database(const std::string& database) {
  std::string domain;
  if (!stored_.registry.Reg_Read(platform::kHiveLocalMachine, root_key("Setup"), "Domain", domain))
    override_setting("Setup", "Domain", lab::domain_name(lab_.config()));
  if (!database.empty())
    override_setting("Setup", "DataBasePath", std::filesystem::absolute(database).string());
}

std::string World::program_directory() const {
  std::string directory = lab_.database_path();
  while (directory.ends_with('/'))
    directory.pop_back();
  return directory;
}

bool may_be_lab(const std::filesystem::path& folder) {
  std::error_code unreadable;
  return std::filesystem::exists(folder / "lab.conf", unreadable) || unreadable;
}

}  // namespace twk::world
