#include "format/import_headings.hpp"

#include "base/text.hpp"
#include "format/tags.hpp"

namespace twk::format {

std::string heading_text(std::string_view heading) {
  std::string text;
  for (const char c : heading) {
    const bool blank = c == ' ' || c == '\t' || c == '\r' || c == '\n';
    if (!blank)
      text.push_back(c);
    else if (!text.empty() && text.back() != ' ')
      text.push_back(' ');
  }
  return std::string(base::trim_right(text));
}

std::string heading_key(std::string_view heading) {
  return base::upper(heading_text(heading));
}

std::optional<HeadingTag> find_heading_tag(std::string_view text, std::size_t from) {
  constexpr std::string_view kBegin = "%IMPORT:";
  const std::size_t begin = find_tag(text, kBegin, from);
  const std::size_t end = begin == base::npos ? base::npos : text.find('%', begin + kBegin.size());
  if (end == base::npos)
    return std::nullopt;
  const std::size_t name = begin + kBegin.size();
  return HeadingTag{begin, end + 1 - begin, std::string(text.substr(name, end - name))};
}

}  // namespace twk::format
