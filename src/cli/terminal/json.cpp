#include "cli/terminal/json.hpp"

#include <algorithm>

namespace twk::cli {

Json::Json() = default;
Json::Json(std::nullptr_t) {}
Json::Json(bool value) : value_(value) {}
Json::Json(std::string text) : value_(std::move(text)) {}
Json::Json(const char* text) : value_(std::string(text)) {}
Json::Json(const std::vector<std::string>& texts) : value_(List(texts.begin(), texts.end())) {}
Json::Json(List list) : value_(std::move(list)) {}
Json::Json(std::initializer_list<Member> members) : value_(Object(members)) {}
Json::Json(const Json& other) = default;
Json::Json(Json&& other) noexcept = default;
Json& Json::operator=(const Json& other) = default;
Json& Json::operator=(Json&& other) noexcept = default;
Json::~Json() = default;

void Json::set_number(std::int64_t number) {
  value_ = number;
}

Json Json::array(std::initializer_list<Json> elements) {
  return List(elements);
}

Json Json::object() {
  return std::initializer_list<Member>();
}

const Json* Json::find(std::string_view key) const {
  const Object* const object = members();
  if (object == nullptr)
    return nullptr;
  const auto found = std::ranges::find(*object, key, &Member::key);
  return found == object->end() ? nullptr : &found->value;
}

const std::string& Json::text_at(std::string_view key) const {
  static const std::string none;
  const Json* const value = find(key);
  return value == nullptr || value->text() == nullptr ? none : *value->text();
}

Json& Json::operator[](std::string_view key) {
  if (is_null())
    value_ = Object();
  Object& object = std::get<Object>(value_);
  const auto found = std::ranges::find(object, key, &Member::key);
  if (found != object.end())
    return found->value;
  object.push_back({std::string(key), {}});
  return object.back().value;
}

void Json::update(const Json& other) {
  if (other.members() == nullptr)
    return;
  for (const Member& member : *other.members())
    (*this)[member.key] = member.value;
}

void Json::push_back(Json element) {
  if (is_null())
    value_ = List();
  std::get<List>(value_).push_back(std::move(element));
}

}  // namespace twk::cli
