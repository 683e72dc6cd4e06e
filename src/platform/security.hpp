#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/security_descriptor.hpp"

namespace twk::platform {

/// Parts of a descriptor that a call reads or writes, [MS-DTYP] 2.4.7.
namespace security_information {
inline constexpr std::uint32_t kOwner = 1;
inline constexpr std::uint32_t kGroup = 2;
inline constexpr std::uint32_t kDacl = 4;
}  // namespace security_information

/// Names of privileges, [MS-LSAD] 3.1.1.2.1.
namespace privilege {
inline constexpr std::string_view kRestore = "SeRestorePrivilege";
inline constexpr std::string_view kBackup = "SeBackupPrivilege";
inline constexpr std::string_view kTakeOwnership = "SeTakeOwnershipPrivilege";
}  // namespace privilege

/// The result of looking up an account.
struct AccountSid {
  Sid sid;
  std::string domain;  ///< where the account lives: a domain, a server, "BUILTIN", "NT AUTHORITY", or empty
};

/// The token of this process; closed with the object.
class ProcessToken {
 public:
  virtual ~ProcessToken() = default;
  /// `AdjustTokenPrivileges` for one privilege, by the number that `LookupPrivilegeValue` returned. Raises
  /// kNotAllAssigned when the token does not hold it.
  virtual void AdjustTokenPrivileges(std::uint64_t privilege, bool enable) = 0;
};

/// Accounts' identifiers, descriptors of files and folders, privileges of the process: the security calls of
/// advapi32. Every call raises `base::RuntimeError` with the numbers of `security_error`, and those of
/// `Files` for a path that cannot be reached.
class Security {
 public:
  virtual ~Security() = default;

  /// Looks an account up on a server (a name without backslashes; empty means this machine, which asks its
  /// domain). `account` is a name or "DOMAIN\name", in any case; "System", "Everyone" and "Administrators"
  /// are known everywhere. Raises kNoneMapped, kServerUnavailable.
  virtual AccountSid LookupAccountName(std::string_view server, std::string_view account) = 0;
  /// "DOMAIN\name", or the bare name of a well-known identifier; the identifier's text for an unknown
  /// one.
  virtual std::string LookupAccountSid(std::string_view server, const Sid& sid) = 0;

  /// The identifiers that an account acts with: its own, those of its groups at any depth, "Everyone" and
  /// "Authenticated Users". Raises kNoneMapped.
  virtual std::vector<Sid> account_identifiers(std::string_view account) = 0;

  /// Reads parts (`security_information`) of the descriptor of a file or folder into a buffer of that many
  /// bytes. Raises kInsufficientBuffer when the descriptor is larger, kAccessDenied.
  virtual SecurityDescriptor GetFileSecurity(std::string_view path, std::uint32_t parts,
                                             std::size_t buffer) = 0;
  /// Writes parts of the descriptor; the contents of a folder keep theirs. Raises kAccessDenied,
  /// kInvalidOwner, kSharingViolation.
  virtual void SetFileSecurity(std::string_view path, std::uint32_t parts,
                               const SecurityDescriptor& descriptor) = 0;

  virtual std::unique_ptr<ProcessToken> OpenProcessToken() = 0;
  /// The number of a privilege on this machine. Raises kNoSuchPrivilege.
  virtual std::uint64_t LookupPrivilegeValue(std::string_view name) = 0;
};

}  // namespace twk::platform
