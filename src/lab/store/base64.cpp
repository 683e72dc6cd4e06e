#include "lab/store/base64.hpp"

#include <nettle/base64.h>

#include <array>
#include <cstdint>

#include "base/text.hpp"

namespace twk::lab {
namespace {

constexpr std::uint8_t kNoDigit = 0xFF;

constexpr std::array<std::uint8_t, 256> make_digits() {
  constexpr std::string_view kAlphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  std::array<std::uint8_t, 256> digits{};
  digits.fill(kNoDigit);
  for (std::size_t i = 0; i < kAlphabet.size(); ++i)
    digits[static_cast<unsigned char>(kAlphabet[i])] = static_cast<std::uint8_t>(i);
  return digits;
}

/// The library's decoder, a call for each digit, would take a sixth of the time in which a lab opens.
constexpr std::array<std::uint8_t, 256> kDigits = make_digits();

}  // namespace

void append_base64(std::string& out, std::string_view bytes) {
  const std::size_t before = out.size();
  out.resize(before + BASE64_ENCODE_RAW_LENGTH(bytes.size()));
  base64_encode_raw(out.data() + before, bytes.size(), reinterpret_cast<const std::uint8_t*>(bytes.data()));
}

bool append_decoded(std::string& out, std::string_view text) {
  text = base::trim_right(text);
  if (text.empty())
    return true;
  if (text.size() % 4 != 0)
    return false;
  const std::size_t padding = text.ends_with("==") ? 2 : text.ends_with('=') ? 1 : 0;
  const std::size_t before = out.size();
  out.reserve(before + text.size() / 4 * 3);
  std::uint32_t bits = 0;
  unsigned count = 0;
  for (const char c : text.substr(0, text.size() - padding)) {
    const std::uint8_t digit = kDigits[static_cast<unsigned char>(c)];
    if (digit == kNoDigit) {
      out.resize(before);
      return false;
    }
    bits = bits << 6U | digit;
    count += 6;
    if (count >= 8) {
      count -= 8;
      out.push_back(static_cast<char>(bits >> count & 0xFFU));
    }
  }
  // What is left of the last digit has to be zero.
  const bool whole = (bits & ((1U << count) - 1U)) == 0;
  if (!whole)
    out.resize(before);
  return whole;
}

std::optional<std::string> decode_base64(std::string_view text) {
  std::string bytes;
  return append_decoded(bytes, text) ? std::optional(std::move(bytes)) : std::nullopt;
}

}  // namespace twk::lab
