#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

#include "base/bytes.hpp"
#include "base/dates.hpp"

namespace twk::platform {

struct Value;
using ValueList = std::vector<Value>;

/// What an attribute or a query field holds: nothing (an attribute without a value, a Null field), a Boolean,
/// a 32-bit integer, UTF-8 text, a date, bytes, or the list of a multi-valued attribute. A 64-bit directory
/// integer is passed as its decimal text.
struct Value {
  using Data =
      std::variant<std::monostate, bool, std::int32_t, std::string, base::Date, base::Bytes, ValueList>;
  Data data;

  Value() = default;
  Value(bool value) : data(value) {}                           // NOLINT: conversions are the point
  Value(std::int32_t value) : data(value) {}                   // NOLINT
  Value(std::string value) : data(std::move(value)) {}         // NOLINT
  Value(std::string_view value) : data(std::string(value)) {}  // NOLINT
  Value(const char* value) : data(std::string(value)) {}       // NOLINT
  Value(base::Date value) : data(value) {}                     // NOLINT
  Value(base::Bytes value) : data(std::move(value)) {}         // NOLINT
  Value(ValueList value) : data(std::move(value)) {}           // NOLINT

  [[nodiscard]] bool is_empty() const { return std::holds_alternative<std::monostate>(data); }
  [[nodiscard]] bool is_list() const { return std::holds_alternative<ValueList>(data); }

  /// As text: numbers in decimal, True and False as words, a date in its short forms, the first element of a
  /// list, bytes as hexadecimal digits, nothing as the empty text.
  [[nodiscard]] std::string text() const;
  /// As a number: text that is a decimal number counts, True is -1. Raises a type mismatch for anything else.
  [[nodiscard]] std::int32_t integer() const;
  /// True for True, a number other than 0 and the text "TRUE" in any case.
  [[nodiscard]] bool boolean() const;
  /// Raises a type mismatch for anything but a date or a text that reads as one.
  [[nodiscard]] base::Date date() const;
  /// Raises a type mismatch for anything but bytes.
  [[nodiscard]] const base::Bytes& bytes() const;
  /// The elements; a single value is a list of one, nothing a list of none.
  [[nodiscard]] ValueList list() const;

  friend bool operator==(const Value&, const Value&) = default;
};

}  // namespace twk::platform
