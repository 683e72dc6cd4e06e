#pragma once

#include <filesystem>
#include <memory>
#include <string>

#include "live/domain/live_domain.hpp"
#include "platform/platform.hpp"

namespace twk::live {

/// Where the workstation keeps a person's files for work on real domains:
///
///     <config>/settings/    the registry
///     <data>/db/            the database directory, unless the settings name another one
struct Folders {
  std::string config;
  std::string data;
};
/// The person's own, where the XDG base directories are.
Folders user_folders();

/// The registry of the workstation, from which the settings of a connection are read before there is one.
std::string registry_folder(const Folders& folders);

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
