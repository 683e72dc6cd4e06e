#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "base/errors.hpp"
#include "lab/store/ldif.hpp"
#include "live/terms/check_step.hpp"
#include "live/terms/live_settings.hpp"
#include "live/terms/prompts.hpp"
#include "live/terms/user_folders.hpp"
#include "world/ground.hpp"

/// Real domains, as far as the rest of the program sees them. What talks to them is a module of its own:
/// loading its libraries takes longer than most commands need, so it is loaded when a real domain is asked
/// for.
namespace twk::world {

/// What a real domain alone can be asked.
class RealDomain {
 public:
  struct Names {
    std::string domain;
    std::string netbios;
    std::string controller;  ///< host name
    std::string root_dn;
  };
  struct Entry {
    std::string dn;
    std::vector<lab::LdifAttribute> attributes;
  };

  virtual ~RealDomain() = default;

  /// Raises kNotImplementedByProvider for an NT domain, which has no directory, and what `Ground::connect`
  /// raises.
  [[nodiscard]] virtual Names directory_names() = 0;
  /// Every entry of the domain that an LDAP filter (RFC 4515) selects, with those of the attributes that it
  /// has: all values of a long list, and "cannot change password" as a flag of "userAccountControl", as a lab
  /// has it. Ends when `visit` returns false. Raises what the directory raises.
  virtual void read(const std::string& filter, const std::vector<std::string>& attributes,
                    const std::function<bool(Entry&& entry)>& visit) = 0;
};

class RealDomains {
 public:
  virtual ~RealDomains() = default;

  /// The domains that this workstation can know of without a logon, as DNS names in small letters, likeliest
  /// first.
  virtual std::vector<std::string> discover() = 0;
  /// The domain that is meant when none is named: that of the Kerberos ticket, otherwise of the default
  /// realm; empty when there is neither.
  virtual std::string usual() = 0;
  /// Checks everything that a logon to the domain needs, and reports each step as it ends. A step that needs
  /// one that failed is skipped, and so is what is left when `prompts` say to stop. Writes nothing. Raises
  /// only what `tell` and the prompts raise.
  virtual std::vector<live::CheckStep> check_connection(
      const live::LiveSettings& settings, const live::Prompts& prompts, const live::CheckedPlace& place,
      const std::function<void(const live::CheckStep&)>& tell) = 0;
  /// The domain is not queried yet. `refusal`, if any, is raised by each attempt to connect.
  virtual std::unique_ptr<Ground> make_ground(live::LiveSettings settings, live::Prompts prompts,
                                              const live::Folders& folders,
                                              std::optional<base::RuntimeError> refusal) = 0;
};

/// The module, loaded at the first call from lib/tarnwick beside the folder of the program. Raises 126 with
/// the reason when it cannot be loaded, or belongs to another version because the program was replaced while
/// this one runs.
RealDomains& real_domains();

}  // namespace twk::world

/// What the module gives to the program of its version; null to another.
extern "C" twk::world::RealDomains* twk_real_domains(const char* version);
