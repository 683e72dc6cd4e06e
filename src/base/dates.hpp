#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace twk::base {

/// A moment as days since 30 December 1899, the time of day as the fraction (the OLE automation date).
/// No time zone: the directory's times are UTC, what a person types or reads is local time, and
/// `platform::Clock` converts between them.
struct Date {
  double serial = 0;

  friend bool operator==(const Date&, const Date&) = default;
  friend auto operator<=>(const Date&, const Date&) = default;
};

/// A date and time taken apart; months and days count from 1.
struct CivilTime {
  int year = 1899;
  int month = 12;
  int day = 30;
  int hour = 0;
  int minute = 0;
  int second = 0;
};

Date make_date(const CivilTime& parts);
/// Rounded to the second.
CivilTime civil_time(Date date);

/// "31/12/2026", "1/01/1970": the day first, as the short date form of the system.
std::string format_date(Date date);
/// "09:05:00", 24 hours.
std::string format_time(Date date);
/// "ddmmyy" and "hhmmss", for file names.
std::string format_compact_date(Date date);
std::string format_compact_time(Date date);

/// Reads "d/m/yyyy" (also with "-" or "." between, also year first, and with a two-digit year: below 30 is
/// 20xx), with or without a time "h:mm" or "h:mm:ss" after it. When the second number cannot be a month and
/// the first can, they are exchanged. Empty for anything else.
std::optional<Date> parse_date(std::string_view text);

/// The moment so many seconds later, to the second.
Date plus_seconds(Date date, std::int64_t seconds);

/// 100-nanosecond steps since 1 January 1601, as the directory counts time; without any time-zone shift.
std::int64_t to_filetime(Date date);
Date from_filetime(std::int64_t filetime);

}  // namespace twk::base
