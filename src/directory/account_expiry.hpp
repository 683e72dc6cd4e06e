#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "base/dates.hpp"
#include "platform/adsi.hpp"
#include "platform/clock.hpp"

/// When an account ends. The directory keeps a moment in UTC; a person names a day of this workstation's
/// zone, and the account ends when that day begins.
namespace twk::directory {

/// What a person typed for the end of an account.
struct TypedExpiry {
  std::optional<base::Date> ends;  ///< in UTC; none for never
  std::string error;               ///< why the text is not accepted; empty when it is
};
/// Reads "31/12/2026" or "2026-12-31", also with a time after it, as `base::parse_date` does; "end of" before
/// a day for the moment when the next day begins; "never". In any letter case. A day before 1970 is refused,
/// and so is 1 January 1970, which means "never" in the directory.
TypedExpiry read_expiry(platform::Clock& clock, std::string_view text);
/// The same, but raises a type mismatch for a text that is not accepted.
std::optional<base::Date> expiry_of_text(platform::Clock& clock, std::string_view text);
/// True for a text that names no day yet: nothing, or a tag, also after "end of".
bool is_open_expiry(std::string_view text);

/// When an account ends, in UTC; none for never, in whichever form that is stored.
std::optional<base::Date> expiry_of(const platform::User& user);
/// Stages it; none stores "never" in the form of the object's provider.
void put_expiry(platform::User& user, std::optional<base::Date> ends);

/// "31/12/2026", followed by the time when the account does not end as that day begins here; "Never".
std::string expiry_text(platform::Clock& clock, std::optional<base::Date> ends);
/// The day here on which an account ends, for JSON and for sorting: "2026-12-31", with a time as above.
std::string sortable_expiry(platform::Clock& clock, base::Date ends);

}  // namespace twk::directory
