#include "session/known_values.hpp"

#include <algorithm>
#include <functional>

#include "base/text.hpp"

namespace twk::session {
namespace {

/// Letters, digits and marks of ASCII, without a blank at an end or two in a row.
bool is_plain(std::string_view text) {
  const bool printable = std::ranges::all_of(text, [](char c) { return c >= ' ' && c <= '~'; });
  return printable && base::trim(text) == text && text.find("  ") == base::npos;
}

std::uint64_t hash_of(std::string_view folded) {
  return std::hash<std::string_view>{}(folded);
}

}  // namespace

void KnownValues::add(std::string_view value, const std::string& owner) {
  const std::string folded = base::upper(value);
  values_.add(folded);
  has_others_ = has_others_ || !is_plain(value);
  if (!owner.empty())
    owners_.try_emplace(hash_of(folded), owner);
}

KnownValues::Answer KnownValues::find(std::string_view value) const {
  if (!is_plain(value))
    return Answer::kAsk;
  if (values_.has(base::upper(value)))
    return Answer::kTaken;
  return has_others_ ? Answer::kAsk : Answer::kFree;
}

std::string KnownValues::owner_of(std::string_view value) const {
  const auto found = owners_.find(hash_of(base::upper(value)));
  return found == owners_.end() ? std::string() : found->second;
}

}  // namespace twk::session
