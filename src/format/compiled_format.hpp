#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "format/name_tags.hpp"
#include "session/session.hpp"

namespace twk::format {

/// A format of the name language, taken apart once for many people: a list of pieces that are written one
/// after the other. It gives what `Filling::names` gives, in a small part of the time, for plain people in
/// plain formats; who and what is not plain goes that way.
///
/// A format is not plain when a name could be more than data in it: "%first%" beside a percent sign that
/// belongs to no tag, letters beyond ASCII, "%IMPORT:Heading%".
class CompiledFormat {
 public:
  /// What the pieces are filled with.
  struct Values {
    std::array<std::string_view, 3> names;                                  ///< first, middle, last
    const std::array<std::string, session::kMostImportFields + 1>& fields;  ///< of the import line
    std::optional<std::int16_t> serial;                                     ///< U+001F in its place for none
    std::string_view tag = {};                                              ///< the value of the further tag
  };

  /// None for a format that is not plain. `tag` is a further one, in upper case with its percent signs, whose
  /// value is not empty and begins and ends with no blank.
  static std::optional<CompiledFormat> of(std::string_view format, std::string_view tag = {});

  [[nodiscard]] bool has_serial() const { return has_serial_; }
  /// False for people and fields that are not plain in this format.
  [[nodiscard]] bool takes(const Values& values) const;
  /// The text, in place of what `out` holds.
  void fill(const Values& values, std::string& out) const;

 private:
  enum class Kind { kLiteral, kName, kField, kSerial, kTag };
  struct Piece {
    Kind kind = Kind::kLiteral;
    std::string literal = {};
    std::size_t number = 0;    ///< of the name, of the field, digits of the serial number
    NamePart part = {};        ///< of a name
    std::size_t shortest = 0;  ///< fewer letters would let a modifier of another name reach over them
    bool no_digits = false;    ///< one would be a modifier of the name beside it
  };

  bool take_names(std::string& text, std::vector<Piece>& names);
  bool take_apart(std::string_view text, const std::vector<Piece>& names, std::string_view tag);
  void add_literal(char c);

  std::vector<Piece> pieces_;
  bool has_serial_ = false;
};

}  // namespace twk::format
