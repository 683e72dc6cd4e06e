#include "base/dates.hpp"

#include <algorithm>
#include <array>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <vector>

#include "base/text.hpp"

namespace twk::base {
namespace {

using std::chrono::sys_days;

constexpr double kSecondsPerDay = 86400.0;
/// Days from 1 January 1601 to 30 December 1899.
constexpr std::int64_t kFiletimeEpochDays = 109205;
/// 1 January 100 and the last second of 31 December 9999: the range of the automation date.
constexpr double kFirstDay = -657434;
constexpr double kLastMoment = 2958465 + 86399 / kSecondsPerDay;
constexpr std::int64_t kFiletimePerSecond = 10'000'000;

sys_days epoch() {
  using namespace std::chrono;
  return sys_days{year{1899} / December / 30};
}

std::string print(const char* format, int a, int b, int c) {
  std::array<char, 48> buffer{};
  const int size = std::snprintf(buffer.data(), buffer.size(), format, a, b, c);
  return {buffer.data(), static_cast<std::size_t>(size)};
}

std::optional<std::vector<int>> numbers_between(std::string_view text, std::string_view separators) {
  std::vector<int> numbers;
  std::size_t at = 0;
  while (at <= text.size()) {
    const std::size_t end = std::min(text.find_first_of(separators, at), text.size());
    const std::string_view piece = text.substr(at, end - at);
    if (piece.empty() || piece.size() > 4 || piece.find_first_not_of("0123456789") != npos)
      return std::nullopt;
    numbers.push_back(val(piece));
    at = end + 1;
  }
  return numbers;
}

bool read_day(std::string_view text, CivilTime& out) {
  const auto numbers = numbers_between(text, "/-.");
  if (!numbers || numbers->size() != 3)
    return false;
  int day = (*numbers)[0];
  int month = (*numbers)[1];
  int year = (*numbers)[2];
  if (text.find_first_of("/-.") == 4) {
    std::swap(day, year);
  } else if (text.size() - text.find_last_of("/-.") - 1 <= 2) {
    year += year < 30 ? 2000 : 1900;
  }
  if (month > 12 && day <= 12)
    std::swap(day, month);
  using namespace std::chrono;
  const year_month_day ymd{std::chrono::year{year}, std::chrono::month{static_cast<unsigned>(month)},
                           std::chrono::day{static_cast<unsigned>(day)}};
  if (!ymd.ok() || year < 100)
    return false;
  out.year = year;
  out.month = month;
  out.day = day;
  return true;
}

bool read_time(std::string_view text, CivilTime& out) {
  const auto numbers = numbers_between(text, ":");
  if (!numbers || numbers->size() < 2 || numbers->size() > 3)
    return false;
  out.hour = (*numbers)[0];
  out.minute = (*numbers)[1];
  out.second = numbers->size() == 3 ? (*numbers)[2] : 0;
  return out.hour < 24 && out.minute < 60 && out.second < 60;
}

}  // namespace

Date make_date(const CivilTime& parts) {
  using namespace std::chrono;
  const sys_days day{std::chrono::year{parts.year} / parts.month / parts.day};
  const double days = static_cast<double>((day - epoch()).count());
  const double fraction = (parts.hour * 3600.0 + parts.minute * 60.0 + parts.second) / kSecondsPerDay;
  // Before the epoch the fraction still counts forward from midnight, so it is subtracted from the whole.
  return {days < 0 ? days - fraction : days + fraction};
}

CivilTime civil_time(Date date) {
  using namespace std::chrono;
  date.serial = std::clamp(date.serial, kFirstDay, kLastMoment);
  auto whole = static_cast<std::int64_t>(std::trunc(date.serial));
  auto seconds = static_cast<std::int64_t>(
      std::llround(std::abs(date.serial - static_cast<double>(whole)) * kSecondsPerDay));
  if (seconds >= 86400) {
    seconds -= 86400;
    ++whole;
  }
  const year_month_day ymd{epoch() + days{whole}};
  return {static_cast<int>(ymd.year()),
          static_cast<int>(static_cast<unsigned>(ymd.month())),
          static_cast<int>(static_cast<unsigned>(ymd.day())),
          static_cast<int>(seconds / 3600),
          static_cast<int>(seconds / 60 % 60),
          static_cast<int>(seconds % 60)};
}

std::string format_date(Date date) {
  const CivilTime t = civil_time(date);
  return print("%d/%02d/%04d", t.day, t.month, t.year);
}

std::string format_time(Date date) {
  const CivilTime t = civil_time(date);
  return print("%02d:%02d:%02d", t.hour, t.minute, t.second);
}

std::string format_compact_date(Date date) {
  const CivilTime t = civil_time(date);
  return print("%02d%02d%02d", t.day, t.month, t.year % 100);
}

std::string format_compact_time(Date date) {
  const CivilTime t = civil_time(date);
  return print("%02d%02d%02d", t.hour, t.minute, t.second);
}

std::optional<Date> parse_date(std::string_view text) {
  text = trim(text);
  CivilTime parts;
  const std::size_t blank = text.find(' ');
  if (!read_day(text.substr(0, blank), parts))
    return std::nullopt;
  if (blank != npos && !read_time(trim(text.substr(blank)), parts))
    return std::nullopt;
  return make_date(parts);
}

std::int64_t to_filetime(Date date) {
  const double whole = std::trunc(date.serial);
  const auto seconds = std::llround(std::abs(date.serial - whole) * kSecondsPerDay);
  return ((static_cast<std::int64_t>(whole) + kFiletimeEpochDays) * 86400 + seconds) * kFiletimePerSecond;
}

Date from_filetime(std::int64_t filetime) {
  const std::int64_t all_seconds = filetime / kFiletimePerSecond;
  const std::int64_t days = all_seconds / 86400 - kFiletimeEpochDays;
  const double fraction = static_cast<double>(all_seconds % 86400) / kSecondsPerDay;
  return {days < 0 ? static_cast<double>(days) - fraction : static_cast<double>(days) + fraction};
}

Date plus_seconds(Date date, std::int64_t seconds) {
  return from_filetime(to_filetime(date) + seconds * kFiletimePerSecond);
}

}  // namespace twk::base
