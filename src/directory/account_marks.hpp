#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "base/dates.hpp"

namespace twk::platform {
class Recordset;
}
namespace twk::session {
struct Session;
}

/// What the tree and the lists show of an account's state beside its name (`TreeNode::marks`,
/// `ListRow::marks`). Read with the names, in the same search.
namespace twk::directory {

namespace mark {
inline constexpr std::uint8_t kDisabled = 1;
inline constexpr std::uint8_t kLocked = 2;
inline constexpr std::uint8_t kExpired = 4;
}  // namespace mark

/// "disabled, expired"; empty for an account that can be used.
std::string marks_in_words(std::uint8_t marks);

/// Makes the marks of found accounts. The lockout rule of the domain is read for the first that was locked.
class AccountMarks {
 public:
  explicit AccountMarks(session::Session& session);

  /// What a query asks for, to follow its other attributes.
  static constexpr std::string_view kAttributes = "userAccountControl,lockoutTime,accountExpires";

  /// `first` is the place of the first of those attributes. One that the server does not tell marks nothing.
  [[nodiscard]] std::uint8_t of(const platform::Recordset& row, std::size_t first);
  /// When the account ends, in UTC; none for never.
  [[nodiscard]] static std::optional<base::Date> end_of(const platform::Recordset& row, std::size_t first);

 private:
  session::Session& session_;
  std::int64_t now_;
  std::optional<std::int64_t> lockout_duration_;
};

/// Changes a mark of an account where the tree and the lists show it; `path` is its key in the lists.
void set_mark(session::Session& session, std::string_view path, std::uint8_t mark, bool on);

}  // namespace twk::directory
