#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <string_view>

#include "base/text.hpp"

/// Registry trees as REGEDIT4 text.
///
///     text     = header { blank | comment | key | value }     a line each; UTF-8, CRLF (LF is also read)
///     header   = "REGEDIT4"                                   written
///              | "Windows Registry Editor Version 5.00"       only read
///     comment  = ";" anything                                 not kept
///     key      = "[" hive { "\" part } "]"
///     value    = ( "@" | quoted ) "=" ( quoted | "hex(1):" bytes | other )
///     quoted   = '"' text with \\ for \ and \" for " '"'
///     bytes    = two hexadecimal digits each, with commas between, the last one 00; a "\" at the end of a
///                line continues it; in version 5.00 UTF-16, little-endian
///     other    = "dword:" … | "hex:" … | "hex(n):" …          kept unchanged
///
/// A text that a line cannot hold, because of a control character or bytes that are not UTF-8, is written as
/// the bytes of hex(1). "@" is the value without a name.
namespace twk::local {

inline constexpr std::uint32_t kInvalidFileFormat = 321;  ///< the runtime's number for it

struct RegistryValue {
  std::string name;
  std::string text;
  std::string other;  ///< what follows "=", for a value that is not a text; `text` is then empty
};

/// The order of names in upper case, in which a name is found as it is spelled.
struct FoldedOrder {
  using is_transparent = void;
  bool operator()(std::string_view a, std::string_view b) const { return base::compare_fold(a, b) < 0; }
};

struct RegistryKey {
  std::string path;                                          ///< with the hive's name in front
  std::map<std::string, RegistryValue, FoldedOrder> values;  ///< by the name in upper case
};

using RegistryTree = std::map<std::string, RegistryKey, FoldedOrder>;  ///< by the path in upper case

/// The key of that path, made when it does not exist. Paths fold case and keep the spelling they came with
/// first.
RegistryKey& registry_key(RegistryTree& tree, std::string_view path);
/// Sets a value; names fold case and keep the spelling they came with first.
void set_registry_value(RegistryKey& key, RegistryValue value);

/// The text of a file that a registry editor wrote, in UTF-8: UTF-16 with its byte-order mark, as
/// version 5.00 has it, UTF-8, or code page 1252. Raises `kInvalidFileFormat` for invalid UTF-16.
std::string regedit_text(std::string_view bytes);

/// Reads a text with or without a byte-order mark. Of duplicates, the last one counts. Raises
/// `kInvalidFileFormat` with the number of the line that is not understood, deletions ("[-key]", "name"=-)
/// included.
RegistryTree parse_regedit(std::string_view text);

/// Keys and values in the order of their folded names. Key paths must be free of control characters.
std::string format_regedit(const RegistryTree& tree);

}  // namespace twk::local
