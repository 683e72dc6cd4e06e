#include "local/system_clock.hpp"

#include <ctime>

#include "support/variable.hpp"

namespace twk::local {
namespace {

using base::make_date;

TEST(SystemClockTest, MidnightIsWhereItsDayBegins) {
  // Zones by their rules, so that the workstation needs no table of them.
  constexpr const char* kBerlin = "CET-1CEST,M3.5.0,M10.5.0/3";
  constexpr const char* kAuckland = "NZST-12NZDT,M9.5.0,M4.1.0/3";
  const struct {
    const char* zone;
    base::CivilTime local;
    base::CivilTime utc;
    const char* shown;
  } cases[] = {
      {"UTC0", {2026, 12, 31}, {2026, 12, 31}, "00:00:00"},
      {kBerlin, {2026, 12, 31}, {2026, 12, 30, 23}, "00:00:00"},
      {kBerlin, {2026, 7, 1}, {2026, 6, 30, 22}, "00:00:00"},
      // The days of the change themselves.
      {kBerlin, {2026, 3, 29}, {2026, 3, 28, 23}, "00:00:00"},
      {kBerlin, {2026, 3, 30}, {2026, 3, 29, 22}, "00:00:00"},
      {kBerlin, {2026, 10, 25}, {2026, 10, 24, 22}, "00:00:00"},
      {kBerlin, {2026, 10, 26}, {2026, 10, 25, 23}, "00:00:00"},
      {kAuckland, {2026, 1, 1}, {2025, 12, 31, 11}, "00:00:00"},
      {"IST-5:30", {2026, 12, 31}, {2026, 12, 30, 18, 30}, "00:00:00"},
      {"PST8PDT,M3.2.0,M11.1.0", {2026, 12, 31}, {2026, 12, 31, 8}, "00:00:00"},
      // Midnight that is skipped, and midnight that comes twice.
      {"<-03>3<-02>,M11.1.0/0,M2.3.0/0", {2026, 11, 1}, {2026, 11, 1, 3}, "01:00:00"},
      {"CST5CDT,M3.2.0/0,M11.1.0/1", {2026, 11, 1}, {2026, 11, 1, 4}, "00:00:00"},
      // A time that is skipped and one that comes twice.
      {kBerlin, {2026, 3, 29, 2, 30}, {2026, 3, 29, 1, 30}, "03:30:00"},
      {kBerlin, {2026, 10, 25, 2, 30}, {2026, 10, 25, 0, 30}, "02:30:00"},
  };
  SystemClock clock;
  for (const auto& one : cases) {
    const test::TimeZone zone(one.zone);
    const base::Date utc = clock.to_utc(make_date(one.local));
    EXPECT_EQ(base::to_filetime(utc), base::to_filetime(make_date(one.utc)))
        << one.zone << base::format_date(utc);
    EXPECT_EQ(base::format_time(clock.to_local(utc)), one.shown) << one.zone;
    EXPECT_EQ(base::format_date(clock.to_local(utc)), base::format_date(make_date(one.local))) << one.zone;
  }
}

TEST(SystemClockTest, NowIsTheSameMomentInBothForms) {
  SystemClock clock;
  const test::TimeZone zone("XXX-3");
  const std::int64_t ahead = base::to_filetime(clock.now()) - base::to_filetime(clock.utc_now());
  EXPECT_NEAR(static_cast<double>(ahead) / 1e7, 3 * 3600, 5);
  EXPECT_NEAR(static_cast<double>(base::to_filetime(clock.utc_now())) / 1e7 - 11644473600.0,
              static_cast<double>(std::time(nullptr)), 5);
}

}  // namespace
}  // namespace twk::local
