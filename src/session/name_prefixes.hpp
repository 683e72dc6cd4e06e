#pragma once

#include <cstddef>
#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace twk::session {

/// Names, any number of them, that are asked for by their beginnings. They lie in order in blocks of entries:
///
///     bytes in common with the name before it (1 byte), size of the rest (1 byte), rest
///
/// so that a name takes about six bytes among a million: a node of the tree takes 300.
class NamePrefixes {
 public:
  /// Of 255 bytes at most; of a longer one the beginning counts.
  void add(std::string_view name);
  /// True when one of the names begins with `prefix`, byte by byte.
  [[nodiscard]] bool has_beginning(std::string_view prefix) const;
  [[nodiscard]] bool has(std::string_view name) const;
  void clear() { blocks_.clear(); }

 private:
  using Blocks = std::map<std::string, std::string, std::less<>>;

  /// The block in which a name is, or would be; the end when there is none.
  [[nodiscard]] Blocks::const_iterator block_of(std::string_view name) const;
  /// Of the first name that is not before this one: how many bytes the two have in common, and its size; none
  /// when there is no such name.
  struct Next {
    std::size_t shared = 0;
    std::size_t size = 0;
  };
  [[nodiscard]] std::optional<Next> not_before(std::string_view name) const;
  void split(Blocks::iterator block);

  Blocks blocks_;  ///< by a text that no name in them is before, and all names of earlier blocks are
};

}  // namespace twk::session
