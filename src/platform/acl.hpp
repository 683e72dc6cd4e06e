#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "base/bytes.hpp"
#include "platform/sid.hpp"

namespace twk::platform {

/// Numbers of the security calls, [MS-ERREF] 2.2.
namespace security_error {

inline constexpr std::uint32_t kAccessDenied = 5;
inline constexpr std::uint32_t kSharingViolation = 32;
inline constexpr std::uint32_t kInsufficientBuffer = 122;
inline constexpr std::uint32_t kNotAllAssigned = 1300;  ///< a privilege is not held
inline constexpr std::uint32_t kNoSuchPrivilege = 1313;
inline constexpr std::uint32_t kInvalidOwner = 1307;  ///< an owner that the caller may not set
inline constexpr std::uint32_t kNoneMapped = 1332;    ///< no account has that name
inline constexpr std::uint32_t kInvalidAcl = 1336;
inline constexpr std::uint32_t kInvalidSid = 1337;
inline constexpr std::uint32_t kInvalidDescriptor = 1338;
inline constexpr std::uint32_t kAllottedSpaceExceeded = 1344;
inline constexpr std::uint32_t kServerUnavailable = 1722;  ///< RPC_S_SERVER_UNAVAILABLE

}  // namespace security_error

/// Types of an entry, [MS-DTYP] 2.4.4.1.
namespace ace_type {
inline constexpr std::uint8_t kAllow = 0;
inline constexpr std::uint8_t kDeny = 1;
}  // namespace ace_type

/// Flags of an entry, [MS-DTYP] 2.4.4.1.
namespace ace_flag {
inline constexpr std::uint8_t kObjectInherit = 0x01;
inline constexpr std::uint8_t kContainerInherit = 0x02;
inline constexpr std::uint8_t kNoPropagate = 0x04;
inline constexpr std::uint8_t kInheritOnly = 0x08;
inline constexpr std::uint8_t kInherited = 0x10;
}  // namespace ace_flag

/// Bits of an access mask, [MS-DTYP] 2.4.3, those of files by [MS-SMB2] 2.2.13.1.
namespace access {

inline constexpr std::uint32_t kFileReadData = 0x1;    ///< of a folder: list it
inline constexpr std::uint32_t kFileWriteData = 0x2;   ///< of a folder: add a file
inline constexpr std::uint32_t kFileAppendData = 0x4;  ///< of a folder: add a folder
inline constexpr std::uint32_t kFileDeleteChild = 0x40;
inline constexpr std::uint32_t kDelete = 0x10000;
inline constexpr std::uint32_t kReadControl = 0x20000;
inline constexpr std::uint32_t kWriteDac = 0x40000;
inline constexpr std::uint32_t kWriteOwner = 0x80000;
inline constexpr std::uint32_t kGenericAll = 0x10000000;
inline constexpr std::uint32_t kGenericExecute = 0x20000000;
inline constexpr std::uint32_t kGenericWrite = 0x40000000;
inline constexpr std::uint32_t kGenericRead = 0x80000000;

inline constexpr std::uint32_t kFileAll = 0x1F01FF;  ///< what kGenericAll means for a file
inline constexpr std::uint32_t kFileGenericRead = 0x120089;
inline constexpr std::uint32_t kFileGenericWrite = 0x120116;
inline constexpr std::uint32_t kFileGenericExecute = 0x1200A0;

}  // namespace access

/// One entry of an access list, as its bytes ([MS-DTYP] 2.4.4): type, flags, size (2 bytes), then, for all
/// types except the reserved type 4, the access mask (4 bytes) and, after the two object identifiers that
/// types 5 to 8, 11, 12, 15 and 16 may have, the account's identifier. What follows is kept. Always well
/// formed in size.
class Ace {
 public:
  Ace(std::uint8_t type, std::uint8_t flags, std::uint32_t mask, const Sid& sid);

  /// The entry that `bytes` begins with. Raises kInvalidAcl when its size does not fit.
  static Ace decode(std::span<const std::uint8_t> bytes);

  [[nodiscard]] const base::Bytes& bytes() const { return bytes_; }
  [[nodiscard]] std::size_t size() const { return bytes_.size(); }
  [[nodiscard]] std::uint8_t type() const { return bytes_[0]; }
  [[nodiscard]] std::uint8_t flags() const { return bytes_[1]; }
  /// 0 for an entry without one.
  [[nodiscard]] std::uint32_t mask() const;
  /// None for an entry of a type that holds none, or that is too short.
  [[nodiscard]] std::optional<Sid> sid() const;

  friend bool operator==(const Ace&, const Ace&) = default;

 private:
  explicit Ace(base::Bytes bytes) : bytes_(std::move(bytes)) {}
  base::Bytes bytes_;
};

/// An access list, [MS-DTYP] 2.4.5: revision, a zero byte, the size of the list in bytes (which may be more
/// than its entries take), their number, two zero bytes, the entries.
class Acl {
 public:
  static constexpr std::size_t kHeaderSize = 8;
  static constexpr std::uint8_t kRevision = 2;

  /// `InitializeAcl`: an empty list of `size` bytes, header and all. Raises kInvalidAcl for a size or a
  /// revision (2 and 4 are known) that no list has.
  Acl(std::size_t size, std::uint8_t revision = kRevision);

  /// The list that `bytes` begins with. Raises kInvalidAcl for anything that is not one to its last entry.
  static Acl decode(std::span<const std::uint8_t> bytes);

  static constexpr std::size_t kAtEnd = static_cast<std::size_t>(-1);
  /// `AddAce`: puts the entry before the one at `index`, or at the end. Raises kAllottedSpaceExceeded when
  /// the list has no room for it.
  void add(std::size_t index, const Ace& ace);

  [[nodiscard]] std::uint8_t revision() const { return revision_; }
  [[nodiscard]] const std::vector<Ace>& entries() const { return entries_; }
  /// Size in bytes, room for more entries included.
  [[nodiscard]] std::size_t size() const { return size_; }
  /// What header and entries take.
  [[nodiscard]] std::size_t used() const { return used_; }
  /// The same list without room for more.
  [[nodiscard]] Acl trimmed() const;
  /// `size()` bytes; the room is zeros.
  [[nodiscard]] base::Bytes encode() const;

  friend bool operator==(const Acl&, const Acl&) = default;

 private:
  std::uint8_t revision_;
  std::size_t size_;
  std::size_t used_ = kHeaderSize;
  std::vector<Ace> entries_;
};

}  // namespace twk::platform
