#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "base/errors.hpp"
#include "base/secret.hpp"
#include "live/logon/live_settings.hpp"
#include "live/logon/ticket.hpp"

namespace twk::live {

/// Whom the connections of a domain turn to. All may be empty.
struct Prompts {
  /// Asks for the password of that user; none when nobody gave one.
  std::function<std::optional<std::string>(const std::string& user)> password;
  /// Is told what happened to the logon in the middle of the work: a ticket that ended or was renewed, a
  /// server that went away.
  std::function<void(const std::string& text)> tell;
  /// True when the person wants the work to end.
  std::function<bool()> is_stopped = {};
};

/// By what one person logs on to the servers of a domain. All connections share it, so that a password is
/// asked for once and a ticket is fetched once.
///
/// What was refused is not tried again: a domain locks accounts after a few wrong passwords.
class Credentials {
 public:
  Credentials(LiveSettings settings, Prompts prompts);
  Credentials(const Credentials&) = delete;
  Credentials& operator=(const Credentials&) = delete;
  ~Credentials() { base::wipe(settings_.password); }

  [[nodiscard]] const LiveSettings& settings() const { return settings_; }
  /// True when a user and a password are what counts, be it for a ticket.
  [[nodiscard]] bool has_user() const { return !settings_.user.empty(); }
  /// The password, asked for at the first call. Raises kLogonFailure when there is none, and what
  /// `refuse_password` kept.
  const std::string& password();
  /// Keeps the refusal for every later call of `password`.
  void refuse_password(const base::RuntimeError& refusal) { refusal_ = refusal; }

  /// A ticket that is good now. The one in hand, or when that has ended what the workstation's cache holds
  /// now, or a new one got with the password. Raises what `Ticket` raises.
  const Ticket& ticket();
  /// Reads the workstation's cache anew at the next call of `ticket`.
  void forget_ticket() { ticket_.reset(); }

  /// Tells a failure of a connection that there had been, once until there is one again.
  void tell_failure(const std::string& text);
  void tell_recovery();

  [[nodiscard]] bool is_stopped() const { return prompts_.is_stopped && prompts_.is_stopped(); }

 private:
  void tell(const std::string& text) const;

  LiveSettings settings_;
  Prompts prompts_;
  std::unique_ptr<Ticket> ticket_;
  std::optional<base::RuntimeError> refusal_;
  std::string told_;
};

}  // namespace twk::live
