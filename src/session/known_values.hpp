#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>

#include "session/foreseen_names.hpp"

namespace twk::session {

/// What an attribute holds throughout a domain, read at once so that a run need not ask for every line.
///
/// A directory compares by rules of its own (blanks in a row, letters with marks, numbers). So an answer is
/// given for plain texts alone, and while all values that were read are plain; everything else is left to the
/// directory.
class KnownValues {
 public:
  enum class Answer { kFree, kTaken, kAsk };

  /// `owner`, which may be empty, is the account that has the value.
  void add(std::string_view value, const std::string& owner = {});
  /// A value that is not text.
  void add_other() { has_others_ = true; }
  [[nodiscard]] Answer find(std::string_view value) const;
  /// The account that was added with a value; empty for none.
  [[nodiscard]] std::string owner_of(std::string_view value) const;

 private:
  ForeseenNames values_;
  std::unordered_map<std::uint64_t, std::string> owners_;  ///< by the hashes of the folded values
  bool has_others_ = false;
};

}  // namespace twk::session
