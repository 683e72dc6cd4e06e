#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "controls/observable.hpp"

namespace twk::controls {

/// How a field is painted: like the window around it, or like paper to write on.
enum class Paint { kDefault, kEditing };

/// Colour values as blue * 65536 + green * 256 + red.
inline constexpr std::int32_t kBlue = 16711680;
inline constexpr std::int32_t kYellow = 65535;
inline constexpr std::int32_t kRed = 255;

struct TextBox {
  Observable<std::string> text;
  Observable<bool> enabled{true};
  Observable<bool> visible{true};
  Observable<bool> locked{false};
  Observable<Paint> paint{Paint::kDefault};
};

struct Label {
  Observable<std::string> caption;
  Observable<std::int32_t> colour{0};
  Observable<bool> visible{true};
  Observable<Paint> paint{Paint::kDefault};
};

struct CheckBox {
  Observable<int> value{0};  ///< 0 or 1
  Observable<bool> enabled{true};
  Observable<bool> visible{true};

  [[nodiscard]] bool on() const { return value == 1; }
};

/// A set of option buttons of which one is chosen.
struct OptionGroup {
  Observable<int> index{0};
  Observable<bool> enabled{true};
};

/// One option button. It does not know its partners; see `choose`.
struct OptionButton {
  Observable<bool> value{false};
  Observable<bool> enabled{true};
};

/// Switches one of two option buttons on and the other off.
inline void choose(OptionButton& first, OptionButton& second, bool first_is_chosen) {
  first.value = first_is_chosen;
  second.value = !first_is_chosen;
}

struct Button {
  Observable<std::string> caption;
  Observable<bool> enabled{true};
  Observable<bool> visible{true};
};

struct MenuItem {
  Observable<std::string> caption;
  Observable<std::string> tool_tip;
  Observable<bool> enabled{true};
  Observable<bool> visible{true};
};

struct Frame {
  Observable<std::string> caption;
  Observable<std::string> tool_tip;
  Observable<int> width{0};
  Observable<bool> visible{true};
};

struct ProgressBar {
  Observable<int> value{0};  ///< 0 to 100
};

/// Panels count from 1, as the status texts do.
struct StatusBar {
  Observable<std::string> panel1;
  Observable<std::string> panel2;
  Observable<std::string> panel3;
};

/// A text field over a list of choices.
class ComboBox {
 public:
  Observable<std::string> text;
  Observable<bool> enabled{true};
  Observable<bool> visible{true};
  Observable<bool> locked{false};
  Observable<Paint> paint{Paint::kDefault};

  [[nodiscard]] const std::vector<std::string>& items() const { return items_; }
  void add_item(std::string item);
  /// Instead of those that are there, told once; leaves the text as it is.
  void set_items(std::vector<std::string> items);
  /// Removes each item that equals the text trimmed and without regard to case.
  void remove_item(std::string_view item);
  void clear();
  /// Leaves the text as it is.
  void clear_items();
  /// Copies an item into the text; -1 empties it. Raises kOutOfBounds.
  void select(int index);
  /// Index of the item that exactly equals the text, -1 for none.
  [[nodiscard]] int list_index() const;
  [[nodiscard]] Watch watch_items(Signal::Callback callback) const {
    return items_changed_.watch(std::move(callback));
  }

 private:
  std::vector<std::string> items_;
  Signal items_changed_;
};

}  // namespace twk::controls
