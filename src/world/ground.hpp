#pragma once

#include <memory>
#include <string>

#include "platform/platform.hpp"

namespace twk::lab {
class Lab;
}

namespace twk::world {

class RealDomain;

/// The names of a world's domain.
struct DomainNames {
  std::string name;     ///< DNS name, in a WinNT domain the NetBIOS name; empty while none is chosen
  std::string nt_name;  ///< the name in WinNT paths
  bool active_directory = true;
};

/// The basis of a world: a lab or a real domain. Both look the same to code that works in it.
class Ground {
 public:
  virtual ~Ground() = default;

  [[nodiscard]] virtual platform::Platform platform(platform::Dialogs& dialogs) = 0;
  [[nodiscard]] virtual platform::RegistryListing& registry_listing() = 0;
  /// Where the registry is kept, for messages.
  [[nodiscard]] virtual std::string settings_folder() const = 0;
  /// Path of the database directory, with a slash at the end.
  [[nodiscard]] virtual std::string database_path() const = 0;
  /// Only the domain's name, which needs no query.
  [[nodiscard]] virtual std::string domain_name() const = 0;
  /// True when the domain is this one, whatever the settings say.
  [[nodiscard]] virtual bool has_one_domain() const = 0;
  /// All names. Queries a real domain; raises what `connect` raises.
  [[nodiscard]] virtual DomainNames names() = 0;
  /// Makes sure that the domain answers and that the logon works. Raises kServerDown, kLogonFailure with what
  /// is wrong.
  virtual void connect() = 0;

  /// None for another kind.
  [[nodiscard]] virtual lab::Lab* lab() { return nullptr; }
  [[nodiscard]] virtual RealDomain* real() { return nullptr; }
};

}  // namespace twk::world
