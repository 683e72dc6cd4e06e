#include "format/tags.hpp"

#include <algorithm>

namespace twk::format {
namespace {

char ascii_upper(char c) {
  return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}

}  // namespace

std::size_t find_tag(std::string_view text, std::string_view tag, std::size_t from) {
  for (std::size_t at = text.find('%', from); at != std::string_view::npos; at = text.find('%', at + 1)) {
    if (text.size() - at < tag.size())
      break;
    const std::string_view here = text.substr(at, tag.size());
    if (std::equal(here.begin(), here.end(), tag.begin(),
                   [](char one, char wanted) { return ascii_upper(one) == wanted; }))
      return at;
  }
  return std::string_view::npos;
}

}  // namespace twk::format
