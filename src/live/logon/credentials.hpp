#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>

#include "base/errors.hpp"
#include "base/secret.hpp"
#include "live/logon/logon_name.hpp"
#include "live/logon/ticket.hpp"
#include "live/terms/live_settings.hpp"
#include "live/terms/prompts.hpp"

namespace twk::live {

/// How one person logs on to the servers of a domain. All connections share it, so that a password is
/// asked for once and a ticket is got once.
///
/// A refused password is not tried again: a domain locks accounts after a few wrong passwords.
class Credentials {
 public:
  Credentials(LiveSettings settings, Prompts prompts);
  Credentials(const Credentials&) = delete;
  Credentials& operator=(const Credentials&) = delete;
  ~Credentials() { base::wipe(settings_.password); }

  [[nodiscard]] const LiveSettings& settings() const { return settings_; }
  /// True when user and password are used, even if only to get a ticket.
  [[nodiscard]] bool has_user() const { return !settings_.user.empty(); }
  /// How the domain's pre-2000 name can be found out, by which "CORP\jo" is one of its users.
  void learn_netbios_by(std::function<std::string()> ask) { ask_netbios_ = std::move(ask); }
  /// What logs on to servers by Kerberos; empty when NTLM has to do. Asks for the pre-2000 name at most once.
  const std::string& kerberos_name();
  /// The password, asked for at the first call. Raises kLogonFailure when there is none, and what
  /// `refuse_password` kept.
  const std::string& password();
  /// Keeps the refusal for every later call of `password`.
  void refuse_password(const base::RuntimeError& refusal) { refusal_ = refusal; }

  /// A valid ticket: the current one, or when that has expired, the one in the workstation's cache, or a new
  /// one got with the password. Raises what `Ticket` raises.
  const Ticket& ticket();

  /// Tells the person something about the domain's servers.
  void tell(const std::string& text) const;
  /// Reports that an existing connection failed, once until there is one again.
  void tell_failure(const std::string& text);
  void tell_recovery();

  [[nodiscard]] bool is_stopped() const { return prompts_.is_stopped && prompts_.is_stopped(); }

 private:
  LiveSettings settings_;
  Prompts prompts_;
  std::unique_ptr<Ticket> ticket_;
  std::optional<base::RuntimeError> refusal_;
  std::string told_;
  std::function<std::string()> ask_netbios_;
  std::optional<std::string> kerberos_name_;
};

}  // namespace twk::live
