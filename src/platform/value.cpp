#include "platform/value.hpp"

#include "base/errors.hpp"
#include "base/text.hpp"

namespace twk::platform {
namespace {

template <typename... Ts>
struct Overloaded : Ts... {
  using Ts::operator()...;
};
template <typename... Ts>
Overloaded(Ts...) -> Overloaded<Ts...>;

[[noreturn]] void mismatch(const char* wanted) {
  throw base::RuntimeError(base::error::kTypeMismatch,
                           std::string("Type mismatch: the value is not ") + wanted);
}

std::string hex(const base::Bytes& bytes) {
  std::string out;
  out.reserve(bytes.size() * 2);
  for (const std::uint8_t byte : bytes)
    out += base::hex_byte(byte);
  return out;
}

}  // namespace

std::string Value::text() const {
  return std::visit(
      Overloaded{
          [](std::monostate) { return std::string(); },
          [](bool value) { return std::string(value ? "True" : "False"); },
          [](std::int32_t value) { return base::to_text(value); },
          [](const std::string& value) { return value; },
          [](base::Date value) { return base::format_date(value) + " " + base::format_time(value); },
          [](const base::Bytes& value) { return hex(value); },
          [](const ValueList& value) { return value.empty() ? std::string() : value.front().text(); },
      },
      data);
}

std::int32_t Value::integer() const {
  if (const auto* number = std::get_if<std::int32_t>(&data))
    return *number;
  if (const auto* flag = std::get_if<bool>(&data))
    return *flag ? -1 : 0;
  if (const auto* words = std::get_if<std::string>(&data)) {
    if (const auto number = base::to_number(*words))
      return *number;
  }
  mismatch("a number");
}

bool Value::boolean() const {
  if (const auto* flag = std::get_if<bool>(&data))
    return *flag;
  if (const auto* number = std::get_if<std::int32_t>(&data))
    return *number != 0;
  if (const auto* words = std::get_if<std::string>(&data))
    return base::equals_fold(*words, "TRUE");
  return false;
}

base::Date Value::date() const {
  if (const auto* moment = std::get_if<base::Date>(&data))
    return *moment;
  if (const auto* words = std::get_if<std::string>(&data)) {
    if (const auto moment = base::parse_date(*words))
      return *moment;
  }
  mismatch("a date");
}

const base::Bytes& Value::bytes() const {
  if (const auto* bytes = std::get_if<base::Bytes>(&data))
    return *bytes;
  mismatch("bytes");
}

ValueList Value::list() const {
  if (const auto* values = std::get_if<ValueList>(&data))
    return *values;
  if (is_empty())
    return {};
  return {*this};
}

}  // namespace twk::platform
