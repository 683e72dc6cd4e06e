#include "directory/names.hpp"

#include <algorithm>
#include <initializer_list>

#include "base/text.hpp"

namespace twk::directory {
namespace {

/// True after a backslash that is not itself escaped.
bool is_escaped(std::string_view text, std::size_t place) {
  const std::size_t other = text.substr(0, place).find_last_not_of('\\');
  const std::size_t backslashes = place - (other == base::npos ? 0 : other + 1);
  return backslashes % 2 == 1;
}

/// Where a marker begins, case ignored; one after a backslash is part of a name.
std::size_t find_marker(std::string_view text, std::string_view marker, std::size_t from = 0) {
  std::size_t found = base::find_fold(text, marker, from);
  while (found != base::npos && is_escaped(text, found))
    found = base::find_fold(text, marker, found + 1);
  return found;
}

/// What follows the comma of the first of these markers (case ignored); empty when there is none.
std::string after_first(std::string_view text, std::initializer_list<std::string_view> markers) {
  std::size_t first = base::npos;
  for (const std::string_view marker : markers)
    first = std::min(first, find_marker(text, marker));
  return first == base::npos ? std::string() : std::string(text.substr(first + 1));
}

}  // namespace

std::string domain_distinguished_name(std::string_view domain_name) {
  constexpr std::size_t kLongestRemainder = 100;
  std::string name = "DC=";
  for (std::size_t dot = domain_name.find('.'); dot != base::npos; dot = domain_name.find('.')) {
    name += std::string(domain_name.substr(0, dot)) + ",DC=";
    domain_name = base::left(domain_name.substr(dot + 1), kLongestRemainder);
  }
  return name + std::string(domain_name);
}

std::string domain_dns_name(std::string_view distinguished_name) {
  std::string name;
  std::string_view rest = distinguished_name.substr(std::min<std::size_t>(3, distinguished_name.size()));
  for (std::size_t next = base::find_fold(rest, ",DC="); next != base::npos;
       next = base::find_fold(rest, ",DC=")) {
    name += std::string(rest.substr(0, next)) + ".";
    rest = rest.substr(next + 4);
  }
  return name + std::string(rest);
}

std::string parent_of_ou(std::string_view distinguished_name) {
  constexpr std::size_t kLongestParent = 200;
  return std::string(base::left(after_first(distinguished_name, {",OU=", ",DC="}), kLongestParent));
}

std::string parent_of_user(std::string_view ads_path) {
  return after_first(ads_path, {",OU=", ",DC=", ",CN="});
}

std::string_view name_above(std::string_view distinguished_name) {
  for (std::size_t i = 0; i < distinguished_name.size(); ++i) {
    if (distinguished_name[i] == '\\')
      ++i;
    else if (distinguished_name[i] == ',')
      return distinguished_name.substr(i + 1);
  }
  return {};
}

std::string_view relative_name(std::string_view distinguished_name) {
  const std::string_view above = name_above(distinguished_name);
  return above.empty() ? distinguished_name
                       : distinguished_name.substr(0, distinguished_name.size() - above.size() - 1);
}

std::string_view name_in_path(std::string_view ads_path) {
  const std::size_t start = base::find_fold(ads_path, "CN=");
  return start == base::npos ? std::string_view{} : ads_path.substr(start);
}

std::string rewrite_path(std::string_view search_prefix, std::string_view ads_path) {
  constexpr std::string_view kGlobalCatalogue = "GC://";
  if (search_prefix != kGlobalCatalogue || ads_path.size() < kGlobalCatalogue.size())
    return std::string(ads_path);
  return "LDAP://" + std::string(ads_path.substr(kGlobalCatalogue.size()));
}

std::string ou_name(std::string_view distinguished_name) {
  const std::size_t end =
      std::min(find_marker(distinguished_name, ",DC=", 2), find_marker(distinguished_name, ",OU=", 2));
  return std::string(
      distinguished_name.substr(0, end).substr(std::min<std::size_t>(3, distinguished_name.size())));
}

std::string nt_user_key(std::string_view account) {
  return std::string(account) + (base::equals_fold(account, kNtRoot) ? "\\" : "");
}

}  // namespace twk::directory
