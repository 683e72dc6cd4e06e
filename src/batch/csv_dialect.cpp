#include "batch/csv_dialect.hpp"

#include "base/text.hpp"

namespace twk::batch {
namespace {

std::string from_utf16(std::string_view bytes, bool big) {
  std::u32string codes;
  codes.reserve(bytes.size() / 2);
  char32_t high = 0;
  for (std::size_t at = 0; at + 1 < bytes.size(); at += 2) {
    const char32_t unit = utf16_unit(bytes, at, big);
    if (is_high_surrogate(unit)) {
      high = unit;
    } else {
      constexpr char32_t kBeyond = 0x10000;
      codes.push_back(is_low_surrogate(unit) ? kBeyond + ((high & 0x3FFU) << 10U) + (unit & 0x3FFU) : unit);
    }
  }
  return base::to_utf8(codes);
}

}  // namespace

std::string csv_text(CsvEncoding encoding, std::string_view bytes) {
  switch (encoding) {
    case CsvEncoding::kUtf8:
      return std::string(bytes);
    case CsvEncoding::kAnsi:
      return base::is_ascii(bytes) ? std::string(bytes) : base::from_ansi(bytes);
    case CsvEncoding::kUtf16Little:
    case CsvEncoding::kUtf16Big:
      return from_utf16(bytes, encoding == CsvEncoding::kUtf16Big);
  }
  return {};
}

}  // namespace twk::batch
