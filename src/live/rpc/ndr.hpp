#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "base/bytes.hpp"
#include "live/terms/error_numbers.hpp"

/// Arguments of remote calls as bytes, NDR of [C706] chapter 14, little-endian: numbers of 4 bytes at a
/// multiple of 4; a text as three numbers (room, offset 0, length, both in characters including the final
/// zero) and UTF-16; a pointer that may be null as a number that is not 0, what it points to after the
/// structure that holds it.
namespace twk::live {

class NdrWriter {
 public:
  void number(std::uint32_t number);
  /// The number for a pointer.
  void pointer(bool present);
  void text(std::string_view text);
  /// An array of bytes, preceded by its size.
  void array(std::span<const std::uint8_t> bytes);

  [[nodiscard]] const base::Bytes& bytes() const { return bytes_; }

 private:
  void align();

  base::Bytes bytes_;
  std::uint32_t pointers_ = 0;
};

/// Each call raises kBadStub for bytes that are not of that form, and reads nothing past the end.
class NdrReader {
 public:
  explicit NdrReader(std::span<const std::uint8_t> bytes) : bytes_(bytes) {}

  std::uint32_t number();
  /// True for a pointer that points to something.
  bool pointer() { return number() != 0; }
  std::string text();
  base::Bytes array();

 private:
  std::span<const std::uint8_t> take(std::size_t size);

  std::span<const std::uint8_t> bytes_;
  std::size_t at_ = 0;
};

}  // namespace twk::live
