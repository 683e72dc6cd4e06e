#include "base/text_file.hpp"

#include "base/text.hpp"

namespace twk::base {

std::string_view without_mark(std::string_view bytes) {
  if (bytes.starts_with(kByteOrderMark))
    bytes.remove_prefix(kByteOrderMark.size());
  return bytes;
}

std::string decoded(std::string_view bytes) {
  bytes = without_mark(bytes);
  return is_valid_utf8(bytes) ? std::string(bytes) : from_ansi(bytes);
}

}  // namespace twk::base
