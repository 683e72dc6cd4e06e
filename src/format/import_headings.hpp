#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

/// Headings of an import's columns, and the tags that name them: "%IMPORT:Department%".
namespace twk::format {

/// On one line: without blanks at its ends, each run of blanks and line breaks as one blank.
std::string heading_text(std::string_view heading);
/// What equal headings have in common: `heading_text` without regard to case.
std::string heading_key(std::string_view heading);

struct HeadingTag {
  std::size_t begin = 0;  ///< of its first percent sign
  std::size_t size = 0;   ///< percent signs included
  std::string heading;    ///< as written there
};
/// The first tag of a heading at or after `from`. A heading that contains a percent sign has none.
std::optional<HeadingTag> find_heading_tag(std::string_view text, std::size_t from = 0);

}  // namespace twk::format
