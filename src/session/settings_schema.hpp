#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

/// Which settings exist, which values their readers accept, and the defaults. A reader silently ignores a
/// value that it does not accept, so code that writes a setting for a person checks here first.
namespace twk::session {

struct Session;

struct Setting {
  enum class Kind {
    kText,
    kWords,        ///< one of the words, exactly as spelled
    kFoldedWords,  ///< in any case
    kNumber,
    kGeneration
  };

  std::string_view sub_key;
  std::string_view name;
  std::string_view initial;  ///< the default while nothing is stored, in stored form; may be empty
  std::string_view meaning;  ///< a line for a person
  Kind kind = Kind::kText;
  std::string_view words = {};      ///< separated by "|"; for a switch, the word for on first
  std::string_view otherwise = {};  ///< the word that any other value counts as
  std::int32_t least = 0;
  std::int32_t most = 0;
  bool secret = false;  ///< may hold a password

  /// "Setup\IncNumber".
  [[nodiscard]] std::string full_name() const;
  /// What it accepts: "a number from 0 to 32767", "Yes or No"; "a text".
  [[nodiscard]] std::string taken() const;
};

/// In the order of their keys' first readers.
std::span<const Setting> all_settings();
/// By key and name in any case; null for an unknown setting.
const Setting* find_setting(std::string_view sub_key, std::string_view name);
/// What the setting accepts instead of the value; empty when its reader accepts the value. Every reader
/// accepts an empty one.
std::string setting_refusal(const Setting& setting, std::string_view value);

/// True when a switch, a setting of two words, is on: by the stored value, or by its initial word.
bool is_on(const Setting& setting, const std::optional<std::string>& stored);
/// Reads a switch from the settings. The setting must exist.
bool read_switch(Session& session, std::string_view sub_key, std::string_view name);

}  // namespace twk::session
