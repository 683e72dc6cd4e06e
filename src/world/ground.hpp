#pragma once

#include <memory>
#include <string>

#include "platform/platform.hpp"

namespace twk::lab {
class Lab;
}
namespace twk::live {
class Live;
}

namespace twk::world {

/// What the domain of a world is called.
struct DomainNames {
  std::string name;     ///< DNS name, in a WinNT domain the NetBIOS name; empty while none is chosen
  std::string nt_name;  ///< the name in WinNT paths
  bool active_directory = true;
};

/// What a world stands on: a lab or a real domain. Both are the same to whoever works in it.
class Ground {
 public:
  virtual ~Ground() = default;

  [[nodiscard]] virtual platform::Platform platform(platform::Dialogs& dialogs) = 0;
  [[nodiscard]] virtual platform::RegistryListing& registry_listing() = 0;
  /// Where the registry is kept, for messages.
  [[nodiscard]] virtual std::string settings_folder() const = 0;
  /// Path of the database directory, with a slash at the end.
  [[nodiscard]] virtual std::string database_path() const = 0;
  /// The domain's name alone, which nothing has to be asked for.
  [[nodiscard]] virtual std::string domain_name() const = 0;
  /// True when the domain is this one whatever the settings name.
  [[nodiscard]] virtual bool has_one_domain() const = 0;
  /// All names. A real domain is asked; raises what `connect` raises.
  [[nodiscard]] virtual DomainNames names() = 0;
  /// Makes sure that the domain answers and that the logon holds. Raises kServerDown, kLogonFailure with what
  /// is wrong.
  virtual void connect() = 0;

  /// None of another kind.
  [[nodiscard]] virtual lab::Lab* lab() { return nullptr; }
  [[nodiscard]] virtual live::Live* live() { return nullptr; }
};

}  // namespace twk::world
