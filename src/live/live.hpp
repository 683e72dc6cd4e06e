#pragma once

#include <filesystem>
#include <memory>
#include <string>

#include "live/domain/live_domain.hpp"
#include "live/terms/user_folders.hpp"
#include "platform/platform.hpp"

namespace twk::live {

/// A real domain and the services of its world. Nothing is asked of the domain before a service needs it;
/// processes and the clock are the workstation's own.
class Live {
 public:
  Live(LiveSettings settings, Prompts prompts, const Folders& folders);
  Live(const Live&) = delete;
  Live& operator=(const Live&) = delete;
  ~Live();

  [[nodiscard]] LiveDomain& domain();
  /// Path of the database directory, with a slash at the end. Makes it, private to its owner, when it does
  /// not exist.
  [[nodiscard]] std::string database_path() const;
  /// The services, with the caller's dialogs; valid as long as this object.
  [[nodiscard]] platform::Platform platform(platform::Dialogs& dialogs);
  [[nodiscard]] platform::RegistryListing& registry_listing();

 private:
  struct Services;
  std::unique_ptr<Services> services_;
};

}  // namespace twk::live
