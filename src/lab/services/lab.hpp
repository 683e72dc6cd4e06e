#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "lab/domain/logon.hpp"
#include "lab/shares/lab_config.hpp"
#include "platform/platform.hpp"

namespace twk::lab {

/// An open lab folder and the services of its world:
///
///     lab.conf                                  see lab_config.hpp
///     domain.ldif, domain.journal.ldif          the directory, see entry_store.hpp
///     exchange/<SERVER>.ldif                    Exchange 5.5 directories, see exchange_servers.hpp
///     servers/<NAME>/<DRIVE>/, server.ldif      file servers, see file_server.hpp
///     settings/                                 the registry
///     db/                                       the database directory
///
/// Processes, variables and the clock are the workstation's own.
class Lab {
 public:
  /// `warn` receives what was repaired. Raises runtime errors that name the file, and the line where there
  /// is one.
  Lab(const std::filesystem::path& folder, const std::function<void(const std::string&)>& warn);
  Lab(const Lab&) = delete;
  Lab& operator=(const Lab&) = delete;
  ~Lab();

  /// Opens the directory, which else happens when it is first used, and raises what is wrong with its files.
  /// The part of the configuration that reads need ("CN=Partitions") is added to a directory that lacks it.
  void open_directory();
  /// From here on changes in the directories stay in memory and end with this object: a trial run finds what
  /// it has changed. Folders, shares and settings are not meant.
  void begin_trial();
  [[nodiscard]] const LabConfig& config() const;
  /// See domain/logon.hpp.
  LogonVerdict try_logon(std::string_view user, std::optional<std::string_view> password,
                         std::optional<base::Date> at);
  void lock_account(std::string_view user);
  /// Path of the database directory, with a slash at the end.
  [[nodiscard]] std::string database_path() const;
  /// The services, with the caller's dialogs; valid as long as the lab is.
  [[nodiscard]] platform::Platform platform(platform::Dialogs& dialogs);
  [[nodiscard]] platform::RegistryListing& registry_listing();

 private:
  struct Services;
  std::unique_ptr<Services> services_;
};

}  // namespace twk::lab
