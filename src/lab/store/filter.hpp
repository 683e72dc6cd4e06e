#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

/// Search filters, RFC 4515.
namespace twk::lab {

struct Filter {
  enum class Kind {
    kAnd,
    kOr,
    kNot,
    kPresent,
    kEqual,
    kSubstrings,
    kGreaterOrEqual,
    kLessOrEqual,
    kApprox,
    kExtensible
  };

  Kind kind = Kind::kPresent;
  std::vector<Filter> children = {};  ///< of and, or, not
  std::string attribute = {};
  std::string value = {};  ///< unescaped bytes
  std::vector<std::string> pieces =
      {};                          ///< of substrings: initial, any…, final; initial and final may be empty
  std::string matching_rule = {};  ///< of extensible; the bit rules 1.2.840.113556.1.4.803 and .804 are known
};

/// The error number for text that is not a filter: E_ADS_INVALID_FILTER.
inline constexpr std::uint32_t kInvalidFilter = 0x80005014;

/// Raises kInvalidFilter, with the position, for text that is not a filter. Nesting deeper than 100 is
/// refused, and so is ":dn". "(&)" is true and "(|)" false, RFC 4526. Blanks between the parts are
/// ignored.
Filter parse_filter(std::string_view text);

/// The values of one of the entry's attributes, by name.
using AttributeReader = std::function<std::vector<std::string_view>(std::string_view attribute)>;

/// True when the filter holds for the entry. Text compares without regard to case and with runs of blanks as
/// one, integers as numbers; an attribute that the entry lacks is "undefined", which is not true, also after
/// "not". "objectCategory" equals its short class name ("person") as well as the full name of the category;
/// DNs compare as names, however spelled. "~=" means "=". An unknown matching rule gives "undefined".
bool matches(const Filter& filter, const AttributeReader& read);

/// The first eight bytes of a stored text as `matches` compares it, the first one highest, so that texts
/// which begin alike have neighbouring keys; and the least and the greatest key of texts that begin with an
/// initial piece.
std::uint64_t beginning_key(std::string_view stored);
std::pair<std::uint64_t, std::uint64_t> beginning_keys(std::string_view piece);

}  // namespace twk::lab
