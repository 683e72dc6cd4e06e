#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "base/bytes.hpp"
#include "platform/network.hpp"

/// The directory attribute "userParameters", in which a user's terminal-server settings are kept, [MS-TSTS]
/// 2.3.1 to 2.3.3. Numbers are little-endian.
///
///     offset  bytes
///          0  96     reserved: what other programs keep there, else blanks in UTF-16
///         96  2      the signature "P" in UTF-16
///         98  2      number of properties
///        100         the properties, one behind the other:
///                      2  length of the name in bytes
///                      2  length of the value in bytes
///                      2  type, 1
///                         name, UTF-16
///                         value: two hexadecimal digits, in ASCII, for each of its bytes
///
/// A number's value is 4 bytes; a text's ends in a zero: as "<name>" in code page 1252, as "<name>W" in
/// UTF-16. Times are in milliseconds. Without the property "CtxCfgPresent" of the value 0xB00B1E55 no other
/// one counts.
namespace twk::platform {

/// Numbers of the calls below, [MS-ERREF] 2.2.
namespace user_parameters_error {
inline constexpr std::uint32_t kInvalidData = 13;       ///< the attribute is not of that form
inline constexpr std::uint32_t kInvalidParameter = 87;  ///< a value that the setting does not take
}  // namespace user_parameters_error

/// A property as it stands there.
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
  base::Bytes rest;     ///< what stands behind the properties
  base::Bytes foreign;  ///< the whole of an attribute that has another form, longer than the reserved bytes

  /// Nothing at all is an attribute without settings, and so is one that ends within the reserved bytes: they
  /// are filled up with blanks. One without the signature is `foreign`. Raises kInvalidData when a property
  /// reaches beyond the end, and for a number of bytes that is no text.
  static UserParameters decode(std::span<const std::uint8_t> bytes);
  /// Raises kInvalidParameter when that is more than the attribute holds, 32767 characters.
  [[nodiscard]] base::Bytes encode() const;

  friend bool operator==(const UserParameters&, const UserParameters&) = default;
};

/// The attribute of a directory's value. A server hands it out as the UTF-8 of what its bytes are in UTF-16;
/// some hand out the bytes as they are, which is seen by the signature at its place. Raises kInvalidData for
/// a value that is neither.
base::Bytes user_parameters_bytes(std::string_view value);
/// The value of the attribute, in UTF-8. Raises kInvalidData for bytes that no text in UTF-16 has.
std::string user_parameters_text(std::span<const std::uint8_t> bytes);

/// The setting, or what holds for a user without: the person may log on and names the program, drives,
/// printers and the default printer are connected, no time is limited, texts are empty. Raises kInvalidData
/// for a stored value that is not one, kInvalidParameter for a class that there is not.
WtsConfigValue wts_setting(const UserParameters& parameters, WtsConfigClass setting);

/// Changes that one setting; all else stays as it is. Raises kInvalidParameter for a value of the wrong kind
/// or one that the setting does not take, and for kTerminalServerRemoteHomeDir, which follows from the drive
/// letter; kInvalidData when the attribute is another program's, or what is changed is not readable.
void set_wts_setting(UserParameters& parameters, WtsConfigClass setting, const WtsConfigValue& value);

}  // namespace twk::platform
