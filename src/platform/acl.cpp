#include "platform/acl.hpp"

#include "base/errors.hpp"
#include "platform/little_endian.hpp"

namespace twk::platform {
namespace {

constexpr std::size_t kAceHeaderSize = 4;
constexpr std::size_t kMaskEnd = 8;
constexpr std::size_t kLargestSize = 0xFFFF;
constexpr std::uint8_t kReservedCompoundType = 4;

[[noreturn]] void invalid(const char* what) {
  throw base::RuntimeError(security_error::kInvalidAcl, what);
}

/// Types whose entries have flags and up to two object identifiers between mask and account.
bool is_object_type(std::uint8_t type) {
  return (type >= 5 && type <= 8) || type == 11 || type == 12 || type == 15 || type == 16;
}

std::size_t object_identifiers_size(std::uint32_t object_flags) {
  constexpr std::size_t kIdentifierSize = 16;
  std::size_t size = 4;
  for (const std::uint32_t present : {0x1U, 0x2U}) {
    if ((object_flags & present) != 0)
      size += kIdentifierSize;
  }
  return size;
}

}  // namespace

Ace::Ace(std::uint8_t type, std::uint8_t flags, std::uint32_t mask, const Sid& sid) {
  bytes_.reserve(kMaskEnd + sid.size());
  bytes_ = {type, flags};
  append_u16(bytes_, static_cast<std::uint16_t>(kMaskEnd + sid.size()));
  append_u32(bytes_, mask);
  bytes_.insert(bytes_.end(), sid.bytes().begin(), sid.bytes().end());
}

Ace Ace::decode(std::span<const std::uint8_t> bytes) {
  if (bytes.size() < kAceHeaderSize)
    invalid("An access list ends inside an entry");
  const std::size_t size = read_u16(bytes, 2);
  if (size < kAceHeaderSize || size > bytes.size())
    invalid("An entry of an access list has an impossible size");
  return Ace(base::Bytes(bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(size)));
}

std::uint32_t Ace::mask() const {
  return size() < kMaskEnd ? 0 : read_u32(bytes_, kAceHeaderSize);
}

std::optional<Sid> Ace::sid() const {
  std::size_t at = kMaskEnd;
  if (type() == kReservedCompoundType || size() < at)
    return std::nullopt;
  if (is_object_type(type())) {
    if (size() < at + 4)
      return std::nullopt;
    at += object_identifiers_size(read_u32(bytes_, at));
  }
  return at > size() ? std::nullopt : Sid::decode(std::span(bytes_).subspan(at));
}

Acl::Acl(std::size_t size, std::uint8_t revision) : revision_(revision), size_(size) {
  constexpr std::uint8_t kObjectRevision = 4;
  if (size < kHeaderSize || size > kLargestSize)
    invalid("An access list has at least 8 and at most 65535 bytes");
  if (revision != kRevision && revision != kObjectRevision)
    invalid("An access list has an unknown revision");
}

Acl Acl::decode(std::span<const std::uint8_t> bytes) {
  if (bytes.size() < kHeaderSize)
    invalid("An access list is shorter than its header");
  Acl acl(read_u16(bytes, 2), bytes[0]);
  if (acl.size_ > bytes.size())
    invalid("An access list ends too early");
  const std::size_t count = read_u16(bytes, 4);
  for (std::size_t i = 0; i < count; ++i)
    acl.add(kAtEnd, Ace::decode(bytes.subspan(acl.used_, acl.size_ - acl.used_)));
  return acl;
}

void Acl::add(std::size_t index, const Ace& ace) {
  if (ace.size() > size_ - used_)
    throw base::RuntimeError(security_error::kAllottedSpaceExceeded,
                             "The access list has no room for another entry");
  const std::size_t place = std::min(index, entries_.size());
  entries_.insert(entries_.begin() + static_cast<std::ptrdiff_t>(place), ace);
  used_ += ace.size();
}

Acl Acl::trimmed() const {
  Acl list = *this;
  list.size_ = used_;
  return list;
}

base::Bytes Acl::encode() const {
  base::Bytes bytes{revision_, 0};
  bytes.reserve(size_);
  append_u16(bytes, static_cast<std::uint16_t>(size_));
  append_u16(bytes, static_cast<std::uint16_t>(entries_.size()));
  append_u16(bytes, 0);
  for (const Ace& ace : entries_)
    bytes.insert(bytes.end(), ace.bytes().begin(), ace.bytes().end());
  bytes.resize(size_);
  return bytes;
}

}  // namespace twk::platform
