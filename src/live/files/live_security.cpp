#include "live/files/live_security.hpp"

#include <netdb.h>

#include <array>
#include <set>

#include "ads/account_names.hpp"
#include "base/errors.hpp"
#include "base/text.hpp"
#include "live/domain/account_sid.hpp"
#include "live/files/descriptor_text.hpp"
#include "live/files/owner_command.hpp"
#include "platform/adsi.hpp"

namespace twk::live {
namespace {

using platform::AccountSid;
using platform::SecurityDescriptor;
using platform::Sid;
namespace information = platform::security_information;
namespace security_error = platform::security_error;

/// The descriptor as one attribute of a file, with identifiers instead of names.
constexpr const char* kDescriptor = "system.nt_sec_desc.*";

struct Privilege {
  std::string_view name;
  std::uint64_t number;
};

/// [MS-LSAD] 3.1.1.2.1.
constexpr std::array kPrivileges = {Privilege{platform::privilege::kTakeOwnership, 9},
                                    Privilege{platform::privilege::kBackup, 17},
                                    Privilege{platform::privilege::kRestore, 18}};

class Token final : public platform::ProcessToken {
 public:
  void AdjustTokenPrivileges(std::uint64_t number, bool /*enable*/) override {
    for (const Privilege& privilege : kPrivileges) {
      if (privilege.number == number)
        return;
    }
    base::raise(security_error::kNotAllAssigned, "Not all privileges are assigned to the caller");
  }
};

bool is_builtin(const Sid& sid) {
  return sid.text().starts_with("S-1-5-32-");
}

SecurityDescriptor parse_descriptor_of(const SmbPath& place, std::string_view text) {
  try {
    return parse_descriptor(text);
  } catch (const base::RuntimeError& failure) {
    base::raise(security_error::kInvalidDescriptor, place.text() + ": " + failure.description());
  }
}

SmbPath require_place(std::string_view path) {
  auto place = parse_smb_path(path);
  if (!place) {
    base::raise(platform::ads_error::kNotImplementedByProvider,
                "Files of the workstation have no security descriptor: " + std::string(path));
  }
  return *std::move(place);
}

[[noreturn]] void raise_none_mapped(std::string_view account) {
  base::raise(security_error::kNoneMapped,
              "No mapping between account names and security IDs was done: " + std::string(account));
}

}  // namespace

void LiveSecurity::require_server(std::string_view server) {
  const std::string host(ads::without_backslashes(server));
  if (host.empty() || domain_.is_domain_name(host) || base::equals_fold(host, domain_.controller()))
    return;
  const auto [entry, fresh] = servers_.try_emplace(base::upper(host), false);
  if (fresh) {
    addrinfo* addresses = nullptr;
    entry->second = getaddrinfo(host.c_str(), nullptr, nullptr, &addresses) == 0;
    if (addresses != nullptr)
      freeaddrinfo(addresses);
  }
  if (!entry->second)
    base::raise(security_error::kServerUnavailable, "The name of the server " + host + " is not known");
}

AccountSid LiveSecurity::LookupAccountName(std::string_view server, std::string_view account) {
  require_server(server);
  const ads::AccountName wanted = ads::split_account_name(account);
  if (auto known = ads::well_known_account(wanted))
    return *std::move(known);
  const bool builtin = base::equals_fold(wanted.domain, "BUILTIN");
  if (!wanted.domain.empty() && !builtin && !domain_.is_domain_name(wanted.domain))
    raise_none_mapped(account);
  const auto sid = wanted.name.empty() ? std::nullopt : find_account_sid(domain_, wanted.name);
  if (!sid || (builtin && !is_builtin(*sid)))
    raise_none_mapped(account);
  return {*sid, is_builtin(*sid) ? "BUILTIN" : domain_.netbios()};
}

std::string LiveSecurity::LookupAccountSid(std::string_view server, const Sid& sid) {
  require_server(server);
  if (auto known = ads::well_known_text(sid))
    return *std::move(known);
  const auto name = find_account_name(domain_, sid);
  if (!name)
    return sid.text();
  return (is_builtin(sid) ? "BUILTIN" : domain_.netbios()) + "\\" + *name;
}

std::vector<Sid> LiveSecurity::account_identifiers(std::string_view account) {
  const Sid own = LookupAccountName({}, account).sid;
  const std::vector<Sid> found = find_identifiers(domain_, own);
  if (found.empty())
    raise_none_mapped(account);
  std::set<Sid> identifiers(found.begin(), found.end());
  identifiers.insert({platform::well_known::everyone(), platform::well_known::authenticated_users()});
  return {identifiers.begin(), identifiers.end()};
}

SecurityDescriptor LiveSecurity::GetFileSecurity(std::string_view path, std::uint32_t parts,
                                                 std::size_t buffer) {
  const SmbPath place = require_place(path);
  SecurityDescriptor descriptor = parse_descriptor_of(place, client_.attribute(place, kDescriptor));
  if ((parts & information::kOwner) == 0)
    descriptor.owner.reset();
  if ((parts & information::kGroup) == 0)
    descriptor.group.reset();
  if ((parts & information::kDacl) == 0) {
    descriptor.dacl_present = false;
    descriptor.dacl.reset();
  }
  const std::size_t size = descriptor.encode().size();
  if (size > buffer) {
    base::raise(security_error::kInsufficientBuffer, "The descriptor of " + place.text() + " takes " +
                                                         base::to_text(static_cast<std::int64_t>(size)) +
                                                         " bytes, more than the buffer has");
  }
  return descriptor;
}

void LiveSecurity::SetFileSecurity(std::string_view path, std::uint32_t parts,
                                   const SecurityDescriptor& descriptor) {
  const SmbPath place = require_place(path);
  if ((parts & information::kOwner) != 0)
    write_owner(place, descriptor.owner);
  SecurityDescriptor rest;
  if ((parts & information::kGroup) != 0)
    rest.group = descriptor.group;
  if ((parts & information::kDacl) != 0) {
    rest.dacl_present = descriptor.dacl_present;
    rest.dacl = descriptor.dacl;
  }
  if (rest.group || rest.dacl_present)
    client_.set_attribute(place, kDescriptor, descriptor_text(rest));
}

void LiveSecurity::write_owner(const SmbPath& place, const std::optional<Sid>& owner) {
  if (!owner)
    base::raise(security_error::kInvalidDescriptor, "The descriptor names no owner");
  SecurityDescriptor descriptor;
  descriptor.owner = owner;
  base::Trap trap;
  trap([&] { client_.set_attribute(place, kDescriptor, descriptor_text(descriptor)); });
  if (trap.number() == security_error::kAccessDenied)
    write_owner_by_command(domain_.credentials(), place, *owner);
  else if (trap.number() != 0)
    base::raise(trap.number(), trap.description());
}

std::unique_ptr<platform::ProcessToken> LiveSecurity::OpenProcessToken() {
  return std::make_unique<Token>();
}

std::uint64_t LiveSecurity::LookupPrivilegeValue(std::string_view name) {
  for (const Privilege& privilege : kPrivileges) {
    if (base::equals_fold(privilege.name, name))
      return privilege.number;
  }
  base::raise(security_error::kNoSuchPrivilege, "A specified privilege does not exist: " + std::string(name));
}

}  // namespace twk::live
