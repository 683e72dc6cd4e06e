#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

/// Which settings there are, what their readers take, and what counts while nothing is stored. A reader
/// passes over what it does not take in silence, so who writes a setting for a person asks here first.
namespace twk::session {

struct Session;

struct Setting {
  enum class Kind {
    kText,
    kWords,        ///< one of the words, letter by letter
    kFoldedWords,  ///< in any case
    kNumber,
    kGeneration
  };

  std::string_view sub_key;
  std::string_view name;
  std::string_view
      initial;  ///< what counts while nothing is stored, as it would be stored; empty for nothing
  std::string_view meaning;  ///< a line for a person
  Kind kind = Kind::kText;
  std::string_view words = {};      ///< with "|" between; of a switch, that for on first
  std::string_view otherwise = {};  ///< what a word that is none of them counts as
  std::int32_t least = 0;
  std::int32_t most = 0;
  bool secret = false;  ///< may hold a password

  /// "Setup\IncNumber".
  [[nodiscard]] std::string full_name() const;
  /// What it takes: "a number from 0 to 32767", "Yes or No"; "a text".
  [[nodiscard]] std::string taken() const;
};

/// In the order of their keys' first readers.
std::span<const Setting> all_settings();
/// By key and name in any case; none for a setting that there is not.
const Setting* find_setting(std::string_view sub_key, std::string_view name);
/// What the setting takes instead of the value; empty when its reader takes it, as every reader does an empty
/// one.
std::string setting_refusal(const Setting& setting, std::string_view value);

/// True when a switch is on: a setting of two words, by what is stored, or by its initial word.
bool is_on(const Setting& setting, const std::optional<std::string>& stored);
/// The switch as the settings have it. Of a setting that there is.
bool read_switch(Session& session, std::string_view sub_key, std::string_view name);

}  // namespace twk::session
