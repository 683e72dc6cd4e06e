#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "base/dates.hpp"

namespace twk::batch {

/// How far an import is, and how fast.
class ImportPace {
 public:
  /// `lines` is the number of the last line.
  ImportPace(std::int32_t lines, base::Date begun) : lines_(lines), begun_(begun) {}

  /// A line ended with a light; any other text is a line that was refused.
  void add(std::int32_t line, std::string_view light);
  /// "Line 120 of 300, 40 a second, 5 s left. GREEN 110, YELLOW 8, RED 2"; none within the second of the text
  /// before.
  std::optional<std::string> text(base::Date now);

 private:
  std::int32_t lines_;
  base::Date begun_;
  base::Date told_{-1};
  std::int32_t line_ = 0;
  std::int64_t done_ = 0;
  std::int64_t green_ = 0;
  std::int64_t yellow_ = 0;
};

}  // namespace twk::batch
