#include "directory/user_columns.hpp"

#include "directory/account_expiry.hpp"
#include "directory/units.hpp"
#include "platform/query.hpp"
#include "session/session.hpp"

namespace twk::directory {

std::string UserColumns::attributes() {
  return "sAMAccountName,DisplayName," + std::string(AccountMarks::kAttributes);
}

UserColumns::Row UserColumns::of(const platform::Recordset& row, std::size_t first, std::string_view parent) {
  constexpr std::size_t kState = 2;
  const std::uint8_t marks = marks_.of(row, first + kState);
  const auto ends = AccountMarks::end_of(row, first + kState);
  return {{row.field(first).text(), row.field(first + 1).text(), unit_in_words(parent), marks_in_words(marks),
           ends ? sortable_expiry(session_.platform.clock, *ends) : std::string()},
          marks};
}

}  // namespace twk::directory
