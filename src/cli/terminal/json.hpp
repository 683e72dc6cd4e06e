#pragma once

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>
#include <type_traits>
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

  // Out of line, because a member is complete only after this class. What a value is made of acts as one.
  // NOLINTBEGIN(*-explicit-*)
  Json();
  Json(std::nullptr_t);
  Json(bool value);
  template <typename Number,
            std::enable_if_t<std::is_integral_v<Number> && !std::is_same_v<Number, bool>, int> = 0>
  Json(Number value) : Json() {
    set_number(static_cast<std::int64_t>(value));
  }
  Json(std::string text);
  Json(const char* text);
  template <typename Text, std::enable_if_t<std::is_convertible_v<const Text&, std::string_view> &&
                                                !std::is_same_v<Text, std::string>,
                                            int> = 0>
  Json(const Text& text) : Json(std::string(std::string_view(text))) {}
  Json(const std::vector<std::string>& texts);
  Json(List list);
  Json(std::initializer_list<Member> members);
  // NOLINTEND(*-explicit-*)
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
  void set_number(std::int64_t number);

  std::variant<std::monostate, bool, std::int64_t, std::string, List, Object> value_;
};

struct Json::Member {
  std::string key;
  Json value;
};

}  // namespace twk::cli
