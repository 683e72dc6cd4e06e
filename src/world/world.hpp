#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "lab/lab.hpp"
#include "platform/platform.hpp"
#include "world/run_registry.hpp"

/// What a front opens before it makes a session: the lab, and what the options of this run say over it.
namespace twk::world {

/// An open lab, with settings that hold for this run alone.
class World {
 public:
  /// `warn` is told what was repaired. Raises what `lab::Lab` raises.
  World(const std::filesystem::path& folder, platform::Dialogs& dialogs,
        const std::function<void(const std::string&)>& warn);
  World(const World&) = delete;
  World& operator=(const World&) = delete;
  ~World();

  lab::Lab& lab() { return lab_; }
  /// The services of the world, good as long as it is.
  [[nodiscard]] const platform::Platform& services() const { return services_; }
  /// The registry as it is stored.
  platform::RegistryAccess& stored_registry() { return stored_.registry; }
  /// Lets a setting of the machine have a value for this run; what is stored stays as it is.
  void override_setting(std::string_view sub_key, std::string_view name, std::string value);
  /// Lets the domain of the lab be the session's, unless the settings name one, and `database` be its
  /// database directory, unless that is empty.
  void choose_domain_and_database(const std::string& database);
  /// The fall-back of the database directory: the lab's, without a slash at the end.
  [[nodiscard]] std::string program_directory() const;

 private:
  lab::Lab lab_;
  platform::Platform stored_;
  RunRegistry registry_;
  platform::Platform services_;
};

/// True when the folder holds a lab, or cannot be looked at.
bool may_be_lab(const std::filesystem::path& folder);

}  // namespace twk::world
