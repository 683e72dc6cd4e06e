#pragma once

#include <string>
#include <string_view>

/// What a domain requires of the passwords that administrators give.
namespace twk::ads {

struct PasswordRules {
  int minimum_length = 0;  ///< in characters
  bool complexity =
      false;  ///< of capitals, small letters, digits, other characters of ASCII and other letters, three
};

/// Why the rules refuse it: "has fewer than 7 characters"; empty when they do not. With complexity it may not
/// hold the account's name, if one is given that is not very short.
std::string why_password_is_refused(const PasswordRules& rules, std::string_view password,
                                    std::string_view account_name);

}  // namespace twk::ads
