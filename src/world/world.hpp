#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "lab/services/lab.hpp"
#include "live/terms/prompts.hpp"
#include "platform/platform.hpp"
#include "world/connection_options.hpp"
#include "world/ground.hpp"

/// What a program opens before it makes a session: a lab or a real domain, with the options of this run over
/// its settings.
namespace twk::world {

class RunRegistry;

/// An open lab, or a real domain, with settings that apply only to this run.
class World {
 public:
  explicit World(std::unique_ptr<Ground> ground, platform::Dialogs& dialogs);
  /// A lab. `warn` gets a message about repairs. Raises what `lab::Lab` raises.
  World(const std::filesystem::path& folder, platform::Dialogs& dialogs,
        const std::function<void(const std::string&)>& warn);
  World(const World&) = delete;
  World& operator=(const World&) = delete;
  ~World();

  [[nodiscard]] bool is_lab() { return ground_->lab() != nullptr; }
  /// Raises kNotImplementedByProvider in a world that is not a lab.
  lab::Lab& lab();
  /// Raises the same in a lab.
  RealDomain& real();
  /// The services of the world, valid as long as it is.
  [[nodiscard]] const platform::Platform& services() const { return services_; }
  /// The registry as stored.
  platform::RegistryAccess& stored_registry() { return stored_.registry; }
  platform::RegistryListing& registry_listing() { return ground_->registry_listing(); }
  [[nodiscard]] std::string settings_folder() const { return ground_->settings_folder(); }
  /// Sets a value of a machine setting for this run; the stored value stays as it is.
  void override_setting(std::string_view sub_key, std::string_view name, std::string value);
  /// Takes back what `override_setting` and `choose_domain_and_database` set.
  void forget_overrides();
  /// Makes this world's domain the session's, and `database` its database directory, unless that is empty. In
  /// a lab a domain named in the settings takes precedence.
  void choose_domain_and_database(const std::string& database);
  /// Makes sure that the domain can be used. Raises kServerDown, kLogonFailure, kNoSuchDomain, and 5
  /// for invalid settings, with what is wrong.
  void connect() { ground_->connect(); }
  /// Raises what `connect` raises.
  [[nodiscard]] DomainNames domain_names() { return ground_->names(); }
  /// The fallback for the database directory: the world's own, without a slash at the end.
  [[nodiscard]] std::string program_directory() const;

 private:
  std::unique_ptr<Ground> ground_;
  platform::Platform stored_;
  std::unique_ptr<RunRegistry> registry_;
  platform::Platform services_;
};

/// A real domain, as `given` and the person's settings name it. It is not queried yet. Raises what
/// `live_settings` raises when something is given; an error only in the settings is left to `connect`.
std::unique_ptr<World> make_live_world(const ConnectionOptions& given, live::Prompts prompts,
                                       platform::Dialogs& dialogs);

/// True when the folder contains a lab, or cannot be read.
bool may_be_lab(const std::filesystem::path& folder);

}  // namespace twk::world
