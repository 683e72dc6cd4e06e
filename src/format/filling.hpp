#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>

namespace twk::session {
struct Session;
}

namespace twk::format {

/// A text of the administrator that is filled in steps, in the order that its kind of text requires. What
/// comes from a person's name, a line of an import, the directory or another field is data: no later step
/// searches it for tags. The values of a template's variables are the administrator's and may hold tags
/// of the steps to come.
///
///     Filling(session, format).variables().names(first, middle, last).tag("%Domain%", domain).take()
///
/// Tags are found without regard to case. No step raises.
class Filling {
 public:
  /// How a value is written into the text; unchanged when empty.
  using Escape = std::function<std::string(std::string_view value)>;

  Filling(session::Session& session, std::string text);

  /// Every occurrence of a tag, percent signs included, replaced by data.
  Filling& tag(std::string_view name, std::string_view value);
  /// The three names, the fields of the import line and the serial number, as described at `UserName`.
  Filling& names(std::string_view first, std::string_view middle, std::string_view last);
  /// "%IMPORTn%" replaced by field n of the current import line, for each field that the line has, and
  /// "%IMPORT:Heading%" by the field under that heading; nothing outside of an import.
  Filling& import_fields(const Escape& escape = {});
  /// The variables of the loaded template, row by row. A value may hold the tag of a later row; the expansion
  /// of a value that holds its own tag stops at a limit.
  Filling& variables();

  /// True when the text holds a tag that no step has replaced yet, upper case; tags in data do not count.
  [[nodiscard]] bool holds(std::string_view tag) const;
  /// The current text.
  std::string take();

 private:
  void put_fields(std::size_t last, const Escape& escape);
  void put_fields_under_headings(const Escape& escape);

  session::Session& session_;
  std::string text_;
};

}  // namespace twk::format
