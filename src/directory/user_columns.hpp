#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "directory/account_marks.hpp"

namespace twk::directory {

/// What a list shows of an account beside its name: logon name, full name, OU, state, end. Read in the search
/// that reads the name.
class UserColumns {
 public:
  explicit UserColumns(session::Session& session) : session_(session), marks_(session) {}

  /// What a query asks for, to follow its other attributes.
  static std::string attributes();

  struct Row {
    std::vector<std::string> texts;
    std::uint8_t marks = 0;
  };
  /// `first` is the place of the first of those attributes, `parent` the name of the account's unit.
  [[nodiscard]] Row of(const platform::Recordset& row, std::size_t first, std::string_view parent);

 private:
  session::Session& session_;
  AccountMarks marks_;
};

}  // namespace twk::directory
