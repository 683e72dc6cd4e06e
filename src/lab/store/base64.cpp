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
  const std::string_view digits = text.substr(0, text.size() - padding);
  const std::size_t before = out.size();
  const std::size_t size = text.size() / 4 * 3;
  out.resize(before + size);
  char* to = out.data() + before;
  // A wrong digit sets a bit that no right one has.
  std::uint32_t wrong = 0;
  std::uint32_t bits = 0;
  const auto take = [&](char c) {
    const std::uint32_t digit = kDigits[static_cast<unsigned char>(c)];
    wrong |= digit;
    bits = bits << 6U | digit;
  };
  const auto put = [&] {
    *to++ = static_cast<char>(bits >> 16U & 0xFFU);
    *to++ = static_cast<char>(bits >> 8U & 0xFFU);
    *to++ = static_cast<char>(bits & 0xFFU);
  };
  const char* from = digits.data();
  for (std::size_t whole = digits.size() / 4; whole > 0; --whole, from += 4) {
    take(from[0]);
    take(from[1]);
    take(from[2]);
    take(from[3]);
    put();
  }
  if (padding > 0) {
    for (std::size_t i = 0; i < 4; ++i)
      take(i < 4 - padding ? from[i] : 'A');
    put();
  }
  // What is left of the last digit has to be zero.
  const bool whole = padding == 0 || (out.back() == '\0' && (padding == 1 || out[out.size() - 2] == '\0'));
  const bool reads = wrong < 64 && whole;
  out.resize(reads ? before + size - padding : before);
  return reads;
}

std::optional<std::string> decode_base64(std::string_view text) {
  std::string bytes;
  return append_decoded(bytes, text) ? std::optional(std::move(bytes)) : std::nullopt;
}

}  // namespace twk::lab
