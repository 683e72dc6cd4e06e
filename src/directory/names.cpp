#include "directory/names.hpp"

#include <algorithm>
#include <initializer_list>

#include "base/text.hpp"

namespace twk::directory {
namespace {

/// What follows the comma of the first of these markers (case ignored); empty when none is there.
std::string behind_first(std::string_view text, std::initializer_list<std::string_view> markers) {
  std::size_t first = base::npos;
  for (const std::string_view marker : markers)
    first = std::min(first, base::find_fold(text, marker));
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
  return std::string(base::left(behind_first(distinguished_name, {",OU=", ",DC="}), kLongestParent));
}

std::string parent_of_user(std::string_view ads_path) {
  return behind_first(ads_path, {",OU=", ",DC=", ",CN="});
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
  const std::size_t end = std::min(base::find_fold(distinguished_name, ",DC=", 2),
                                   base::find_fold(distinguished_name, ",OU=", 2));
  return std::string(
      distinguished_name.substr(0, end).substr(std::min<std::size_t>(3, distinguished_name.size())));
}

}  // namespace twk::directory
