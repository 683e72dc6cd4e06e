#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace twk::session {

/// The names that a rehearsal of many lines gave away so far: as their 64-bit hashes, sixteen bytes a name at
/// the most. Two of a million names have the same one once in forty million rehearsals; the later of the two
/// is then said to be in use.
class ForeseenNames {
 public:
  /// False for a name that is there already.
  bool add(std::string_view name);
  [[nodiscard]] bool has(std::string_view name) const;
  void clear();

 private:
  static std::uint64_t hash_of(std::string_view name);
  /// The slot that has the hash, or the free one for it.
  [[nodiscard]] std::size_t slot_of(std::uint64_t hash) const;
  /// Returns false when it is there.
  bool place(std::uint64_t hash);

  std::vector<std::uint64_t> slots_;  ///< 0 is a free one; a power of two of them
  std::size_t size_ = 0;
};

}  // namespace twk::session
