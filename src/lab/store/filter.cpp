#include "lab/store/filter.hpp"

#include <algorithm>
#include <optional>
#include <utility>

#include "base/errors.hpp"
#include "base/text.hpp"

/// The grammar, RFC 4515:
///
///     filter      "(" ( "&" filter* | "|" filter* | "!" filter | item ) ")"
///     item        attribute ( "=" | "~=" | ">=" | "<=" ) value
///               | attribute "=" [value] "*" (value "*")* [value]        "=*" alone means presence
///               | [attribute] [":" rule] ":=" value
///     value       any character but "*", "(", ")", "\" and NUL, or "\" and two hexadecimal digits
namespace twk::lab {
namespace {

constexpr int kDeepest = 100;

bool is_attribute_character(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '-' || c == '.' ||
         c == ';' || c == '_';
}

class Parser {
 public:
  explicit Parser(std::string_view text) : text_(text) {}

  Filter parse() {
    Filter filter = parse_filter(0);
    skip_blanks();
    if (at_ != text_.size())
      fail("Unexpected text after the filter");
    return filter;
  }

 private:
  [[noreturn]] void fail(const std::string& what) const {
    throw base::RuntimeError(kInvalidFilter,
                             what + " at position " + std::to_string(at_ + 1) + " of the filter.");
  }

  [[nodiscard]] bool is_at(char c) const { return at_ < text_.size() && text_[at_] == c; }

  bool take(char c) {
    if (!is_at(c))
      return false;
    ++at_;
    return true;
  }

  void expect(char c) {
    if (!take(c))
      fail(std::string("\"") + c + "\" expected");
  }

  void skip_blanks() {
    while (is_at(' '))
      ++at_;
  }

  Filter parse_filter(int depth) {
    if (depth > kDeepest)
      fail("Nested too deep");
    skip_blanks();
    expect('(');
    skip_blanks();
    Filter filter;
    if (take('&')) {
      filter = parse_list(Filter::Kind::kAnd, depth);
    } else if (take('|')) {
      filter = parse_list(Filter::Kind::kOr, depth);
    } else if (take('!')) {
      filter.kind = Filter::Kind::kNot;
      filter.children.push_back(parse_filter(depth + 1));
      skip_blanks();
    } else {
      filter = parse_item();
    }
    expect(')');
    return filter;
  }

  Filter parse_list(Filter::Kind kind, int depth) {
    Filter filter;
    filter.kind = kind;
    for (skip_blanks(); is_at('('); skip_blanks())
      filter.children.push_back(parse_filter(depth + 1));
    return filter;
  }

  std::string parse_name() {
    const std::size_t from = at_;
    while (at_ < text_.size() && is_attribute_character(text_[at_]))
      ++at_;
    return std::string(text_.substr(from, at_ - from));
  }

  Filter parse_item() {
    Filter filter;
    filter.attribute = parse_name();
    skip_blanks();
    if (is_at(':'))
      return parse_extensible(std::move(filter));
    if (filter.attribute.empty())
      fail("An attribute's name expected");
    if (take('~')) {
      filter.kind = Filter::Kind::kApprox;
    } else if (take('>')) {
      filter.kind = Filter::Kind::kGreaterOrEqual;
    } else if (take('<')) {
      filter.kind = Filter::Kind::kLessOrEqual;
    } else {
      expect('=');
      return parse_equality(std::move(filter));
    }
    expect('=');
    filter.value = parse_value();
    return filter;
  }

  Filter parse_extensible(Filter filter) {
    filter.kind = Filter::Kind::kExtensible;
    expect(':');
    if (!is_at('=')) {
      filter.matching_rule = parse_name();
      if (filter.matching_rule.empty())
        fail("A matching rule expected");
      if (base::equals_fold(filter.matching_rule, "dn"))
        fail("\":dn\" is not supported");
      expect(':');
    } else if (filter.attribute.empty()) {
      fail("An attribute's name or a matching rule expected");
    }
    expect('=');
    filter.value = parse_value();
    return filter;
  }

  Filter parse_equality(Filter filter) {
    std::vector<std::string> pieces;
    pieces.push_back(parse_value());
    while (take('*'))
      pieces.push_back(parse_value());
    if (pieces.size() == 1) {
      filter.kind = Filter::Kind::kEqual;
      filter.value = std::move(pieces.front());
    } else if (std::all_of(pieces.begin(), pieces.end(),
                           [](const std::string& piece) { return piece.empty(); })) {
      filter.kind = Filter::Kind::kPresent;
    } else {
      filter.kind = Filter::Kind::kSubstrings;
      filter.pieces = std::move(pieces);
    }
    return filter;
  }

  std::string parse_value() {
    std::string value;
    while (at_ < text_.size() && text_[at_] != '*' && text_[at_] != ')') {
      if (text_[at_] == '(' || text_[at_] == '\0')
        fail("A character that must be escaped");
      value.push_back(text_[at_] == '\\' ? parse_escape() : text_[at_]);
      ++at_;
    }
    return value;
  }

  /// Leaves the position on the last digit.
  char parse_escape() {
    const std::optional<unsigned> high =
        at_ + 1 < text_.size() ? base::hex_digit(text_[at_ + 1]) : std::nullopt;
    const std::optional<unsigned> low =
        at_ + 2 < text_.size() ? base::hex_digit(text_[at_ + 2]) : std::nullopt;
    if (!high || !low)
      fail("Two hexadecimal digits expected after the backslash");
    at_ += 2;
    return static_cast<char>(static_cast<unsigned char>(*high << 4U | *low));
  }

  std::string_view text_;
  std::size_t at_ = 0;
};

}  // namespace

Filter parse_filter(std::string_view text) {
  return Parser(text).parse();
}

}  // namespace twk::lab
