#include "lifecycle/rename/rename_names.hpp"

#include <algorithm>
#include <array>

#include "base/text.hpp"
#include "lifecycle/trees/tree_path.hpp"
#include "platform/utf16.hpp"

namespace twk::lifecycle {
namespace {

/// True for the name of a device, which counts with any extension, and with blanks before that.
bool is_device(std::string_view name) {
  constexpr std::array<std::string_view, 6> kNames = {"CON", "PRN", "AUX", "NUL", "CONIN$", "CONOUT$"};
  // Also the superscript digits of code page 1252.
  constexpr std::array<std::string_view, 13> kPorts = {"0", "1", "2", "3", "4", "5", "6",
                                                       "7", "8", "9", "¹", "²", "³"};
  const std::string stem = base::upper(base::trim(name.substr(0, name.find('.'))));
  const bool is_port = (stem.starts_with("COM") || stem.starts_with("LPT")) &&
                       std::find(kPorts.begin(), kPorts.end(), stem.substr(3)) != kPorts.end();
  return is_port || std::find(kNames.begin(), kNames.end(), stem) != kNames.end();
}

std::string why_not(std::string_view name, std::string_view refused, std::size_t longest) {
  if (base::trim(name).empty())
    return "is empty";
  const std::size_t at = name.find_first_of(refused);
  if (at != base::npos)
    return "holds the character " + std::string(1, name[at]);
  if (const auto control = base::find_control_character(name))
    return "holds the control character " + *control;
  if (platform::utf16_length(name) > longest)
    return "is longer than " + base::to_text(static_cast<std::int64_t>(longest)) + " characters";
  return {};
}

}  // namespace

std::string why_no_folder_name(std::string_view name) {
  constexpr std::size_t kLongest = 255;
  std::string why = why_not(name, "\\/:*?\"<>|", kLongest);
  if (!why.empty())
    return why;
  if (name.ends_with('.') || name.ends_with(' '))
    return "ends in a dot or a blank";
  return is_device(name) ? "is the name of a device" : "";
}

std::string why_no_share_name(std::string_view name) {
  constexpr std::size_t kLongest = 80;
  return why_not(name, "\"/\\[]:|<>+=;,*?", kLongest);
}

std::string replace_word(std::string_view text, std::string_view name, std::string_view new_name) {
  if (name.empty())
    return std::string(text);
  std::string out;
  std::size_t from = 0;
  for (std::size_t at = base::find_fold(text, name); at != base::npos;
       at = base::find_fold(text, name, std::max(from, at + 1))) {
    // With its neighbours, which decide.
    const std::size_t begin = at == 0 ? 0 : at - 1;
    if (!holds_word(text.substr(begin, at - begin + name.size() + 1), name))
      continue;
    out += text.substr(from, at - from);
    out += new_name;
    from = at + name.size();
  }
  return out += text.substr(from);
}

}  // namespace twk::lifecycle
