#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "base/text.hpp"
#include "lab/store/entry_tree.hpp"

namespace twk::lab {

/// Reads LDIF content records straight into a tree, with the outcome of `read_ldif` and `prepare` and without
/// a record in between: that is what makes a large lab open quickly. Entries resemble the one before, so
/// their attributes are expected in its order, a line that repeats one of its lines is not read again, and
/// their parents are few.
class ContentLoader {
 public:
  explicit ContentLoader(EntryTree& tree);

  /// Takes the records at the front of `text` that are whole; with `is_last` its end ends a record, too.
  /// Returns the size of what was taken, which ends early at a record of another form: a change, a comment
  /// inside, text that is not LDIF, an entry that cannot be added. Raises nothing of the text.
  std::size_t take(std::string_view text, bool is_last);
  /// True when `take` came to a record that it does not read.
  [[nodiscard]] bool is_stuck() const { return stuck_; }
  /// The number of the line after what was taken, from 1.
  [[nodiscard]] std::size_t line() const { return line_; }

 private:
  /// A value line of a record.
  struct Line {
    std::string_view raw;  ///< as it stands, with its continuations and the line's end
    AttributeId id = 0;
    std::uint32_t rows = 1;      ///< of the text
    bool is_repeated = false;    ///< from the record before, at the same place
    bool is_plain = false;       ///< the value is the end of the line
    std::uint32_t value_at = 0;  ///< in `raw`, if it is plain
    std::uint32_t value_size = 0;
    std::uint32_t packed_at = 0;  ///< in the record's block
    std::uint32_t packed_size = 0;

    [[nodiscard]] std::string_view value() const { return raw.substr(value_at, value_size); }
  };
  struct Parent {
    std::string name;
    Node* node = nullptr;
  };
  enum class Found { kRecord, kNothing, kOther };
  struct Text {
    std::string_view all;
    bool is_last;
    std::size_t at = 0;
    std::size_t lines = 0;
  };

  Found read_line(Text& text, std::string_view& raw, std::string_view& line);
  Found read_record(Text& text);
  bool take_repeated(Text& text);
  bool read_value(std::string_view raw, std::string_view line, std::size_t rows);
  [[nodiscard]] bool repeats_name(std::string_view line) const;
  bool decode(std::string_view rest, std::string_view& value);
  void take_member(std::string_view name);
  bool add(std::string_view record);
  void forget_lines();
  bool add_plain();
  [[nodiscard]] std::vector<std::string_view> members() const;
  bool add_as_usual(std::string_view record);
  [[nodiscard]] static bool is_comparable(const Line& line);
  [[nodiscard]] bool has_plain_attributes();
  Node* find_parent(std::string_view name);

  EntryTree& tree_;
  AttributeId member_;
  AttributeId member_of_;
  AttributeId own_name_;
  std::size_t line_ = 1;
  bool stuck_ = false;

  std::string joined_;
  std::string bytes_;
  std::string dn_;
  std::size_t record_at_ = 0;
  std::vector<Line> lines_;  ///< the first `count_` of this record, the others of the one before
  std::size_t count_ = 0;
  std::string block_;
  std::string previous_block_;
  std::string member_names_;              ///< of the record, one after the other
  std::vector<std::size_t> member_ends_;  ///< of each, in those
  std::vector<std::size_t> seen_;         ///< by attribute: the number of the record that had it last
  std::size_t records_ = 0;
  std::array<Parent, 256> parents_;  ///< each where the hash of its name says
};

}  // namespace twk::lab
