#include "ads/password_rules.hpp"

#include <algorithm>
#include <array>

#include "base/text.hpp"

namespace twk::ads {
namespace {

constexpr std::size_t kShortestNameThatCounts = 3;
constexpr std::ptrdiff_t kKindsWanted = 3;

bool is_complex(std::string_view password) {
  enum : std::size_t { kCapital, kSmall, kDigit, kSpecial, kOtherLetter, kKinds };
  std::array<bool, kKinds> has{};
  for (const char32_t code : base::to_utf32(password)) {
    const std::string letter = base::to_utf8(std::u32string(1, code));
    if (code >= U'0' && code <= U'9')
      has[kDigit] = true;
    else if (base::lower(letter) != letter)
      has[kCapital] = true;
    else if (base::upper(letter) != letter)
      has[kSmall] = true;
    else
      has[code <= U'\x7f' ? kSpecial : kOtherLetter] = true;
  }
  return std::ranges::count(has, true) >= kKindsWanted;
}

}  // namespace

std::string why_password_is_refused(const PasswordRules& rules, std::string_view password,
                                    std::string_view account_name) {
  if (base::length(password) < static_cast<std::size_t>(rules.minimum_length))
    return "has fewer than " + base::to_text(rules.minimum_length) + " characters";
  if (!rules.complexity || password.empty())
    return {};
  if (!is_complex(password))
    return "does not mix capitals, small letters, digits and other characters";
  const bool holds_name = base::length(account_name) >= kShortestNameThatCounts &&
                          base::find_fold(password, account_name) != base::npos;
  return holds_name ? "holds the account's name" : "";
}

}  // namespace twk::ads
