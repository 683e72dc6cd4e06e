#include "platform/user_parameters.hpp"

#include <algorithm>
#include <array>

#include "base/errors.hpp"
#include "base/text.hpp"
#include "platform/little_endian.hpp"
#include "platform/utf16.hpp"

namespace twk::platform {
namespace {

using base::Bytes;

constexpr std::uint16_t kSignature = 'P';
constexpr std::size_t kCountOffset = UserParameters::kReservedSize + 2;
constexpr std::size_t kArrayOffset = UserParameters::kReservedSize + 4;
constexpr std::size_t kPropertyHeaderSize = 6;
constexpr std::size_t kLargestText = std::size_t{32767} * 2;
constexpr std::string_view kHexDigits = "0123456789abcdef";

constexpr std::string_view kPresent = "CtxCfgPresent";
constexpr std::uint32_t kPresentValue = 0xB00B1E55;
constexpr std::string_view kFlags = "CtxCfgFlags1";

/// Bits of "CtxCfgFlags1".
constexpr std::uint32_t kInheritAutoLogon = 0x80000000;
constexpr std::uint32_t kInheritInitialProgram = 0x10000000;
constexpr std::uint32_t kInheritAutoClient = 0x00200000;
constexpr std::uint32_t kResetBroken = 0x00040000;
constexpr std::uint32_t kReconnectSame = 0x00020000;
constexpr std::uint32_t kLogonDisabled = 0x00010000;
constexpr std::uint32_t kAutoClientDrives = 0x00008000;
constexpr std::uint32_t kAutoClientLpts = 0x00004000;
constexpr std::uint32_t kForceClientLptDef = 0x00002000;
constexpr std::uint32_t kNewFlags = kInheritAutoLogon | kInheritInitialProgram | kInheritAutoClient |
                                    kAutoClientDrives | kAutoClientLpts | kForceClientLptDef;

struct TextSetting {
  WtsConfigClass setting;
  std::string_view name;
  std::size_t most_units;
};
constexpr std::array kTexts = {
    TextSetting{WtsConfigClass::kInitialProgram, "CtxInitialProgram", 256},
    TextSetting{WtsConfigClass::kWorkingDirectory, "CtxWorkDirectory", 256},
    TextSetting{WtsConfigClass::kModemCallbackPhoneNumber, "CtxCallbackNumber", 50},
    TextSetting{WtsConfigClass::kTerminalServerProfilePath, "CtxWFProfilePath", 256},
    TextSetting{WtsConfigClass::kTerminalServerHomeDir, "CtxWFHomeDir", 256},
    TextSetting{WtsConfigClass::kTerminalServerHomeDirDrive, "CtxWFHomeDirDrive", 3}};

struct NumberSetting {
  WtsConfigClass setting;
  std::string_view name;
  std::uint32_t otherwise;
  std::uint32_t largest;
};
constexpr std::uint32_t kAnyTime = 0xFFFFFFFF;
constexpr std::array kNumbers = {
    NumberSetting{WtsConfigClass::kTimeoutSettingsConnections, "CtxMaxConnectionTime", 0, kAnyTime},
    NumberSetting{WtsConfigClass::kTimeoutSettingsDisconnections, "CtxMaxDisconnectionTime", 0, kAnyTime},
    NumberSetting{WtsConfigClass::kTimeoutSettingsIdle, "CtxMaxIdleTime", 0, kAnyTime},
    NumberSetting{WtsConfigClass::kModemCallbackSettings, "CtxCallBack", 0, 2},
    NumberSetting{WtsConfigClass::kShadowingSettings, "CtxShadow", 1, 4}};

struct FlagSetting {
  WtsConfigClass setting;
  std::uint32_t bit;
  bool on_when_set;
};
constexpr std::array kSwitches = {
    FlagSetting{WtsConfigClass::kInheritInitialProgram, kInheritInitialProgram, true},
    FlagSetting{WtsConfigClass::kAllowLogonTerminalServer, kLogonDisabled, false},
    FlagSetting{WtsConfigClass::kDeviceClientDrives, kAutoClientDrives, true},
    FlagSetting{WtsConfigClass::kDeviceClientPrinters, kAutoClientLpts, true},
    FlagSetting{WtsConfigClass::kDeviceClientDefaultPrinter, kForceClientLptDef, true},
    FlagSetting{WtsConfigClass::kBrokenTimeoutSettings, kResetBroken, true},
    FlagSetting{WtsConfigClass::kReconnectSettings, kReconnectSame, true}};

[[noreturn]] void invalid_data(const std::string& what) {
  throw base::RuntimeError(user_parameters_error::kInvalidData, what);
}

[[noreturn]] void invalid_parameter(const std::string& what) {
  throw base::RuntimeError(user_parameters_error::kInvalidParameter, what);
}

template <typename Settings>
const typename Settings::value_type* find_setting(const Settings& settings, WtsConfigClass wanted) {
  const auto found = std::find_if(settings.begin(), settings.end(),
                                  [&](const auto& setting) { return setting.setting == wanted; });
  return found == settings.end() ? nullptr : &*found;
}

Bytes hex_of(std::span<const std::uint8_t> bytes) {
  Bytes digits;
  for (const std::uint8_t byte : bytes) {
    digits.push_back(static_cast<std::uint8_t>(kHexDigits[byte >> 4U]));
    digits.push_back(static_cast<std::uint8_t>(kHexDigits[byte & 0xFU]));
  }
  return digits;
}

/// The bytes of a property's value.
Bytes value_of(const TSProperty& property, std::string_view name) {
  const Bytes& digits = property.PropValue;
  Bytes bytes;
  for (std::size_t at = 0; at + 1 < digits.size(); at += 2) {
    const auto high = base::hex_digit(static_cast<char>(digits[at]));
    const auto low = base::hex_digit(static_cast<char>(digits[at + 1]));
    if (!high || !low)
      invalid_data("The value of " + std::string(name) + " has no hexadecimal digits");
    bytes.push_back(static_cast<std::uint8_t>(*high << 4U | *low));
  }
  if (digits.size() % 2 != 0)
    invalid_data("The value of " + std::string(name) + " ends in half a byte");
  return bytes;
}

bool has_name(const TSProperty& property, std::string_view name) {
  const auto text = from_utf16(property.PropName);
  return text && base::equals_fold(*text, name);
}

const TSProperty* find(const UserParameters& parameters, std::string_view name) {
  const auto& all = parameters.TSPropertyArray;
  const auto found =
      std::find_if(all.begin(), all.end(), [&](const TSProperty& one) { return has_name(one, name); });
  return found == all.end() ? nullptr : &*found;
}

void put(UserParameters& parameters, std::string_view name, std::span<const std::uint8_t> value) {
  for (TSProperty& property : parameters.TSPropertyArray) {
    if (has_name(property, name)) {
      property.PropValue = hex_of(value);
      return;
    }
  }
  parameters.TSPropertyArray.push_back({to_utf16(name), 1, hex_of(value)});
}

void erase(UserParameters& parameters, std::string_view name) {
  std::erase_if(parameters.TSPropertyArray, [&](const TSProperty& one) { return has_name(one, name); });
}

std::uint32_t number(const UserParameters& parameters, std::string_view name, std::uint32_t otherwise) {
  const TSProperty* const property = find(parameters, name);
  if (property == nullptr)
    return otherwise;
  const Bytes value = value_of(*property, name);
  if (value.size() != 4)
    invalid_data("The value of " + std::string(name) + " is not a number");
  return read_u32(value, 0);
}

void put_number(UserParameters& parameters, std::string_view name, std::uint32_t value) {
  Bytes bytes;
  append_u32(bytes, value);
  put(parameters, name, bytes);
}

bool are_present(const UserParameters& parameters) {
  return find(parameters, kPresent) != nullptr && number(parameters, kPresent, 0) == kPresentValue;
}

std::string wide_name(std::string_view name) {
  return std::string(name) + "W";
}

std::string text(const UserParameters& parameters, std::string_view name) {
  if (const TSProperty* const wide = find(parameters, wide_name(name))) {
    const auto value = from_utf16(value_of(*wide, wide_name(name)));
    if (!value)
      invalid_data("The value of " + wide_name(name) + " is not a text");
    return value->substr(0, value->find('\0'));
  }
  const TSProperty* const narrow = find(parameters, name);
  if (narrow == nullptr)
    return {};
  const Bytes value = value_of(*narrow, name);
  return base::from_ansi(std::string(value.begin(), std::find(value.begin(), value.end(), std::uint8_t{0})));
}

void put_text(UserParameters& parameters, const TextSetting& setting, const std::string& value) {
  Bytes wide = to_utf16(value);
  if (!base::is_valid_utf8(value) || value.find('\0') != base::npos || wide.size() / 2 > setting.most_units)
    invalid_parameter(std::string(setting.name) + " is a text of at most " +
                      base::to_text(static_cast<std::int64_t>(setting.most_units)) + " characters");
  if (value.empty()) {
    erase(parameters, setting.name);
    erase(parameters, wide_name(setting.name));
    return;
  }
  const std::string ansi = base::to_ansi(value, '?');
  Bytes narrow(ansi.begin(), ansi.end());
  narrow.push_back(0);
  append_u16(wide, 0);
  put(parameters, setting.name, narrow);
  put(parameters, wide_name(setting.name), wide);
}

void put_switch(UserParameters& parameters, const FlagSetting& setting, std::uint32_t value) {
  if (value > 1)
    invalid_parameter("A switch is 0 or 1");
  const std::uint32_t flags = number(parameters, kFlags, kNewFlags);
  const bool set = (value == 1) == setting.on_when_set;
  put_number(parameters, kFlags, set ? flags | setting.bit : flags & ~setting.bit);
}

void put_number(UserParameters& parameters, const NumberSetting& setting, std::uint32_t value) {
  if (value > setting.largest)
    invalid_parameter(std::string(setting.name) + " has no value " + base::to_text(value));
  put_number(parameters, setting.name, value);
}

/// Makes the settings count, and removes any old ones that did not count.
void make_present(UserParameters& parameters) {
  if (!are_present(parameters)) {
    std::erase_if(parameters.TSPropertyArray, [](const TSProperty& property) {
      const auto name = from_utf16(property.PropName);
      return name && base::starts_with_fold(*name, "Ctx");
    });
    put_number(parameters, kPresent, kPresentValue);
  }
  if (find(parameters, kFlags) == nullptr)
    put_number(parameters, kFlags, kNewFlags);
}

bool has_signature(std::span<const std::uint8_t> bytes) {
  return bytes.size() >= kCountOffset && read_u16(bytes, UserParameters::kReservedSize) == kSignature;
}

/// A property and where the next one begins.
TSProperty take_property(std::span<const std::uint8_t> bytes, std::size_t& at) {
  if (bytes.size() - at < kPropertyHeaderSize)
    invalid_data("The terminal-server settings end inside a property");
  const std::size_t name_size = read_u16(bytes, at);
  const std::size_t value_size = read_u16(bytes, at + 2);
  TSProperty property;
  property.Type = read_u16(bytes, at + 4);
  at += kPropertyHeaderSize;
  if (bytes.size() - at < name_size + value_size)
    invalid_data("A property of the terminal-server settings reaches beyond their end");
  const auto name = bytes.subspan(at, name_size);
  const auto value = bytes.subspan(at + name_size, value_size);
  property.PropName.assign(name.begin(), name.end());
  property.PropValue.assign(value.begin(), value.end());
  at += name_size + value_size;
  return property;
}

std::uint16_t length(const Bytes& part) {
  if (part.size() > kLargestText)
    invalid_parameter("A property of the terminal-server settings is too long");
  return static_cast<std::uint16_t>(part.size());
}

void append(Bytes& bytes, const Bytes& part) {
  bytes.insert(bytes.end(), part.begin(), part.end());
}

}  // namespace

UserParameters::UserParameters() {
  while (ReservedData.size() < kReservedSize)
    append_u16(ReservedData, ' ');
}

UserParameters UserParameters::decode(std::span<const std::uint8_t> bytes) {
  if (bytes.size() % 2 != 0)
    invalid_data("The attribute has an odd number of bytes");
  UserParameters parameters;
  if (bytes.size() > kReservedSize && !has_signature(bytes)) {
    parameters.foreign.assign(bytes.begin(), bytes.end());
    return parameters;
  }
  std::copy_n(bytes.begin(), std::min(bytes.size(), kReservedSize), parameters.ReservedData.begin());
  if (bytes.size() <= kReservedSize)
    return parameters;
  if (bytes.size() < kArrayOffset)
    invalid_data("The terminal-server settings do not say how many they are");
  const std::size_t count = read_u16(bytes, kCountOffset);
  std::size_t at = kArrayOffset;
  for (std::size_t i = 0; i < count; ++i)
    parameters.TSPropertyArray.push_back(take_property(bytes, at));
  parameters.rest.assign(bytes.begin() + static_cast<std::ptrdiff_t>(at), bytes.end());
  return parameters;
}

Bytes UserParameters::encode() const {
  if (!foreign.empty())
    return foreign;
  Bytes bytes = ReservedData;
  append_u16(bytes, kSignature);
  append_u16(bytes, static_cast<std::uint16_t>(TSPropertyArray.size()));
  for (const TSProperty& property : TSPropertyArray) {
    append_u16(bytes, length(property.PropName));
    append_u16(bytes, length(property.PropValue));
    append_u16(bytes, property.Type);
    append(bytes, property.PropName);
    append(bytes, property.PropValue);
  }
  append(bytes, rest);
  if (bytes.size() > kLargestText)
    invalid_parameter("The terminal-server settings are more than the attribute holds");
  return bytes;
}

Bytes user_parameters_bytes(std::string_view value) {
  const bool is_text = base::is_valid_utf8(value);
  Bytes from_text = is_text ? to_utf16(value) : Bytes{};
  if (has_signature(from_text))
    return from_text;
  Bytes as_it_is(value.begin(), value.end());
  if (has_signature(as_it_is))
    return as_it_is;
  if (!is_text)
    invalid_data("The attribute is not UTF-8");
  return from_text;
}

std::string user_parameters_text(std::span<const std::uint8_t> bytes) {
  auto text = from_utf16(bytes);
  if (!text)
    invalid_data("The attribute is not a text");
  return *std::move(text);
}

WtsConfigValue wts_setting(const UserParameters& parameters, WtsConfigClass setting) {
  const UserParameters none;
  const UserParameters& from = are_present(parameters) ? parameters : none;
  if (const auto* const one = find_setting(kTexts, setting))
    return text(from, one->name);
  if (const auto* const one = find_setting(kNumbers, setting))
    return number(from, one->name, one->otherwise);
  if (const auto* const one = find_setting(kSwitches, setting)) {
    const bool set = (number(from, kFlags, kNewFlags) & one->bit) != 0;
    return set == one->on_when_set ? 1U : 0U;
  }
  if (setting == WtsConfigClass::kTerminalServerRemoteHomeDir)
    return text(from, "CtxWFHomeDirDrive").empty() ? 0U : 1U;
  invalid_parameter("There is no such terminal-server setting");
}

void set_wts_setting(UserParameters& parameters, WtsConfigClass setting, const WtsConfigValue& value) {
  if (!parameters.foreign.empty())
    invalid_data("The attribute holds another program's data, not terminal-server settings");
  UserParameters changed = parameters;
  make_present(changed);
  const auto* const words = std::get_if<std::string>(&value);
  const auto* const count = std::get_if<std::uint32_t>(&value);
  const auto* const text_setting = find_setting(kTexts, setting);
  const auto* const number_setting = find_setting(kNumbers, setting);
  const auto* const switch_setting = find_setting(kSwitches, setting);
  if (words != nullptr && text_setting != nullptr)
    put_text(changed, *text_setting, *words);
  else if (count != nullptr && number_setting != nullptr)
    put_number(changed, *number_setting, *count);
  else if (count != nullptr && switch_setting != nullptr)
    put_switch(changed, *switch_setting, *count);
  else
    invalid_parameter("The terminal-server setting does not accept such a value");
  parameters = std::move(changed);
}

}  // namespace twk::platform
