#pragma once

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace twk::cli {

/// A result or a part of one: nothing, True or False, a number, a text, a list, or keys with their values in
/// the order in which they are printed. A plain value of our own, so that the JSON library, which takes long
/// to compile, is needed where results are printed and nowhere else.
class Json {
 public:
  struct Member;
  using List = std::vector<Json>;
  using Object = std::vector<Member>;

  Json() = default;
  Json(std::nullptr_t) {}
  Json(bool value) : value_(value) {}
  template <std::integral Number>
  requires(!std::same_as<Number, bool>) Json(Number value) : value_(static_cast<std::int64_t>(value)) {}
  Json(std::string text) : value_(std::move(text)) {}
  Json(const char* text) : Json(std::string(text)) {}
  template <typename Text>
  requires(std::convertible_to<const Text&, std::string_view> && !std::same_as<Text, std::string>)
      Json(const Text& text)
      : Json(std::string(std::string_view(text))) {}
  Json(const std::vector<std::string>& texts);
  Json(List list);
  Json(std::initializer_list<Member> members);
  Json(const Json& other);
  Json(Json&& other) noexcept;
  Json& operator=(const Json& other);
  Json& operator=(Json&& other) noexcept;
  ~Json();

  static Json array(std::initializer_list<Json> elements = {});
  static Json object();

  [[nodiscard]] bool is_null() const { return std::holds_alternative<std::monostate>(value_); }
  /// None of another kind.
  [[nodiscard]] const bool* boolean() const { return std::get_if<bool>(&value_); }
  [[nodiscard]] const std::int64_t* number() const { return std::get_if<std::int64_t>(&value_); }
  [[nodiscard]] const std::string* text() const { return std::get_if<std::string>(&value_); }
  [[nodiscard]] const List* list() const { return std::get_if<List>(&value_); }
  [[nodiscard]] const Object* members() const { return std::get_if<Object>(&value_); }

  /// The value of a key; none when there is no such key.
  [[nodiscard]] const Json* find(std::string_view key) const;
  /// The text of a key; empty when there is none.
  [[nodiscard]] const std::string& text_at(std::string_view key) const;
  /// The value of a key, which is made when there is none.
  Json& operator[](std::string_view key);
  /// Sets the keys of another result here, too.
  void update(const Json& other);
  /// Adds to a list; nothing becomes one.
  void push_back(Json element);

 private:
  std::variant<std::monostate, bool, std::int64_t, std::string, List, Object> value_;
};

struct Json::Member {
  std::string key;
  Json value;
};

}  // namespace twk::cli
