#include "live/rpc/password_buffer.hpp"

#include <algorithm>
#include <bit>
#include <cmath>
#include <numeric>

#include "base/errors.hpp"
#include "platform/little_endian.hpp"
#include "platform/utf16.hpp"

namespace twk::live {
namespace {

constexpr std::size_t kTextSize = 512;
constexpr std::uint32_t kPasswordTooLong = 2245;
constexpr std::size_t kBlock = 64;

/// T[i] of RFC 1321 3.4: the integer part of 4294967296 times abs(sin(i)).
std::uint32_t sine(std::size_t i) {
  return static_cast<std::uint32_t>(std::fabs(std::sin(static_cast<double>(i))) * 4294967296.0);
}

void digest_block(std::span<const std::uint8_t> block, std::array<std::uint32_t, 4>& state) {
  constexpr std::array<std::array<int, 4>, 4> kShifts = {
      {{7, 12, 17, 22}, {5, 9, 14, 20}, {4, 11, 16, 23}, {6, 10, 15, 21}}};
  auto [a, b, c, d] = state;
  for (std::size_t i = 0; i < kBlock; ++i) {
    std::uint32_t mixed = 0;
    std::size_t word = 0;
    const std::size_t round = i / 16;
    if (round == 0) {
      mixed = (b & c) | (~b & d);
      word = i;
    } else if (round == 1) {
      mixed = (d & b) | (~d & c);
      word = (5 * i + 1) % 16;
    } else if (round == 2) {
      mixed = b ^ c ^ d;
      word = (3 * i + 5) % 16;
    } else {
      mixed = c ^ (b | ~d);
      word = (7 * i) % 16;
    }
    const std::uint32_t sum = a + mixed + sine(i + 1) + platform::read_u32(block, 4 * word);
    a = d;
    d = c;
    c = b;
    b += std::rotl(sum, kShifts[round][i % 4]);
  }
  state[0] += a;
  state[1] += b;
  state[2] += c;
  state[3] += d;
}

}  // namespace

std::array<std::uint8_t, 16> md5(std::span<const std::uint8_t> bytes) {
  base::Bytes padded(bytes.begin(), bytes.end());
  padded.push_back(0x80);
  while (padded.size() % kBlock != kBlock - 8)
    padded.push_back(0);
  const std::uint64_t bits = std::uint64_t{bytes.size()} * 8;
  platform::append_u32(padded, static_cast<std::uint32_t>(bits));
  platform::append_u32(padded, static_cast<std::uint32_t>(bits >> 32U));
  std::array<std::uint32_t, 4> state = {0x67452301, 0xEFCDAB89, 0x98BADCFE, 0x10325476};
  const std::span<const std::uint8_t> all(padded);
  for (std::size_t at = 0; at < all.size(); at += kBlock)
    digest_block(all.subspan(at, kBlock), state);
  base::Bytes digest;
  for (const std::uint32_t word : state)
    platform::append_u32(digest, word);
  std::array<std::uint8_t, 16> result{};
  std::copy(digest.begin(), digest.end(), result.begin());
  return result;
}

base::Bytes rc4(std::span<const std::uint8_t> key, std::span<const std::uint8_t> bytes) {
  std::array<std::uint8_t, 256> box{};
  std::iota(box.begin(), box.end(), std::uint8_t{0});
  for (std::size_t i = 0, j = 0; i < box.size(); ++i) {
    j = (j + box[i] + key[i % key.size()]) % box.size();
    std::swap(box[i], box[j]);
  }
  base::Bytes result;
  result.reserve(bytes.size());
  std::size_t i = 0;
  std::size_t j = 0;
  for (const std::uint8_t byte : bytes) {
    i = (i + 1) % box.size();
    j = (j + box[i]) % box.size();
    std::swap(box[i], box[j]);
    const std::size_t at = (std::size_t{box[i]} + box[j]) % box.size();
    result.push_back(static_cast<std::uint8_t>(byte ^ box[at]));
  }
  return result;
}

base::Bytes password_buffer(std::string_view password, std::span<const std::uint8_t> random) {
  const base::Bytes text = platform::to_utf16(password);
  if (text.size() > kTextSize)
    base::raise(kPasswordTooLong, "The password is longer than 256 characters");
  base::Bytes buffer(random.begin(), random.end());
  buffer.resize(kTextSize - text.size());
  buffer.insert(buffer.end(), text.begin(), text.end());
  platform::append_u32(buffer, static_cast<std::uint32_t>(text.size()));
  return buffer;
}

}  // namespace twk::live
