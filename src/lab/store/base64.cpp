#include "lab/store/base64.hpp"

#include <array>
#include <cstdint>

#include "base/text.hpp"

namespace twk::lab {
namespace {

constexpr std::string_view kDigits = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
constexpr std::uint8_t kNoDigit = 255;

constexpr std::array<std::uint8_t, 256> make_digit_values() {
  std::array<std::uint8_t, 256> values{};
  values.fill(kNoDigit);
  for (std::size_t i = 0; i < kDigits.size(); ++i) {
    values.at(static_cast<unsigned char>(kDigits[i])) = static_cast<std::uint8_t>(i);
  }
  return values;
}

constexpr std::array<std::uint8_t, 256> kDigitValues = make_digit_values();

}  // namespace

void append_base64(std::string& out, std::string_view bytes) {
  out.reserve(out.size() + (bytes.size() + 2) / 3 * 4);
  for (std::size_t i = 0; i < bytes.size(); i += 3) {
    const std::size_t count = std::min<std::size_t>(3, bytes.size() - i);
    std::uint32_t group = 0;
    for (std::size_t k = 0; k < 3; ++k) {
      group = group << 8U | (k < count ? static_cast<unsigned char>(bytes[i + k]) : 0U);
    }
    for (std::size_t k = 0; k < 4; ++k) {
      out.push_back(k <= count ? kDigits[group >> (18U - 6U * k) & 63U] : '=');
    }
  }
}

std::optional<std::string> decode_base64(std::string_view text) {
  text = base::trim_right(text);
  if (text.size() % 4 != 0)
    return std::nullopt;
  const std::size_t padding = text.ends_with("==") ? 2 : text.ends_with('=') ? 1 : 0;
  std::string out;
  out.reserve(text.size() / 4 * 3);
  std::uint32_t group = 0;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const bool is_padding = i + padding >= text.size();
    const std::uint8_t digit =
        is_padding ? std::uint8_t{0} : kDigitValues[static_cast<unsigned char>(text[i])];
    if (digit == kNoDigit)
      return std::nullopt;
    group = group << 6U | digit;
    if (i % 4 != 3)
      continue;
    for (const unsigned shift : {16U, 8U, 0U})
      out.push_back(static_cast<char>(group >> shift & 255U));
    group = 0;
  }
  out.erase(out.size() - padding);
  return out;
}

}  // namespace twk::lab
