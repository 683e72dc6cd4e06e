#include "directory/account_expiry.hpp"

#include <cmath>

#include "base/errors.hpp"
#include "base/text.hpp"

namespace twk::directory {
namespace {

constexpr std::string_view kNever = "Never";
constexpr std::string_view kEndOf = "end of";
/// What a WinNT account gets instead of an expiry day.
constexpr base::Date kWinntNever{-1.0};

base::Date day_of(base::Date date) {
  return {std::floor(date.serial)};
}

/// Removes a leading "end of" from a trimmed text; true when there was one.
bool take_end_of(std::string_view& text) {
  const bool there =
      base::starts_with_fold(text, kEndOf) && (text.size() == kEndOf.size() || text[kEndOf.size()] == ' ');
  if (there)
    text = base::trim(text.substr(kEndOf.size()));
  return there;
}

/// Including the two dates that other programs read and write for "never".
bool is_never(base::Date stored) {
  return stored == platform::never_expires() || stored == base::make_date({1601, 1, 1, 13, 0, 0});
}

std::string quoted(std::string_view text) {
  return "\"" + std::string(text) + "\"";
}

/// Why a date cannot be the end of an account; empty when it can.
std::string refusal(std::string_view text, base::Date date, bool end_of) {
  if (end_of && date != day_of(date))
    return quoted(text) + " has a time: \"end of\" takes only a day";
  const base::Date never = base::make_date({1970, 1, 1});
  if (date < never) {
    return quoted(text) + " is " + base::format_date(date) +
           ", which is before 1970: write the year with four digits";
  }
  if (day_of(date) == never)
    return base::format_date(date) + " means an account without an end: write \"Never\", or a later day";
  return {};
}

/// True for an account that ends exactly when a day begins here.
bool is_start_of_day(platform::Clock& clock, base::Date ends) {
  return clock.to_utc(day_of(clock.to_local(ends))) == ends;
}

}  // namespace

TypedExpiry read_expiry(platform::Clock& clock, std::string_view text) {
  text = base::trim(text);
  std::string_view day = text;
  const bool end_of = take_end_of(day);
  if (base::equals_fold(day, kNever))
    return {};
  const auto date = base::parse_date(day);
  if (!date)
    return {{}, quoted(text) + " is neither a day such as 31/12/2026 or 2026-12-31 nor \"Never\""};
  std::string error = refusal(text, *date, end_of);
  if (!error.empty())
    return {{}, std::move(error)};
  return {clock.to_utc(end_of ? base::Date{date->serial + 1} : *date), {}};
}

std::optional<base::Date> expiry_of_text(platform::Clock& clock, std::string_view text) {
  const TypedExpiry typed = read_expiry(clock, text);
  if (!typed.error.empty())
    base::raise(base::error::kTypeMismatch, "Type mismatch: " + typed.error);
  return typed.ends;
}

bool is_open_expiry(std::string_view text) {
  text = base::trim(text);
  take_end_of(text);
  return text.empty() || text.starts_with('%');
}

std::optional<base::Date> expiry_of(const platform::User& user) {
  base::Trap trap;
  base::Date stored;
  if (!trap([&] { stored = user.AccountExpirationDate(); })) {
    if (trap.number() == platform::ads_error::kPropertyNotFound)
      return std::nullopt;  // a WinNT object without an expiry date
    throw base::RuntimeError(trap.number(), trap.description());
  }
  return is_never(stored) ? std::nullopt : std::optional(stored);
}

void put_expiry(platform::User& user, std::optional<base::Date> ends) {
  const bool winnt = base::starts_with_fold(user.object()->ADsPath(), "WinNT://");
  user.put_AccountExpirationDate(ends.value_or(winnt ? kWinntNever : platform::never_expires()));
}

std::string expiry_text(platform::Clock& clock, std::optional<base::Date> ends) {
  if (!ends)
    return std::string(kNever);
  const base::Date local = clock.to_local(*ends);
  return base::format_date(local) + (is_start_of_day(clock, *ends) ? "" : " " + base::format_time(local));
}

std::string sortable_expiry(platform::Clock& clock, base::Date ends) {
  const base::Date local = clock.to_local(ends);
  const base::CivilTime day = base::civil_time(local);
  return base::to_text(day.year, 4) + "-" + base::to_text(day.month, 2) + "-" + base::to_text(day.day, 2) +
         (is_start_of_day(clock, ends) ? "" : " " + base::format_time(local));
}

}  // namespace twk::directory
