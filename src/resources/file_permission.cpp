#include "resources/file_permission.hpp"

#include <array>

#include "base/text.hpp"
#include "resources/account_lookup.hpp"
#include "resources/ownership.hpp"
#include "session/session.hpp"

namespace twk::resources {
namespace {

using platform::Ace;
using platform::Acl;
using platform::SecurityDescriptor;
using platform::Sid;
using session::Session;
namespace part = platform::security_information;

constexpr std::size_t kDescriptorBuffer = 4000;
constexpr std::size_t kRoomForNewEntries = 200;

struct Access {
  std::string_view word;
  std::int32_t mode;
  std::uint8_t type;
  std::uint32_t mask;
};

constexpr std::array<Access, 4> kAccess = {{
    {"Full Control", access_mode::kFullControl, platform::ace_type::kAllow, 0x1F01FF},
    {"Change", access_mode::kChange, platform::ace_type::kAllow, 0x1301BF},
    {"Read", access_mode::kRead, platform::ace_type::kAllow, 0x1200A9},
    {"No Access", access_mode::kNoAccess, platform::ace_type::kDeny, 0x1F01FF},
}};

const Access& access_of(std::int32_t mode) {
  for (const Access& access : kAccess) {
    if (access.mode == mode)
      return access;
  }
  return kAccess.front();
}

void debug_line(Session& session, std::string_view text) {
  if (session::is_debug(session))
    session.log.line(text);
}

void report(Session& session, const PermissionFailure& failure) {
  debug_line(session, "Error: " + failure.step());
  debug_line(session, "Code: " + base::to_text(failure.number()));
  debug_line(session, "Desc: " + failure.description());
}

/// Runs one call of the system; its failure bears the name of the step.
template <typename Call>
auto at_step(const char* step, Call&& call) {
  try {
    return call();
  } catch (const base::RuntimeError& failure) {
    throw PermissionFailure(step, failure);
  }
}

std::string look_up_line(const Session& session, const std::string& server, const std::string& account) {
  return "Server:" + server + " Account:" + account + " Domain:" + session.DomainName;
}

Sid look_up_system(Session& session, const std::string& server, const std::string& account) {
  try {
    return session.platform.security.LookupAccountName(server, "System").sid;
  } catch (const base::RuntimeError& failure) {
    session.log.line("Error from Permissions:");
    session.log.line(look_up_line(session, server, account));
    throw PermissionFailure("LookupAccountName - 1", failure);
  }
}

Sid look_up_account(Session& session, std::string& server, const std::string& account) {
  platform::Security& security = session.platform.security;
  std::optional<Sid> sid;
  base::Trap trap;
  if (trap([&] { sid = security.LookupAccountName(server, account).sid; }))
    return *sid;
  server = fallback_server(session);
  try {
    return security.LookupAccountName(server, account).sid;
  } catch (const base::RuntimeError& failure) {
    session.log.line(look_up_line(session, server, account));
    throw PermissionFailure("LookupAccountName - 2", failure);
  }
}

bool is_kept(const Ace& entry, const Sid& system, const Sid& account, bool replaceAll) {
  return replaceAll ? entry.sid() == system : entry.sid() != account;
}

Acl new_list(Session& session, const std::optional<Acl>& old, const Sid& system, const Sid& account,
             const FilePermission& permission) {
  debug_line(session, "Create new ACL");
  Acl list = at_step("InitializeAcl", [&] {
    return old ? Acl(old->size() + kRoomForNewEntries, old->revision()) : Acl(kRoomForNewEntries);
  });
  if (old) {
    for (const Ace& entry : old->entries()) {
      if (is_kept(entry, system, account, permission.replaceAll))
        at_step("AddAce", [&] { list.add(Acl::kAtEnd, entry); });
    }
  }
  if (permission.mode == access_mode::kStripOnly)
    return list;
  debug_line(session, "Add in ACE");
  namespace flag = platform::ace_flag;
  const Access& access = access_of(permission.mode);
  const Ace for_files(access.type, flag::kObjectInherit | flag::kInheritOnly, access.mask, account);
  const Ace for_folders(access.type, flag::kContainerInherit, access.mask, account);
  at_step("AddAce - new1", [&] { list.add(0, for_files); });
  at_step("AddAce - new2", [&] { list.add(0, for_folders); });
  return list;
}

void require_written(const base::Trap& trap) {
  if (trap.number() != 0)
    throw PermissionFailure("SetFileSecurity", base::RuntimeError(trap.number(), trap.description()));
}

SecurityDescriptor descriptor_of_owner(const Sid& account) {
  SecurityDescriptor descriptor;
  descriptor.owner = account;
  return descriptor;
}

void write_owner(Session& session, const std::string& path, const Sid& account) {
  const bool enabled = EnablePrivilege(session, platform::privilege::kRestore);
  base::Trap written;
  written(
      [&] { session.platform.security.SetFileSecurity(path, part::kOwner, descriptor_of_owner(account)); });
  if (enabled)
    DisablePrivilege(session, platform::privilege::kRestore);
  require_written(written);
}

void write_tree(Session& session, const std::string& path, const SecurityDescriptor& list,
                const Sid& account) {
  platform::Security& security = session.platform.security;
  const SecurityDescriptor owner = descriptor_of_owner(account);
  const bool enabled = EnablePrivilege(session, platform::privilege::kRestore);
  base::Trap owner_written;
  owner_written([&] { security.SetFileSecurity(path, part::kOwner, owner); });
  base::Trap list_written;
  list_written([&] { security.SetFileSecurity(path, part::kDacl, list); });
  SetTreeSecurity(session, path, "*.*", list, owner);
  if (enabled)
    DisablePrivilege(session, platform::privilege::kRestore);
  require_written(owner_written);
  require_written(list_written);
}

}  // namespace

std::optional<std::int32_t> mode_of_access_word(std::string_view word) {
  for (const Access& access : kAccess) {
    if (access.word == word)
      return access.mode;
  }
  return std::nullopt;
}

std::uint32_t mask_of_access_word(std::string_view word) {
  const auto mode = mode_of_access_word(word);
  return mode ? access_of(*mode).mask : 0;
}

std::optional<std::string_view> access_word(std::uint8_t ace_type, std::uint32_t mask) {
  for (const Access& access : kAccess) {
    if (access.type == ace_type && access.mask == mask)
      return access.word;
  }
  return std::nullopt;
}

void write_file_permission(Session& session, std::string& server, const std::string& path,
                           const FilePermission& permission) {
  platform::Security& security = session.platform.security;
  const Sid system = look_up_system(session, server, permission.account);
  const Sid account = look_up_account(session, server, permission.account);
  debug_line(session, "Account lookups done.");
  debug_line(session, "Get Security Descriptor.");
  const SecurityDescriptor old = at_step(
      "GetFileSecurity", [&] { return security.GetFileSecurity(path, part::kDacl, kDescriptorBuffer); });
  SecurityDescriptor fresh;
  fresh.set_dacl(new_list(session, old.dacl, system, account, permission));
  debug_line(session, "Write D-ACL");
  if (permission.ownerOnly)
    return write_owner(session, path, account);
  if (permission.recurse)
    return write_tree(session, path, fresh, account);
  at_step("SetFileSecurity", [&] { security.SetFileSecurity(path, part::kDacl, fresh); });
}

void take_owner(Session& session, std::string& server, const std::string& path, const std::string& account) {
  write_owner(session, path, look_up_account(session, server, account));
}

bool SetFilePermission(Session& session, std::string& server, const std::string& path,
                       const FilePermission& permission) {
  try {
    write_file_permission(session, server, path, permission);
    return true;
  } catch (const PermissionFailure& failure) {
    report(session, failure);
    return false;
  }
}

}  // namespace twk::resources
