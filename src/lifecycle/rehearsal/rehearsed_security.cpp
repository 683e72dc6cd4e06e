#include "lifecycle/rehearsal/rehearsed_security.hpp"

#include <functional>
#include <utility>

#include "base/errors.hpp"
#include "base/text.hpp"
#include "platform/adsi.hpp"

namespace twk::lifecycle {
namespace {

using platform::SecurityDescriptor;
using platform::Sid;

/// In no domain's range, and the same for each look-up.
Sid invented_sid(const std::string& account) {
  constexpr std::uint32_t kFirst = 1000;
  const auto number = static_cast<std::uint32_t>(std::hash<std::string>{}(base::upper(account)));
  return *Sid::parse("S-1-5-21-0-0-0-" + std::to_string(kFirst + number / 2));
}

}  // namespace

bool RehearsedSecurity::is_domain(const std::string& name) {
  if (base::equals_fold(name, known_domain_))
    return true;
  base::Trap unknown;
  if (!unknown([&] { static_cast<void>(directory_.GetObject(platform::winnt_path(name))); }))
    return false;
  known_domain_ = name;
  return true;
}

std::string RehearsedSecurity::made_account(std::string_view account) {
  const std::size_t backslash = account.find('\\');
  const std::string name(backslash == base::npos ? account : account.substr(backslash + 1));
  if (!directory_.made().has_account(name))
    return {};
  return backslash == base::npos || is_domain(std::string(account.substr(0, backslash))) ? name
                                                                                         : std::string();
}

platform::AccountSid RehearsedSecurity::LookupAccountName(std::string_view server, std::string_view account) {
  const std::string made = made_account(account);
  if (made.empty())
    return real_.LookupAccountName(server, account);
  // Whatever the account, a server that does not answer knows none.
  static_cast<void>(real_.LookupAccountName(server, "Everyone"));
  return {invented_sid(made), known_domain_};
}

std::vector<Sid> RehearsedSecurity::account_identifiers(std::string_view account) {
  const std::string made = made_account(account);
  if (made.empty())
    return real_.account_identifiers(account);
  std::vector<Sid> identifiers = {invented_sid(made), platform::well_known::everyone(),
                                  platform::well_known::authenticated_users()};
  const auto add = [&](const std::string& group) {
    base::Trap unknown;
    unknown([&] {
      for (Sid& sid : real_.account_identifiers(group))
        identifiers.push_back(std::move(sid));
    });
  };
  add("Domain Users");
  const auto state = directory_.made().held_account(made);
  for (const std::string& path : state ? state->groups : std::set<std::string>()) {
    base::Trap unknown;
    unknown([&] {
      const platform::ObjectPtr group = directory_.GetObject(path);
      const bool flat = base::starts_with_fold(path, "WinNT:");
      add(flat ? group->Name() : platform::text_or_empty(*group, "sAMAccountName"));
    });
  }
  return identifiers;
}

SecurityDescriptor RehearsedSecurity::GetFileSecurity(std::string_view path, std::uint32_t parts,
                                                      std::size_t buffer) {
  SecurityDescriptor descriptor;
  base::Trap trap;
  const bool read = trap([&] { descriptor = real_.GetFileSecurity(path, parts, buffer); });
  const bool only_made =
      trap.number() == base::error::kFileNotFound || trap.number() == base::error::kPathNotFound;
  if (!read && !(only_made && files_.exists(path)))
    base::raise(trap.number(), trap.description());
  return descriptor;
}

void RehearsedSecurity::SetFileSecurity(std::string_view path, std::uint32_t parts,
                                        const SecurityDescriptor& /*descriptor*/) {
  if (!files_.exists(path))
    base::raise(base::error::kFileNotFound, "There is no file or folder " + std::string(path));
  std::string text =
      (parts == platform::security_information::kOwner ? "Set the owner of " : "Set permissions on ") +
      std::string(path);
  if (text == told_)
    return;
  tell_(text);
  told_ = std::move(text);
}

}  // namespace twk::lifecycle
