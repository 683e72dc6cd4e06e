#include "live/rpc/ndr.hpp"

#include "base/errors.hpp"
#include "platform/little_endian.hpp"
#include "platform/utf16.hpp"

namespace twk::live {
namespace {

constexpr std::size_t kAlignment = 4;
constexpr std::uint32_t kFirstPointer = 0x00020000;

[[noreturn]] void bad_stub(const char* why) {
  base::raise(kBadStub, std::string("The server's answer is malformed: ") + why);
}

}  // namespace

void NdrWriter::align() {
  while (bytes_.size() % kAlignment != 0)
    bytes_.push_back(0);
}

void NdrWriter::number(std::uint32_t number) {
  align();
  platform::append_u32(bytes_, number);
}

void NdrWriter::pointer(bool present) {
  number(present ? kFirstPointer + 4 * pointers_++ : 0);
}

void NdrWriter::text(std::string_view text) {
  const base::Bytes units = platform::to_utf16(text);
  const auto length = static_cast<std::uint32_t>(units.size() / 2 + 1);
  number(length);
  number(0);
  number(length);
  bytes_.insert(bytes_.end(), units.begin(), units.end());
  platform::append_u16(bytes_, 0);
}

void NdrWriter::array(std::span<const std::uint8_t> bytes) {
  number(static_cast<std::uint32_t>(bytes.size()));
  bytes_.insert(bytes_.end(), bytes.begin(), bytes.end());
}

std::span<const std::uint8_t> NdrReader::take(std::size_t size) {
  if (bytes_.size() - at_ < size)
    bad_stub("it ends too early");
  const auto part = bytes_.subspan(at_, size);
  at_ += size;
  return part;
}

std::uint32_t NdrReader::number() {
  const std::size_t rest = at_ % kAlignment;
  if (rest != 0)
    take(kAlignment - rest);
  return platform::read_u32(take(kAlignment), 0);
}

std::string NdrReader::text() {
  const std::uint32_t room = number();
  const std::uint32_t offset = number();
  const std::uint32_t length = number();
  if (offset != 0 || length > room)
    bad_stub("a text is longer than its room");
  auto units = take(std::size_t{length} * 2);
  if (length > 0 && platform::read_u16(units, units.size() - 2) == 0)
    units = units.first(units.size() - 2);
  auto text = platform::from_utf16(units);
  if (!text)
    bad_stub("a text is not UTF-16");
  return *std::move(text);
}

base::Bytes NdrReader::array() {
  const auto part = take(number());
  return base::Bytes(part.begin(), part.end());
}

}  // namespace twk::live
