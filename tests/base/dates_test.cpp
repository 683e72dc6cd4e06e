#include "base/dates.hpp"

namespace twk::base {
namespace {

TEST(Dates, TextsThatAreDatesAreRead) {
  const struct {
    const char* text;
    CivilTime date;
  } cases[] = {{"31/12/2026", {2026, 12, 31}},
               {" 1-2-2026 ", {2026, 2, 1}},
               {"2026-12-31", {2026, 12, 31}},
               {"12/31/2026", {2026, 12, 31}},
               {"29.02.2024", {2024, 2, 29}},
               {"1.2.00", {2000, 2, 1}},
               {"1.2.29", {2029, 2, 1}},
               {"1.2.30", {1930, 2, 1}},
               {"1.2.99", {1999, 2, 1}},
               {"1.2.5", {2005, 2, 1}},
               {"31/12/2026 9:05", {2026, 12, 31, 9, 5, 0}},
               {"31/12/2026  23:59:59", {2026, 12, 31, 23, 59, 59}}};
  for (const auto& one : cases)
    EXPECT_EQ(parse_date(one.text), make_date(one.date)) << one.text;
}

TEST(Dates, OtherTextsAreNot) {
  for (const char* const text : {"",
                                 " ",
                                 "soon",
                                 "31/12",
                                 "31/12/2026/1",
                                 "29/2/2026",
                                 "31/4/2026",
                                 "0/1/2026",
                                 "1/13/2026x",
                                 "13/13/2026",
                                 "1//2026",
                                 "1/2/20261",
                                 "-1/2/2026",
                                 "1/2/0026",
                                 "31/12/2026 24:00",
                                 "31/12/2026 9",
                                 "31/12/2026 9:60",
                                 "31/12/2026 9:05:60",
                                 "31/12/2026 9:05:00:00",
                                 "31/12/2026 pm"})
    EXPECT_EQ(parse_date(text), std::nullopt) << text;
}

TEST(Dates, AMomentHasOneFiletimeAndOneForm) {
  // Filetimes by hand: seconds since 1601, ten millions each.
  const struct {
    CivilTime time;
    std::int64_t filetime;
    const char* date;
    const char* clock;
    const char* compact;
  } cases[] = {{{1601, 1, 1}, 0, "1/01/1601", "00:00:00", "010101"},
               {{1601, 1, 1, 13, 0, 0}, 468'000'000'000, "1/01/1601", "13:00:00", "010101"},
               {{1899, 12, 29, 18, 0, 0}, 94'352'904'000'000'000, "29/12/1899", "18:00:00", "291299"},
               {{1970, 1, 1}, 116'444'736'000'000'000, "1/01/1970", "00:00:00", "010170"},
               {{2026, 12, 31, 9, 5, 7}, 134'431'815'070'000'000, "31/12/2026", "09:05:07", "311226"},
               {{9999, 12, 31, 23, 59, 59}, 2'650'467'743'990'000'000, "31/12/9999", "23:59:59", "311299"}};
  for (const auto& one : cases) {
    const Date date = make_date(one.time);
    EXPECT_EQ(to_filetime(date), one.filetime) << one.date;
    EXPECT_EQ(to_filetime(from_filetime(one.filetime + 9'999'999)), one.filetime) << "whole seconds";
    EXPECT_EQ(format_date(date), one.date);
    EXPECT_EQ(format_time(date), one.clock);
    EXPECT_EQ(format_compact_date(date), one.compact);
  }
  EXPECT_EQ(format_compact_time(make_date({2026, 1, 2, 3, 4, 5})), "030405");
}

TEST(Dates, SecondsAreAddedOverDaysAndTheEpoch) {
  EXPECT_EQ(plus_seconds(make_date({2024, 2, 28, 23, 59, 59}), 1), make_date({2024, 2, 29}));
  EXPECT_EQ(plus_seconds(make_date({1900, 1, 1}), -3 * 86400 - 3600), make_date({1899, 12, 28, 23, 0, 0}));
  EXPECT_EQ(format_date({1e300}), "31/12/9999") << "a moment beyond the range is its end";
}

}  // namespace
}  // namespace twk::base
