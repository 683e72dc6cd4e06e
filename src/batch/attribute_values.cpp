#include "batch/attribute_values.hpp"

#include "base/errors.hpp"
#include "base/text.hpp"
#include "platform/adsi.hpp"

namespace twk::batch {
namespace {

// Control codes of `PutEx`.
constexpr int ADS_PROPERTY_CLEAR = 1;
constexpr int ADS_PROPERTY_UPDATE = 2;

std::string text_of(const platform::Value& value) {
  const auto* const bytes = std::get_if<base::Bytes>(&value.data);
  if (bytes == nullptr)
    return value.text();
  std::string text;
  for (const std::uint8_t byte : *bytes)
    text += (text.empty() ? "" : ",") + base::to_text(std::int32_t{byte});
  return text;
}

}  // namespace

base::Bytes parse_bytes(std::string_view text) {
  constexpr std::int32_t kGreatest = 255;
  base::Bytes bytes;
  for (const std::string& part : base::split(text, ',')) {
    const auto number = base::to_number(part);
    if (!number || *number < 0 || *number > kGreatest) {
      base::raise(base::error::kTypeMismatch,
                  "\"" + part + "\" is not a byte: bytes are numbers from 0 to 255, separated by commas");
    }
    bytes.push_back(static_cast<std::uint8_t>(*number));
  }
  return bytes;
}

std::vector<std::string> read_values(const platform::ObjectPtr& object, std::string_view attribute) {
  std::vector<std::string> texts;
  for (const platform::Value& value : platform::value_or_empty(*object, attribute).list())
    texts.push_back(text_of(value));
  return texts;
}

void stage_values(const platform::ObjectPtr& object, std::string_view attribute,
                  const std::vector<std::string>& values, bool takes_bytes) {
  if (values.empty())
    return object->PutEx(ADS_PROPERTY_CLEAR, attribute, {});
  platform::ValueList list;
  for (const std::string& value : values)
    list.push_back(takes_bytes ? platform::Value(parse_bytes(value)) : platform::Value(value));
  object->PutEx(ADS_PROPERTY_UPDATE, attribute, list);
}

}  // namespace twk::batch
