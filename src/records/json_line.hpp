#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

namespace twk::records {

/// A line of a file of JSON lines: one object of texts, numbers and truth values, RFC 8259. It is
/// written in ASCII, so that no character of a name moves a cursor or turns the text around.
class JsonLine {
 public:
  using Value = std::variant<std::string, std::int64_t, bool>;

  JsonLine() = default;
  JsonLine(std::initializer_list<std::pair<std::string, Value>> fields) : fields_(fields) {}

  void add(std::string key, Value value) { fields_.emplace_back(std::move(key), std::move(value)); }
  /// Empty for a key that is not there or holds something else.
  [[nodiscard]] std::string text(std::string_view key) const;
  [[nodiscard]] std::int64_t number(std::string_view key) const;
  [[nodiscard]] bool is_set(std::string_view key) const;

  /// With its line end.
  [[nodiscard]] std::string bytes() const;
  /// None for what is not such an object; nested values are left out.
  static std::optional<JsonLine> parse(std::string_view line);

 private:
  [[nodiscard]] const Value* find(std::string_view key) const;

  std::vector<std::pair<std::string, Value>> fields_;
};

}  // namespace twk::records
