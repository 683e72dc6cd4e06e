#include "live/terms/user_folders.hpp"

#include "local/user_folders.hpp"

namespace twk::live {

Folders user_folders() {
  return {local::user_config_folder(), local::user_data_folder()};
}

std::string registry_folder(const Folders& folders) {
  return folders.config + "/settings";
}

}  // namespace twk::live
