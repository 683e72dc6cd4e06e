#include "base/random.hpp"

#include <algorithm>
#include <random>

namespace twk::base {

Bytes random_bytes(std::size_t count) {
  // Opening it costs far more than what it gives.
  static std::random_device source;
  Bytes bytes(count);
  std::generate(bytes.begin(), bytes.end(), [&] { return static_cast<std::uint8_t>(source()); });
  return bytes;
}

}  // namespace twk::base
