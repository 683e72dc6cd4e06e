#pragma once

#include <iosfwd>
#include <string>
#include <string_view>

namespace twk::controls {

/// One of a few texts that many things share, such as the names of pictures: each text is kept once and never
/// freed.
class SharedText {
 public:
  SharedText() : SharedText(std::string_view()) {}
  SharedText(std::string_view text);  // NOLINT(*-explicit-*): it acts as the text
  SharedText(const char* text) : SharedText(std::string_view(text)) {}         // NOLINT(*-explicit-*)
  SharedText(const std::string& text) : SharedText(std::string_view(text)) {}  // NOLINT(*-explicit-*)

  [[nodiscard]] const std::string& text() const { return *text_; }
  [[nodiscard]] bool empty() const { return text_->empty(); }
  operator const std::string&() const { return *text_; }  // NOLINT(*-explicit-*)
  operator std::string_view() const { return *text_; }    // NOLINT(*-explicit-*)

  friend bool operator==(const SharedText& one, const SharedText& other) { return one.text_ == other.text_; }
  friend bool operator==(const SharedText& one, std::string_view other) { return *one.text_ == other; }
  friend bool operator==(const SharedText& one, const std::string& other) { return *one.text_ == other; }
  friend bool operator==(const SharedText& one, const char* other) { return *one.text_ == other; }
  template <typename Text>
  friend std::string operator+(const SharedText& one, const Text& other) {
    return *one.text_ + other;
  }
  friend std::ostream& operator<<(std::ostream& out, const SharedText& text);

 private:
  const std::string* text_;
};

}  // namespace twk::controls
