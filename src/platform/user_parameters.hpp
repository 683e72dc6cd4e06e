#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "base/bytes.hpp"
#include "platform/network.hpp"

/// The directory attribute "userParameters", which holds a user's terminal-server settings, [MS-TSTS]
/// 2.3.1 to 2.3.3. Numbers are little-endian.
///
///     offset  bytes
///          0  96     reserved: what other programs keep there, else blanks in UTF-16
///         96  2      the signature "P" in UTF-16
///         98  2      number of properties
///        100         the properties, one after the other:
///                      2  length of the name in bytes
///                      2  length of the value in bytes
///                      2  type, 1
///                         name, UTF-16
///                         value: two hexadecimal digits, in ASCII, for each of its bytes
///
/// A number's value is 4 bytes; a text's ends in a zero: as "<name>" in code page 1252, as "<name>W" in
/// UTF-16. Times are in milliseconds. No property counts without "CtxCfgPresent" with the value
/// 0xB00B1E55.
namespace twk::platform {

/// Numbers of the calls below, [MS-ERREF] 2.2.
namespace user_parameters_error {
inline constexpr std::uint32_t kInvalidData = 13;       ///< the attribute is not of that form
inline constexpr std::uint32_t kInvalidParameter = 87;  ///< a value that the setting does not accept
}  // namespace user_parameters_error

/// A property as stored.
struct TSProperty {
  base::Bytes PropName;
  std::uint16_t Type = 1;
  base::Bytes PropValue;

  friend bool operator==(const TSProperty&, const TSProperty&) = default;
};

struct UserParameters {
  static constexpr std::size_t kReservedSize = 96;

  /// Without settings.
  UserParameters();

  base::Bytes ReservedData;  ///< 96 bytes
  std::vector<TSProperty> TSPropertyArray;
  base::Bytes rest;     ///< what follows the properties
  base::Bytes foreign;  ///< the whole of an attribute that has another form, longer than the reserved bytes

  /// Nothing at all is an attribute without settings, and so is one that ends within the reserved bytes,
  /// which are padded with blanks. One without the signature is `foreign`. Raises kInvalidData when a
  /// property reaches beyond the end, and for a number of bytes that cannot be a text.
  static UserParameters decode(std::span<const std::uint8_t> bytes);
  /// Raises kInvalidParameter when that is more than the attribute holds, 32767 characters.
  [[nodiscard]] base::Bytes encode() const;

  friend bool operator==(const UserParameters&, const UserParameters&) = default;
};

/// The attribute from a directory's value. Servers return its bytes, read as UTF-16, in UTF-8; some return
/// the bytes as they are, which the signature in its place shows. Raises kInvalidData for a value that is
/// neither.
base::Bytes user_parameters_bytes(std::string_view value);
/// The value of the attribute, in UTF-8. Raises kInvalidData for bytes that are not UTF-16 text.
std::string user_parameters_text(std::span<const std::uint8_t> bytes);

/// The setting, or the default for a user without it: the person may log on and names the program, drives,
/// printers and the default printer are connected, no time is limited, texts are empty. Raises kInvalidData
/// for a stored value that is not one, kInvalidParameter for an unknown class.
WtsConfigValue wts_setting(const UserParameters& parameters, WtsConfigClass setting);

/// Changes that one setting; everything else stays as it is. Raises kInvalidParameter for a value of the
/// wrong kind or one that the setting does not accept, and for kTerminalServerRemoteHomeDir, which follows
/// from the drive letter; kInvalidData when the attribute belongs to another program, or the old value cannot
/// be read.
void set_wts_setting(UserParameters& parameters, WtsConfigClass setting, const WtsConfigValue& value);

}  // namespace twk::platform
