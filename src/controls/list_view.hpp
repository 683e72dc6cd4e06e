#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "base/text.hpp"
#include "controls/folded_index.hpp"
#include "controls/observable.hpp"
#include "controls/shared_text.hpp"

namespace twk::controls {

class ListView;

/// One row of a list: what the first column shows, the columns after it, a small picture by name.
struct ListRow {
  std::string key;  ///< unique in the list without regard to case, or empty
  std::string text;
  SharedText icon;
  std::vector<std::string> sub_items;  ///< sub-item 1 is at place 0
  bool selected = false;
  bool checked = false;
  bool ghosted = false;    ///< shown pale: what it represents is gone
  std::uint8_t marks = 0;  ///< bits for what the view shows beside the texts, by the owner's meaning

 private:
  friend class ListView;
  std::uint32_t place_ = 0;  ///< from the top, as far as the list has its rows numbered
};

/// What happens to the rows of a list. Insertions, removals and resets are announced before and reported
/// after.
struct ListChange {
  enum class Kind {
    kInserting,
    kInserted,
    kRemoving,
    kRemoved,
    kResetting,  ///< until kReset the rows may be any
    kReset,
    kChanged,   ///< text, icon, look or a sub-item of the row
    kSelected,  ///< other rows are selected than before
    kFiltered,  ///< others are hidden than before
  };
  Kind kind;
  std::size_t place = 0;
};

/// Rows in order, found by key and by text without a walk. Row addresses stay valid until the row is removed.
class ListView {
 public:
  ListView() = default;
  ListView(const ListView&) = delete;
  ListView& operator=(const ListView&) = delete;

  /// Adds at the end. Raises kKeyNotUnique.
  ListRow& add(std::string key, std::string text, SharedText icon = {},
               std::vector<std::string> sub_items = {});
  /// Removing rows from the last to the first costs no walk over the others.
  void remove(const ListRow& row);
  void clear();

  [[nodiscard]] std::size_t size() const { return rows_.size(); }
  [[nodiscard]] bool empty() const { return rows_.empty(); }
  [[nodiscard]] const ListRow& at(std::size_t place) const { return *rows_.at(place); }
  [[nodiscard]] ListRow& at(std::size_t place) { return *rows_.at(place); }
  /// From the top, for a row of this list.
  [[nodiscard]] std::size_t place_of(const ListRow& row) const;

  [[nodiscard]] const ListRow* find_key(std::string_view key) const;
  /// The rows whose trimmed text equals the trimmed text without regard to case, in list order.
  [[nodiscard]] std::vector<const ListRow*> find_text(std::string_view text) const;

  void set_text(ListRow& row, std::string text);
  /// Raises kKeyNotUnique.
  void set_key(ListRow& row, std::string key);
  /// Sub-items count from 1.
  void set_sub_item(ListRow& row, std::size_t number, std::string text);
  void set_icon(ListRow& row, SharedText icon);
  void set_selected(ListRow& row, bool selected);
  void set_checked(ListRow& row, bool checked);
  void set_ghosted(ListRow& row, bool ghosted);
  void set_marks(ListRow& row, std::uint8_t marks);

  /// The first selected row, or none.
  [[nodiscard]] ListRow* selected();
  /// All of them, from the top.
  [[nodiscard]] std::vector<const ListRow*> selected_rows() const;
  /// Makes this the only selected row; none deselects all.
  void select(ListRow* row);

  /// What a person sees of the list: rows that are not accepted are hidden. None accepts all.
  void set_filter(std::function<bool(const ListRow&)> accepts);
  [[nodiscard]] bool shows(const ListRow& row) const { return !accepts_ || accepts_(row); }
  /// How many rows are hidden.
  [[nodiscard]] std::size_t hidden() const;

  [[nodiscard]] Watch watch(Channel<const ListChange&>::Callback callback) const {
    return changes_.watch(std::move(callback));
  }

 private:
  template <typename View>
  friend class DrawingOff;
  using Rows = std::vector<std::unique_ptr<ListRow>>;
  friend void move_rows(ListView& from, const std::vector<const ListRow*>& rows, ListView& to);

  /// Rows by one of their texts without regard to case. The text is the row's own: no second copy of it is
  /// kept.
  struct KeyOf {
    std::string_view operator()(const ListRow* row) const { return row->key; }
    std::string_view operator()(std::string_view key) const { return key; }
  };
  struct TextOf {
    std::string_view operator()(const ListRow* row) const { return base::trim(row->text); }
    std::string_view operator()(std::string_view text) const { return base::trim(text); }
  };

  void unlink_text(const ListRow& row);
  [[nodiscard]] bool holds(const ListRow& row) const;
  void forget(const ListRow& row);
  /// Takes the rows out, in the order given, without a word to the watchers.
  Rows take(const std::vector<const ListRow*>& rows);
  /// Turning drawing off announces that all rows may change; until it is on again nothing is reported.
  void set_drawing(bool on);
  void tell(ListChange::Kind kind, std::size_t place = 0) const;

  Rows rows_;
  mutable std::uint32_t numbered_ = 0;  ///< the rows before this place know theirs
  FoldedSet<ListRow*, KeyOf> by_key_;
  FoldedMultiset<ListRow*, TextOf> by_text_;
  std::function<bool(const ListRow&)> accepts_;
  Channel<const ListChange&> changes_;
  bool drawing_ = true;
};

/// Moves a row, with key, text and icon, to the end of another list.
void move_row(ListView& from, const ListRow& row, ListView& to);
/// The same for many, in the order given, in time that grows with the lists and not with their product. Rows
/// that are not in the first list are skipped; a row whose key the other list already has is only removed.
/// Many rows are reported as a reset of both lists.
void move_rows(ListView& from, const std::vector<const ListRow*>& rows, ListView& to);

}  // namespace twk::controls
