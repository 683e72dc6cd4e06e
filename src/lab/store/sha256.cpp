#include "lab/store/sha256.hpp"

#include <nettle/sha2.h>

namespace twk::lab {

std::array<std::uint8_t, 32> sha256(std::string_view bytes) {
  static_assert(SHA256_DIGEST_SIZE == 32);
  sha256_ctx context;
  sha256_init(&context);
  sha256_update(&context, bytes.size(), reinterpret_cast<const std::uint8_t*>(bytes.data()));
  std::array<std::uint8_t, SHA256_DIGEST_SIZE> digest{};
  sha256_digest(&context, digest.size(), digest.data());
  return digest;
}

}  // namespace twk::lab
