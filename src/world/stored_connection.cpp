#include "world/stored_connection.hpp"

#include "local/registry_file.hpp"
#include "session/settings.hpp"
#include "world/real_domains.hpp"

namespace twk::world {

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
    options.domain = real_domains().usual();
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

}  // namespace twk::world
