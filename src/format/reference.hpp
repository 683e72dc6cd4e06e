#pragma once

#include <span>
#include <string_view>

/// What may be written in a format, for help and manuals.
namespace twk::format {

struct FormatPart {
  std::string_view written;
  std::string_view meaning;
  std::string_view example;  ///< a format
  std::string_view result;   ///< for John Fred Smith, serial number 1, and an import line "Ann,Sales" under
                             ///< the headings "Name,Department"
};
/// Tags first, then what cuts and changes them, then whole formats.
std::span<const FormatPart> all_format_parts();

struct KnownVariable {
  std::string_view written;
  std::string_view meaning;
  std::string_view where;  ///< the texts that take it, in small letters
};
/// Those of the program; a template has its own.
std::span<const KnownVariable> all_known_variables();

}  // namespace twk::format
