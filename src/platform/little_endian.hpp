#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "base/bytes.hpp"

/// Little-endian numbers in bytes. The readers require the bytes to exist.
namespace twk::platform {

inline void append_u16(base::Bytes& bytes, std::uint16_t number) {
  bytes.push_back(static_cast<std::uint8_t>(number));
  bytes.push_back(static_cast<std::uint8_t>(number >> 8U));
}

inline void append_u32(base::Bytes& bytes, std::uint32_t number) {
  append_u16(bytes, static_cast<std::uint16_t>(number));
  append_u16(bytes, static_cast<std::uint16_t>(number >> 16U));
}

inline std::uint16_t read_u16(std::span<const std::uint8_t> bytes, std::size_t at) {
  return static_cast<std::uint16_t>(bytes[at] | bytes[at + 1] << 8U);
}

inline std::uint32_t read_u32(std::span<const std::uint8_t> bytes, std::size_t at) {
  return read_u16(bytes, at) | static_cast<std::uint32_t>(read_u16(bytes, at + 2)) << 16U;
}

}  // namespace twk::platform
