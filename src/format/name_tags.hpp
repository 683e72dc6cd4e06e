#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace twk::session {
struct Session;
}

/// The tags of the name language in a text; `Filling` applies them in order.
namespace twk::format {

enum class Case { kAsIs, kUpper, kLower };

/// What a format takes of a name: all of it, or its first or last letters, in which case.
struct NamePart {
  Case wanted = Case::kAsIs;
  std::size_t first = 0;  ///< letters; 0 for all
  std::size_t last = 0;

  /// Those letters, in the case that they have.
  [[nodiscard]] std::string_view letters_of(std::string_view name) const;
  [[nodiscard]] std::string of(std::string_view name) const;
};

/// Removes the tag at `at`, with the modifiers around it. `at` is then where the part of the name goes.
NamePart take_tag(std::string& text, std::size_t& at, std::size_t tag_size);

/// Each occurrence of a name's tag, upper case, replaced by the name, with the modifiers around the tag.
void expand_name(std::string& text, std::string_view tag, std::string_view name);

/// Unless `SerialTokenUsed` is set, `SerialCounter` starts from the setting `IncNumber`.
void begin_serials(session::Session& session);
/// The number with at least so many digits.
std::string serial_text(std::int16_t number, int digits);
/// The tags of the serial number, after `begin_serials`; one of them sets `SerialTokenUsed`.
void expand_serials(session::Session& session, std::string& text);

}  // namespace twk::format
