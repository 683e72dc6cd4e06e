#include "cli/parser/near_matches.hpp"

#include <algorithm>
#include <numeric>

#include "base/text.hpp"
#include "cli/terminal/failures.hpp"

namespace twk::cli {
namespace {

constexpr std::size_t kMostMatches = 3;
/// Longer names are compared by this many characters.
constexpr std::size_t kMostCharacters = 100;

/// Insertions, deletions and replacements that make one text the other.
std::size_t edit_distance(const std::u32string& a, const std::u32string& b) {
  std::vector<std::size_t> row(b.size() + 1);
  std::iota(row.begin(), row.end(), std::size_t{0});
  for (std::size_t i = 1; i <= a.size(); ++i) {
    std::size_t diagonal = row[0];
    row[0] = i;
    for (std::size_t j = 1; j <= b.size(); ++j) {
      const std::size_t replaced = diagonal + (a[i - 1] == b[j - 1] ? 0U : 1U);
      diagonal = row[j];
      row[j] = std::min({row[j] + 1, row[j - 1] + 1, replaced});
    }
  }
  return row.back();
}

std::u32string comparable(std::string_view name) {
  return base::to_utf32(base::left(base::lower(base::trim(name)), kMostCharacters));
}

}  // namespace

std::vector<std::string> near_matches(std::string_view name, const std::vector<std::string>& names) {
  const std::u32string wanted = comparable(name);
  const std::size_t tolerated = std::max<std::size_t>(2, wanted.size() / 3);
  std::vector<std::pair<std::size_t, std::string>> found;
  for (const std::string& candidate : names) {
    const std::u32string other = comparable(candidate);
    const bool holds = !wanted.empty() && other.find(wanted) != std::u32string::npos;
    const std::size_t distance = holds ? 1 : edit_distance(wanted, other);
    if (distance <= tolerated)
      found.emplace_back(distance, base::trim(candidate));
  }
  std::stable_sort(found.begin(), found.end(),
                   [](const auto& a, const auto& b) { return a.first < b.first; });
  std::vector<std::string> out;
  for (std::size_t i = 0; i < std::min(found.size(), kMostMatches); ++i)
    out.push_back(found[i].second);
  return out;
}

std::string no_such_text(std::string_view kind, std::string_view name,
                         const std::vector<std::string>& names) {
  std::string text = "There is no " + std::string(kind) + " \"" + std::string(base::trim(name)) + "\".";
  std::string near;
  for (const std::string& match : near_matches(name, names))
    near += (near.empty() ? " Near: \"" : ", \"") + match + "\"";
  return near.empty() ? text : text + near + ".";
}

std::string find_name(std::string_view kind, std::string_view name, const std::vector<std::string>& names) {
  const auto found = std::find_if(names.begin(), names.end(), [&](const std::string& candidate) {
    return base::equals_fold(base::trim(candidate), base::trim(name));
  });
  if (found == names.end())
    throw Refused(no_such_text(kind, name, names));
  return *found;
}

}  // namespace twk::cli
