#include "directory/account_expiry.hpp"

#include "base/errors.hpp"
#include "base/text.hpp"
#include "support/fakes.hpp"

namespace twk::directory {
namespace {

constexpr int kHour = 3600;

TEST(AccountExpiry, ADayIsOneOfTheZoneHere) {
  const base::Date day = base::make_date({2026, 12, 31});
  const struct {
    const char* typed;
    int seconds_ahead;
    std::int64_t after_midnight;  ///< of UTC
    const char* shown;
    const char* sortable;
  } cases[] = {
      {"31/12/2026", 0, 0, "31/12/2026", "2026-12-31"},
      {"2026-12-31", -8 * kHour, 8 * kHour, "31/12/2026", "2026-12-31"},
      {" 31.12.26 ", 13 * kHour, -13 * kHour, "31/12/2026", "2026-12-31"},
      {"END OF 30/12/2026", 19800, -19800, "31/12/2026", "2026-12-31"},
      {"31/12/2026 16:30", -8 * kHour, 24 * kHour + 1800, "31/12/2026 16:30:00", "2026-12-31 16:30:00"}};
  for (const auto& one : cases) {
    test::FixedClock clock;
    clock.seconds_ahead = one.seconds_ahead;
    const TypedExpiry read = read_expiry(clock, one.typed);
    ASSERT_TRUE(read.ends) << one.typed << read.error;
    EXPECT_EQ(base::to_filetime(*read.ends), base::to_filetime(day) + one.after_midnight * 10'000'000)
        << one.typed;
    EXPECT_EQ(expiry_text(clock, read.ends), one.shown);
    EXPECT_EQ(sortable_expiry(clock, *read.ends), one.sortable);
  }
}

TEST(AccountExpiry, InvalidDaysAreRefusedWithTheReason) {
  test::FixedClock clock;
  for (const auto& [typed, reason] :
       std::vector<std::pair<const char*, const char*>>{{"soon", "is neither a day"},
                                                        {"", "is neither a day"},
                                                        {"29/2/2026", "is neither a day"},
                                                        {"1.2.30", "is 1/02/1930, which is before 1970"},
                                                        {"1.2.69", "before 1970"},
                                                        {"31/12/1969", "before 1970"},
                                                        {"1/1/70", "without an end"},
                                                        {"end of 31/12/2026 16:00", "takes only a day"}}) {
    EXPECT_THAT(read_expiry(clock, typed).error, testing::HasSubstr(reason)) << typed;
    EXPECT_THROW(expiry_of_text(clock, typed), base::RuntimeError) << typed;
  }
  for (const char* const never : {" nEVER ", "end of never"})
    EXPECT_EQ(expiry_of_text(clock, never), std::nullopt)
        << "a column may say so where others have a last day";
  EXPECT_EQ(expiry_text(clock, std::nullopt), "Never");
}

TEST(AccountExpiry, ATextIsOpenWhileATagIsNotFilled) {
  for (const auto& [text, open] : std::vector<std::pair<const char*, bool>>{{"", true},
                                                                            {" %IMPORT4% ", true},
                                                                            {"end of %IMPORT4%", true},
                                                                            {"end of", true},
                                                                            {"end offline", false},
                                                                            {"never", false},
                                                                            {"31/12/2026", false}})
    EXPECT_EQ(is_open_expiry(text), open) << text;
}

}  // namespace
}  // namespace twk::directory
