#include "live/rpc/password_buffer.hpp"

#include <nettle/arcfour.h>
#include <nettle/md5.h>

#include "base/errors.hpp"
#include "platform/little_endian.hpp"
#include "platform/utf16.hpp"

namespace twk::live {
namespace {

constexpr std::size_t kTextSize = 512;
constexpr std::uint32_t kPasswordTooLong = 2245;

}  // namespace

std::array<std::uint8_t, 16> md5(std::span<const std::uint8_t> bytes) {
  static_assert(MD5_DIGEST_SIZE == 16);
  md5_ctx context;
  md5_init(&context);
  md5_update(&context, bytes.size(), bytes.data());
  std::array<std::uint8_t, MD5_DIGEST_SIZE> digest{};
  md5_digest(&context, digest.size(), digest.data());
  return digest;
}

base::Bytes rc4(std::span<const std::uint8_t> key, std::span<const std::uint8_t> bytes) {
  arcfour_ctx context;
  arcfour_set_key(&context, key.size(), key.data());
  base::Bytes result(bytes.size());
  arcfour_crypt(&context, bytes.size(), result.data(), bytes.data());
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
