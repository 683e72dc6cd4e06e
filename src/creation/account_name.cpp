#include "creation/account_name.hpp"

#include <algorithm>

#include "base/text.hpp"

namespace twk::creation {

std::vector<std::string> invalid_characters(std::string_view name, bool active_directory) {
  constexpr std::string_view kForbidden = "<>?/\\*[]{};:'\"";
  std::vector<std::string> faults;
  // Of most names nothing is refused.
  const auto is_allowed = [&](char c) {
    return c >= ' ' && c <= '~' && kForbidden.find(c) == base::npos && (c != ',' || active_directory);
  };
  if (std::ranges::all_of(name, is_allowed) && name.find_first_not_of('.') != base::npos)
    return faults;
  for (const char32_t code : base::to_utf32(name)) {
    const std::string character = base::to_utf8(std::u32string_view(&code, 1));
    if (const auto unseen = base::find_invisible_character(character)) {
      faults.push_back(*unseen);
    } else if (kForbidden.find(character) != base::npos || (character == "," && !active_directory)) {
      faults.push_back(character);
    }
  }
  if (!name.empty() && name.find_first_not_of('.') == base::npos)
    faults.emplace_back(".");
  return faults;
}

std::string capitalized(std::string_view name) {
  return base::upper(base::left(name, 1)) + std::string(base::mid(name, 2));
}

}  // namespace twk::creation
