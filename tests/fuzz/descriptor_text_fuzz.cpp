#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "base/errors.hpp"
#include "live/files/descriptor_text.hpp"

/// What a file server says about a folder's rights is refused, or reads the same after writing.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace twk::live;
  try {
    const auto descriptor = parse_descriptor({reinterpret_cast<const char*>(data), size});
    if (parse_descriptor(descriptor_text(descriptor)) != descriptor)
      std::abort();
  } catch (const twk::base::RuntimeError& failure) {
    if (failure.number() == 0)
      std::abort();
  }
  return 0;
}
