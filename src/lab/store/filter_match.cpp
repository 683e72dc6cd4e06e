#include <algorithm>
#include <charconv>
#include <cstdint>
#include <optional>
#include <utility>

#include "ads/dn.hpp"
#include "base/errors.hpp"
#include "base/text.hpp"
#include "lab/store/filter.hpp"

namespace twk::lab {
namespace {

constexpr std::string_view kAllBitsRule = "1.2.840.113556.1.4.803";
constexpr std::string_view kAnyBitRule = "1.2.840.113556.1.4.804";

enum class Truth { kFalse, kUndefined, kTrue };

Truth truth(bool holds) {
  return holds ? Truth::kTrue : Truth::kFalse;
}

/// In upper case, runs of blanks as one.
std::string folded(std::string_view text) {
  std::string out = base::upper(text);
  out.erase(std::unique(out.begin(), out.end(), [](char a, char b) { return a == ' ' && b == ' '; }),
            out.end());
  return out;
}

std::string folded_whole(std::string_view text) {
  return folded(base::trim(text));
}

std::optional<std::int64_t> to_integer(std::string_view text) {
  std::int64_t number = 0;
  const char* const end = text.data() + text.size();
  const auto [last, error] = std::from_chars(text.data(), end, number);
  if (text.empty() || error != std::errc{} || last != end)
    return std::nullopt;
  return number;
}

/// A stored "007" is text, not a number.
bool is_same_integer(std::string_view stored, std::string_view wanted) {
  const std::optional<std::int64_t> number = to_integer(stored);
  return number && std::to_string(*number) == stored && number == to_integer(wanted);
}

bool is_same_name(std::string_view stored, std::string_view wanted) {
  const bool may_be_names = stored.find('=') != base::npos && wanted.find('=') != base::npos;
  if (!may_be_names || !base::equals_fold(stored.substr(0, 1), wanted.substr(0, 1)))
    return false;
  try {
    return ads::normalize_dn(stored) == ads::normalize_dn(wanted);
  } catch (const base::RuntimeError&) {
    return false;
  }
}

/// ASCII of which `folded_whole` changes letters alone.
bool is_simple(std::string_view text) {
  bool after_blank = true;
  for (const char c : text) {
    if (static_cast<unsigned char>(c) >= 0x80 || (c == ' ' && after_blank))
      return false;
    after_blank = c == ' ';
  }
  return !text.ends_with(' ');
}

bool is_same_text(std::string_view stored, std::string_view wanted) {
  if (is_simple(stored) && is_simple(wanted))
    return base::equals_fold(stored, wanted);
  return folded_whole(stored) == folded_whole(wanted);
}

bool is_equal(std::string_view stored, std::string_view wanted) {
  return stored == wanted || is_same_text(stored, wanted) || is_same_integer(stored, wanted) ||
         is_same_name(stored, wanted);
}

/// "organizationalUnit" names the category "CN=Organizational-Unit,CN=Schema,…", "user" the one of persons.
bool is_category(std::string_view stored, std::string_view wanted) {
  if (is_equal(stored, wanted))
    return true;
  static constexpr std::string_view kPersons[] = {"user", "contact", "inetOrgPerson", "organizationalPerson"};
  for (const std::string_view person : kPersons) {
    if (base::equals_fold(wanted, person))
      wanted = "person";
  }
  try {
    std::string name = ads::parse_rdn(ads::first_rdn(stored)).value;
    std::erase(name, '-');
    return base::equals_fold(name, wanted);
  } catch (const base::RuntimeError&) {
    return false;
  }
}

/// Below, at or above 0, as `a` compares to `b`.
int compare(std::string_view a, std::string_view b) {
  const std::optional<std::int64_t> number_a = to_integer(a);
  const std::optional<std::int64_t> number_b = to_integer(b);
  if (number_a && number_b)
    return *number_a < *number_b ? -1 : *number_a > *number_b ? 1 : 0;
  return folded_whole(a).compare(folded_whole(b));
}

bool has_pieces(std::string_view stored, const std::vector<std::string>& pieces) {
  const std::string text = folded_whole(stored);
  std::string_view rest = text;
  const std::string first = folded(pieces.front());
  if (!rest.starts_with(first))
    return false;
  rest.remove_prefix(first.size());
  for (std::size_t i = 1; i + 1 < pieces.size(); ++i) {
    const std::string piece = folded(pieces[i]);
    const std::size_t found = rest.find(piece);
    if (found == base::npos)
      return false;
    rest.remove_prefix(found + piece.size());
  }
  return rest.ends_with(folded(pieces.back()));
}

/// Eight of them, with `filler` for those that are missing.
std::uint64_t first_bytes(std::string_view text, unsigned char filler) {
  std::uint64_t bytes = 0;
  for (std::size_t i = 0; i < sizeof bytes; ++i)
    bytes = bytes << 8U | (i < text.size() ? static_cast<unsigned char>(text[i]) : filler);
  return bytes;
}

Truth any_value(const Filter& filter, const AttributeReader& read,
                const std::function<bool(std::string_view stored)>& holds) {
  const std::vector<std::string_view> values = read(filter.attribute);
  if (values.empty())
    return Truth::kUndefined;
  return truth(std::any_of(values.begin(), values.end(), holds));
}

Truth matches_equal(const Filter& filter, const AttributeReader& read) {
  const bool category = base::equals_fold(filter.attribute, "objectCategory");
  return any_value(filter, read, [&](std::string_view stored) {
    return category ? is_category(stored, filter.value) : is_equal(stored, filter.value);
  });
}

Truth matches_extensible(const Filter& filter, const AttributeReader& read) {
  if (filter.attribute.empty())
    return Truth::kUndefined;
  if (filter.matching_rule.empty())
    return matches_equal(filter, read);
  const bool all_bits = filter.matching_rule == kAllBitsRule;
  const std::optional<std::int64_t> mask = to_integer(filter.value);
  if ((!all_bits && filter.matching_rule != kAnyBitRule) || !mask)
    return Truth::kUndefined;
  return any_value(filter, read, [&](std::string_view stored) {
    const std::optional<std::int64_t> bits = to_integer(stored);
    if (!bits)
      return false;
    const auto common = static_cast<std::uint64_t>(*bits) & static_cast<std::uint64_t>(*mask);
    return all_bits ? common == static_cast<std::uint64_t>(*mask) : common != 0;
  });
}

Truth evaluate(const Filter& filter, const AttributeReader& read);

/// The least (of and) or the greatest (of or) of the children's truths; `decided` ends the search.
Truth combine(const Filter& filter, const AttributeReader& read, Truth decided) {
  const bool conjunction = decided == Truth::kFalse;
  Truth result = conjunction ? Truth::kTrue : Truth::kFalse;
  for (const Filter& child : filter.children) {
    const Truth one = evaluate(child, read);
    result = conjunction ? std::min(result, one) : std::max(result, one);
    if (result == decided)
      break;
  }
  return result;
}

Truth negate(Truth value) {
  if (value == Truth::kUndefined)
    return value;
  return truth(value == Truth::kFalse);
}

Truth evaluate(const Filter& filter, const AttributeReader& read) {
  switch (filter.kind) {
    case Filter::Kind::kAnd:
      return combine(filter, read, Truth::kFalse);
    case Filter::Kind::kOr:
      return combine(filter, read, Truth::kTrue);
    case Filter::Kind::kNot:
      return negate(evaluate(filter.children.front(), read));
    case Filter::Kind::kPresent:
      return truth(!read(filter.attribute).empty());
    case Filter::Kind::kEqual:
    case Filter::Kind::kApprox:
      return matches_equal(filter, read);
    case Filter::Kind::kSubstrings:
      return any_value(filter, read,
                       [&](std::string_view stored) { return has_pieces(stored, filter.pieces); });
    case Filter::Kind::kGreaterOrEqual:
      return any_value(filter, read,
                       [&](std::string_view stored) { return compare(stored, filter.value) >= 0; });
    case Filter::Kind::kLessOrEqual:
      return any_value(filter, read,
                       [&](std::string_view stored) { return compare(stored, filter.value) <= 0; });
    case Filter::Kind::kExtensible:
      return matches_extensible(filter, read);
  }
  return Truth::kUndefined;
}

}  // namespace

bool matches(const Filter& filter, const AttributeReader& read) {
  return evaluate(filter, read) == Truth::kTrue;
}

std::uint64_t beginning_key(std::string_view stored) {
  return first_bytes(folded_whole(stored), 0);
}

std::pair<std::uint64_t, std::uint64_t> beginning_keys(std::string_view piece) {
  const std::string text = folded(piece);
  return {first_bytes(text, 0), first_bytes(text, 0xFF)};
}

}  // namespace twk::lab
