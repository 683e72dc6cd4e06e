#include "local/user_folders.hpp"

#include <pwd.h>
#include <unistd.h>

#include <cstdlib>
#include <vector>

namespace twk::local {
namespace {

/// A relative path is ignored, as the rules for these variables require.
std::string absolute_variable(const char* name) {
  const char* const value = std::getenv(name);  // NOLINT(concurrency-mt-unsafe): nothing changes it
  return value != nullptr && *value == '/' ? value : std::string();
}

std::string home() {
  if (std::string folder = absolute_variable("HOME"); !folder.empty())
    return folder;
  std::vector<char> buffer(16384);
  passwd entry{};
  passwd* found = nullptr;
  if (getpwuid_r(geteuid(), &entry, buffer.data(), buffer.size(), &found) != 0 || found == nullptr)
    return "/";
  return found->pw_dir;
}

std::string folder_of(const char* variable, const char* below_home) {
  const std::string folder = absolute_variable(variable);
  return (folder.empty() ? home() + below_home : folder) + "/tarnwick";
}

}  // namespace

std::string user_config_folder() {
  return folder_of("XDG_CONFIG_HOME", "/.config");
}

std::string user_data_folder() {
  return folder_of("XDG_DATA_HOME", "/.local/share");
}

}  // namespace twk::local
