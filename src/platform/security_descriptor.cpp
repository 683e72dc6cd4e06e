#include "platform/security_descriptor.hpp"

#include "base/errors.hpp"
#include "platform/little_endian.hpp"

namespace twk::platform {
namespace {

constexpr std::uint8_t kRevision = 1;
constexpr std::size_t kHeaderSize = 20;
constexpr std::size_t kOwnerOffset = 4;
constexpr std::size_t kGroupOffset = 8;
constexpr std::size_t kSaclOffset = 12;
constexpr std::size_t kDaclOffset = 16;
constexpr std::uint16_t kToldByFields =
    descriptor_control::kDaclPresent | descriptor_control::kSaclPresent | descriptor_control::kSelfRelative;

[[noreturn]] void invalid(std::uint32_t number, const char* what) {
  throw base::RuntimeError(number, what);
}

/// Appends a part and records in the header where it begins.
void append_part(base::Bytes& bytes, std::size_t offset_at, const base::Bytes& part) {
  base::Bytes offset;
  append_u32(offset, static_cast<std::uint32_t>(bytes.size()));
  std::copy(offset.begin(), offset.end(), bytes.begin() + static_cast<std::ptrdiff_t>(offset_at));
  bytes.insert(bytes.end(), part.begin(), part.end());
}

/// The bytes from where the header says a part begins; none for a missing part.
std::optional<std::span<const std::uint8_t>> part_at(std::span<const std::uint8_t> bytes,
                                                     std::size_t offset_at) {
  const std::uint32_t offset = read_u32(bytes, offset_at);
  if (offset == 0)
    return std::nullopt;
  if (offset < kHeaderSize || offset > bytes.size())
    invalid(security_error::kInvalidDescriptor, "A part of the descriptor lies outside of it");
  return bytes.subspan(offset);
}

std::optional<Sid> sid_at(std::span<const std::uint8_t> bytes, std::size_t offset_at) {
  const auto part = part_at(bytes, offset_at);
  if (!part)
    return std::nullopt;
  auto sid = Sid::decode(*part);
  if (!sid)
    invalid(security_error::kInvalidSid, "The descriptor holds no valid identifier");
  return sid;
}

std::optional<Acl> acl_at(std::span<const std::uint8_t> bytes, std::size_t offset_at) {
  const auto part = part_at(bytes, offset_at);
  return part ? std::optional(Acl::decode(*part)) : std::nullopt;
}

}  // namespace

base::Bytes SecurityDescriptor::encode() const {
  std::uint16_t bits = (control & ~kToldByFields) | descriptor_control::kSelfRelative;
  if (dacl_present)
    bits |= descriptor_control::kDaclPresent;
  if (sacl_present)
    bits |= descriptor_control::kSaclPresent;
  base::Bytes bytes{kRevision, 0};
  append_u16(bytes, bits);
  bytes.resize(kHeaderSize);
  if (sacl_present && sacl)
    append_part(bytes, kSaclOffset, sacl->encode());
  if (dacl_present && dacl)
    append_part(bytes, kDaclOffset, dacl->encode());
  if (owner)
    append_part(bytes, kOwnerOffset, owner->bytes());
  if (group)
    append_part(bytes, kGroupOffset, group->bytes());
  return bytes;
}

SecurityDescriptor SecurityDescriptor::decode(std::span<const std::uint8_t> bytes) {
  if (bytes.size() < kHeaderSize || bytes[0] != kRevision)
    invalid(security_error::kInvalidDescriptor, "Not a security descriptor");
  const std::uint16_t bits = read_u16(bytes, 2);
  if ((bits & descriptor_control::kSelfRelative) == 0)
    invalid(security_error::kInvalidDescriptor, "Not a self-relative security descriptor");
  SecurityDescriptor descriptor;
  descriptor.control = bits & static_cast<std::uint16_t>(~kToldByFields);
  descriptor.owner = sid_at(bytes, kOwnerOffset);
  descriptor.group = sid_at(bytes, kGroupOffset);
  descriptor.dacl_present = (bits & descriptor_control::kDaclPresent) != 0;
  if (descriptor.dacl_present)
    descriptor.dacl = acl_at(bytes, kDaclOffset);
  descriptor.sacl_present = (bits & descriptor_control::kSaclPresent) != 0;
  if (descriptor.sacl_present)
    descriptor.sacl = acl_at(bytes, kSaclOffset);
  return descriptor;
}

}  // namespace twk::platform
