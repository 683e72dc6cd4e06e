#include "lab/store/base64.hpp"

#include <nettle/base64.h>

#include <cstdint>

#include "base/text.hpp"

namespace twk::lab {

void append_base64(std::string& out, std::string_view bytes) {
  const std::size_t before = out.size();
  out.resize(before + BASE64_ENCODE_RAW_LENGTH(bytes.size()));
  base64_encode_raw(out.data() + before, bytes.size(), reinterpret_cast<const std::uint8_t*>(bytes.data()));
}

std::optional<std::string> decode_base64(std::string_view text) {
  text = base::trim_right(text);
  // The decoder would pass over these.
  if (text.find_first_of(" \t\n\v\f\r") != base::npos)
    return std::nullopt;
  base64_decode_ctx context;
  base64_decode_init(&context);
  std::string bytes(BASE64_DECODE_LENGTH(text.size()), '\0');
  std::size_t size = bytes.size();
  const bool reads = base64_decode_update(&context, &size, reinterpret_cast<std::uint8_t*>(bytes.data()),
                                          text.size(), text.data()) == 1 &&
                     base64_decode_final(&context) == 1;
  if (!reads)
    return std::nullopt;
  bytes.resize(size);
  return bytes;
}

}  // namespace twk::lab
