#include "lab/services/terminal_settings.hpp"

#include "lab/domain/entry_view.hpp"
#include "lab/store/errors.hpp"
#include "platform/user_parameters.hpp"

namespace twk::lab {
namespace {

constexpr std::string_view kAttribute = "userParameters";

const Entry& require_user(const LabDomain& domain, std::string_view name) {
  const Entry* const user = find_account(domain, name, true);
  if (user == nullptr)
    raise(platform::network_error::kUserNotFound, "The domain has no user " + std::string(name));
  return *user;
}

std::string stored_text(const Entry& user) {
  return user.value(kAttribute).value_or("");
}

platform::UserParameters parameters_of(std::string_view text) {
  return platform::UserParameters::decode(platform::user_parameters_bytes(text));
}

/// What was read is no longer what is stored.
struct Outrun {};

}  // namespace

platform::WtsConfigValue query_terminal_setting(LabDomain& domain, std::string_view user,
                                                platform::WtsConfigClass setting) {
  domain.store.refresh();
  return platform::wts_setting(parameters_of(stored_text(require_user(domain, user))), setting);
}

void set_terminal_setting(LabDomain& domain, std::string_view user, platform::WtsConfigClass setting,
                          const platform::WtsConfigValue& value) {
  for (;;) {
    domain.store.refresh();
    const Entry& entry = require_user(domain, user);
    const std::string dn = entry.dn();
    const std::string before = stored_text(entry);
    platform::UserParameters parameters = parameters_of(before);
    platform::set_wts_setting(parameters, setting, value);
    const std::string after = platform::user_parameters_text(parameters.encode());
    if (after == before)
      return;
    try {
      domain.store.modify(dn, {{ModifyKind::kReplace, std::string(kAttribute), {after}}}, [&] {
        const Entry& now = require_user(domain, user);
        if (now.dn() != dn || stored_text(now) != before)
          throw Outrun{};
      });
      return;
    } catch (const Outrun&) {
      continue;
    }
  }
}

}  // namespace twk::lab
