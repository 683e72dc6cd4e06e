#include "records/json_line.hpp"

#include <algorithm>
#include <nlohmann/json.hpp>

namespace twk::records {

const JsonLine::Value* JsonLine::find(std::string_view key) const {
  const auto found =
      std::find_if(fields_.begin(), fields_.end(), [key](const auto& one) { return one.first == key; });
  return found == fields_.end() ? nullptr : &found->second;
}

std::string JsonLine::text(std::string_view key) const {
  const Value* const value = find(key);
  const std::string* const text = value == nullptr ? nullptr : std::get_if<std::string>(value);
  return text == nullptr ? std::string() : *text;
}

std::int64_t JsonLine::number(std::string_view key) const {
  const Value* const value = find(key);
  const std::int64_t* const number = value == nullptr ? nullptr : std::get_if<std::int64_t>(value);
  return number == nullptr ? 0 : *number;
}

bool JsonLine::is_set(std::string_view key) const {
  const Value* const value = find(key);
  const bool* const truth = value == nullptr ? nullptr : std::get_if<bool>(value);
  return truth != nullptr && *truth;
}

std::string JsonLine::bytes() const {
  nlohmann::ordered_json object = nlohmann::ordered_json::object();
  for (const auto& [key, value] : fields_)
    std::visit([&, &name = key](const auto& one) { object[name] = one; }, value);
  return object.dump(-1, ' ', true, nlohmann::ordered_json::error_handler_t::replace) + "\n";
}

std::optional<JsonLine> JsonLine::parse(std::string_view line) {
  const auto object = nlohmann::ordered_json::parse(line, nullptr, false);
  if (!object.is_object())
    return std::nullopt;
  JsonLine read;
  for (const auto& [key, value] : object.items()) {
    if (value.is_string())
      read.add(key, value.get<std::string>());
    else if (value.is_boolean())
      read.add(key, value.get<bool>());
    else if (value.is_number_integer())
      read.add(key, value.get<std::int64_t>());
  }
  return read;
}

}  // namespace twk::records
