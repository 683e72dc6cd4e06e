#include "live/logon/credentials.hpp"

#include "platform/directory.hpp"

namespace twk::live {

namespace ads_error = platform::ads_error;

Credentials::Credentials(LiveSettings settings, Prompts prompts)
    : settings_(std::move(settings)), prompts_(std::move(prompts)) {}

const std::string& Credentials::password() {
  if (refusal_)
    throw base::RuntimeError(*refusal_);
  if (!has_user())
    base::raise(ads_error::kLogonFailure, "No user is named to log on as");
  if (settings_.password.empty() && prompts_.password)
    settings_.password = prompts_.password(settings_.user).value_or(std::string());
  // An empty password would be no logon at all: RFC 4513 5.1.2 lets a server treat it as anonymous.
  if (settings_.password.empty())
    base::raise(ads_error::kLogonFailure, "No password was given for " + settings_.user);
  return settings_.password;
}

const Ticket& Credentials::ticket() {
  if (ticket_ != nullptr && !ticket_->has_ended())
    return *ticket_;
  ticket_.reset();
  if (!has_user()) {
    ticket_ = Ticket::current(settings_.domain);
    return *ticket_;
  }
  try {
    ticket_ = Ticket::with_password(settings_.user, settings_.domain, password());
  } catch (const base::RuntimeError& failure) {
    if (failure.number() == ads_error::kLogonFailure)
      refuse_password(failure);
    throw;
  }
  return *ticket_;
}

const std::string& Credentials::kerberos_name() {
  if (kerberos_name_)
    return *kerberos_name_;
  std::string netbios;
  // A directory that does not answer leaves it to NTLM.
  base::Trap unknown;
  if (ask_netbios_ && settings_.user.find('\\') != std::string::npos)
    unknown([&] { netbios = ask_netbios_(); });
  kerberos_name_ = live::kerberos_name(settings_, netbios);
  return *kerberos_name_;
}

void Credentials::tell(const std::string& text) const {
  if (prompts_.tell)
    prompts_.tell(text);
}

void Credentials::tell_failure(const std::string& text) {
  if (text == told_)
    return;
  told_ = text;
  tell(text);
}

void Credentials::tell_recovery() {
  if (told_.empty())
    return;
  told_.clear();
  tell("The domain is connected again");
}

}  // namespace twk::live
