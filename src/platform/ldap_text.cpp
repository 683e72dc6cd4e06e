#include "platform/ldap_text.hpp"

#include <algorithm>
#include <array>

#include "base/text.hpp"

namespace twk::platform {
namespace {

void append_hex(std::string& out, char c) {
  out += "\\" + base::hex_byte(static_cast<unsigned char>(c));
}

}  // namespace

std::string escape_filter_value(std::string_view text) {
  std::string out;
  out.reserve(text.size());
  for (const char c : text) {
    if (c == '*' || c == '(' || c == ')' || c == '\\' || c == '\0') {
      append_hex(out, c);
    } else {
      out.push_back(c);
    }
  }
  return out;
}

std::string escape_filter_bytes(std::string_view bytes) {
  std::string out;
  out.reserve(bytes.size() * 3);
  for (const char byte : bytes)
    append_hex(out, byte);
  return out;
}

std::string escape_dn_value(std::string_view text) {
  static constexpr std::string_view kSpecial = ",+\"\\<>;=";
  static constexpr auto kLetters = [] {
    std::array<bool, 256> letters{};
    for (std::size_t byte = 0x21; byte < letters.size(); ++byte)
      letters.at(byte) = byte != 0x7F && byte != '#' && kSpecial.find(static_cast<char>(byte)) == base::npos;
    return letters;
  }();
  if (std::all_of(text.begin(), text.end(), [](char c) { return kLetters[static_cast<unsigned char>(c)]; }))
    return std::string(text);
  std::string out;
  out.reserve(text.size());
  for (std::size_t i = 0; i < text.size(); ++i) {
    const char c = text[i];
    const auto byte = static_cast<unsigned char>(c);
    if (byte < 0x20 || byte == 0x7F) {
      append_hex(out, c);
      continue;
    }
    const bool edge_blank = c == ' ' && (i == 0 || i + 1 == text.size());
    if (edge_blank || (c == '#' && i == 0) || kSpecial.find(c) != std::string_view::npos)
      out.push_back('\\');
    out.push_back(c);
  }
  return out;
}

std::string unescape_dn_value(std::string_view text) {
  std::string out;
  out.reserve(text.size());
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] != '\\' || i + 1 == text.size()) {
      out.push_back(text[i]);
      continue;
    }
    const auto high = base::hex_digit(text[i + 1]);
    const auto low = i + 2 < text.size() ? base::hex_digit(text[i + 2]) : std::nullopt;
    if (high && low) {
      out.push_back(static_cast<char>(static_cast<unsigned char>(*high << 4U | *low)));
      i += 2;
    } else {
      out.push_back(text[++i]);
    }
  }
  return out;
}

std::string plain_name(std::string_view relative_name) {
  const std::size_t equals = relative_name.find('=');
  return equals == base::npos ? std::string(relative_name)
                              : unescape_dn_value(relative_name.substr(equals + 1));
}

}  // namespace twk::platform
