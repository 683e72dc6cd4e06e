#include "format/replace.hpp"

#include "base/text.hpp"
#include "format/tags.hpp"

namespace twk::format {

std::string FRString(std::string_view text, std::string_view find, std::string_view replacement) {
  if (find.empty() || text.size() < find.size())
    return std::string(text);
  // A tag's percent sign has no case, so its absence settles the matter without a folded copy.
  if (find.front() == '%' && text.find('%') == base::npos)
    return std::string(text);
  const bool absent = base::is_ascii(text) && base::find_fold(text, find) == base::npos;
  if (absent)
    return std::string(text);
  const std::string folded = base::upper(text);
  const std::string wanted = base::upper(find);
  std::string out;
  std::size_t from = 0;
  for (std::size_t at = folded.find(wanted); at != base::npos; at = folded.find(wanted, from)) {
    out += text.substr(from, at - from);
    out += replacement;
    from = at + find.size();
    if (out.size() > kMostText && out.size() > text.size())
      return std::string(text);
  }
  return out += text.substr(from);
}

}  // namespace twk::format
