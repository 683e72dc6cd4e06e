#include "resources/file_permission.hpp"

#include <algorithm>
#include <array>

#include "base/error_words.hpp"
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

constexpr std::size_t kFirstBuffer = 4000;
constexpr std::size_t kLargestBuffer = 0x20000;
constexpr std::size_t kRoomForNewEntries = 200;
constexpr std::size_t kLargestList = 0xFFFC;
constexpr const char* kAdministrators = "Administrators";

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

void report(Session& session, const std::string& what, const PermissionFailure& failure) {
  session.log.reason(what + ": " + base::in_words(failure.number(), failure.description()));
  debug_line(session, "Error: " + failure.step());
  debug_line(session, "Code: " + base::to_text(failure.number()));
  debug_line(session, "Desc: " + failure.description());
}

/// Runs one call of the system; its failure has the name of the step.
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

/// Whom the entries of a list are for.
struct Accounts {
  Sid system;
  Sid account;
};

Accounts look_up(Session& session, std::string& server, const std::string& account) {
  const Sid system = look_up_system(session, server, account);
  return {system, look_up_account(session, server, account)};
}

/// The descriptor, in a buffer that grows as needed.
SecurityDescriptor read_list(Session& session, const std::string& path) {
  for (std::size_t buffer = kFirstBuffer;; buffer *= 2) {
    try {
      return session.platform.security.GetFileSecurity(path, part::kDacl, buffer);
    } catch (const base::RuntimeError& failure) {
      if (failure.number() != platform::security_error::kInsufficientBuffer || buffer >= kLargestBuffer)
        throw PermissionFailure("GetFileSecurity", failure);
    }
  }
}

bool is_about_the_list(std::uint32_t number) {
  namespace error = platform::security_error;
  return number == error::kAccessDenied || number == error::kInsufficientBuffer ||
         number == error::kInvalidAcl || number == error::kInvalidSid || number == error::kInvalidDescriptor;
}

/// A replacement keeps only the entries for "System" from the old list, and can do without it.
std::optional<Acl> old_list(Session& session, const std::string& path, const FilePermission& permission) {
  try {
    return read_list(session, path).dacl;
  } catch (const PermissionFailure& failure) {
    if (!permission.replaceAll || !is_about_the_list(failure.number()))
      throw;
    session.log.line("The old list cannot be read, so nothing of it is kept: " +
                     base::in_words(failure.number(), failure.description()));
    return std::nullopt;
  }
}

bool is_kept(const Ace& entry, const Accounts& accounts, bool replaceAll) {
  return replaceAll ? entry.sid() == accounts.system : entry.sid() != accounts.account;
}

Acl new_list(Session& session, const std::optional<Acl>& old, const Accounts& accounts,
             const FilePermission& permission) {
  debug_line(session, "Create new ACL");
  Acl list = at_step("InitializeAcl", [&] {
    if (!old)
      return Acl(kRoomForNewEntries);
    // What a replacement drops leaves enough room.
    const std::size_t wanted = old->size() + kRoomForNewEntries;
    return Acl(permission.replaceAll ? std::min(wanted, kLargestList) : wanted, old->revision());
  });
  if (old) {
    for (const Ace& entry : old->entries()) {
      if (is_kept(entry, accounts, permission.replaceAll))
        at_step("AddAce", [&] { list.add(Acl::kAtEnd, entry); });
    }
  }
  if (permission.mode == access_mode::kStripOnly)
    return list;
  debug_line(session, "Add in ACE");
  namespace flag = platform::ace_flag;
  const Access& access = access_of(permission.mode);
  const Ace for_files(access.type, flag::kObjectInherit | flag::kInheritOnly, access.mask, accounts.account);
  const Ace for_folders(access.type, flag::kContainerInherit, access.mask, accounts.account);
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

TreeOutcome write_tree(Session& session, const std::string& path, const SecurityDescriptor& list,
                       const Sid& account) {
  platform::Security& security = session.platform.security;
  const SecurityDescriptor owner = descriptor_of_owner(account);
  const bool enabled = EnablePrivilege(session, platform::privilege::kRestore);
  base::Trap owner_written;
  owner_written([&] { security.SetFileSecurity(path, part::kOwner, owner); });
  base::Trap list_written;
  list_written([&] { security.SetFileSecurity(path, part::kDacl, list); });
  TreeOutcome outcome = SetTreeSecurity(session, path, "*.*", list, owner);
  if (enabled)
    DisablePrivilege(session, platform::privilege::kRestore);
  require_written(owner_written);
  require_written(list_written);
  ++outcome.written;
  return outcome;
}

TreeOutcome write_for(Session& session, const std::string& path, const FilePermission& permission,
                      const Accounts& accounts) {
  debug_line(session, "Get Security Descriptor.");
  const std::optional<Acl> old = old_list(session, path, permission);
  SecurityDescriptor fresh;
  fresh.set_dacl(new_list(session, old, accounts, permission));
  debug_line(session, "Write D-ACL");
  if (permission.recurse)
    return write_tree(session, path, fresh, accounts.account);
  at_step("SetFileSecurity", [&] { session.platform.security.SetFileSecurity(path, part::kDacl, fresh); });
  return {};
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

TreeOutcome write_file_permission(Session& session, std::string& server, const std::string& path,
                                  const FilePermission& permission) {
  const Accounts accounts = look_up(session, server, permission.account);
  debug_line(session, "Account lookups done.");
  if (!permission.ownerOnly)
    return write_for(session, path, permission, accounts);
  write_owner(session, path, accounts.account);
  return {};
}

void take_owner(Session& session, std::string& server, const std::string& path, const std::string& account) {
  write_owner(session, path, look_up_account(session, server, account));
}

TreeOutcome take_tree(Session& session, std::string& server, const std::string& path,
                      const std::string& account) {
  const Accounts accounts = look_up(session, server, account);
  take_owner(session, server, path, kAdministrators);
  try {
    return write_for(session, path, {.account = account, .replaceAll = true, .recurse = true}, accounts);
  } catch (const PermissionFailure& failure) {
    throw PermissionFailure(
        failure.step(), base::RuntimeError(failure.number(),
                                           failure.description() + ". Administrators own " + path + " now"));
  }
}

bool SetFilePermission(Session& session, std::string& server, const std::string& path,
                       const FilePermission& permission) {
  try {
    const TreeOutcome outcome = write_file_permission(session, server, path, permission);
    if (outcome.stopped)
      session.log.reason(path + ": stopped after " +
                         base::to_text(static_cast<std::int64_t>(outcome.written)) + " files and folders");
    return !outcome.stopped;
  } catch (const PermissionFailure& failure) {
    report(session, permission.account + " on " + path, failure);
    return false;
  }
}

}  // namespace twk::resources
