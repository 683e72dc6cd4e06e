#pragma once

#include <cstddef>
#include <string>
#include <string_view>

/// How a file of records was written by the program that saved it: its encoding and its separator.
namespace twk::batch {

enum class CsvEncoding { kUtf8, kAnsi, kUtf16Little, kUtf16Big };

struct CsvDialect {
  CsvEncoding encoding = CsvEncoding::kUtf8;
  std::string_view mark;  ///< the byte-order mark that the file begins with; may be empty
  char separator = ',';

  /// Bytes of one unit of text, of which a separator, a quote and a line break each take one.
  [[nodiscard]] std::size_t unit() const {
    return encoding == CsvEncoding::kUtf16Little || encoding == CsvEncoding::kUtf16Big ? 2 : 1;
  }
};

/// Bytes of a file as text in UTF-8. They must hold whole characters.
std::string csv_text(CsvEncoding encoding, std::string_view bytes);

/// The unit of UTF-16 that begins at a byte.
inline char32_t utf16_unit(std::string_view bytes, std::size_t at, bool big) {
  const auto first = static_cast<unsigned char>(bytes[at]);
  const auto second = static_cast<unsigned char>(bytes[at + 1]);
  const unsigned high = big ? first : second;
  return (high << 8U) | (big ? second : first);
}
inline bool is_high_surrogate(char32_t unit) {
  return unit >= 0xD800 && unit <= 0xDBFF;
}
inline bool is_low_surrogate(char32_t unit) {
  return unit >= 0xDC00 && unit <= 0xDFFF;
}

}  // namespace twk::batch
