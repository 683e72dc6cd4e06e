#pragma once

#include <string>
#include <string_view>
#include <vector>

/// Distinguished names, RFC 4514.
namespace twk::ads {

/// The parts of a name, the leaf first, escapes kept and blanks around them removed. Raises kInvalidDn for
/// text that is no distinguished name. The empty text has no parts.
std::vector<std::string_view> split_dn(std::string_view dn);
/// What follows the first part; empty for a name of one part.
std::string_view parent_dn(std::string_view dn);
/// "CN=Jo Smith": the first part as written.
std::string_view first_rdn(std::string_view dn);
/// The first part with its type in capitals, as an object is called.
std::string object_name(std::string_view dn);
/// Type and unescaped value of "CN=Smith\, Jo". Raises kInvalidDn.
struct Rdn {
  std::string type;
  std::string value;
};
Rdn parse_rdn(std::string_view rdn);
/// Type and value put together, the value escaped.
std::string make_rdn(std::string_view type, std::string_view value);
/// The form in which two names are the same: types and values in upper case, escapes in one spelling, no
/// blanks between parts. Raises kInvalidDn.
std::string normalize_dn(std::string_view dn);
/// A path may name the parts from the top, between slashes: "O=Tarnwick/OU=Head Office" is
/// "OU=Head Office,O=Tarnwick". Any other name is returned unchanged.
std::string from_top_down(std::string_view name);
/// "DC=twk,DC=test" of "twk.test"; "DC=OLDNT" of "OLDNT".
std::string domain_dn(std::string_view domain);

}  // namespace twk::ads
