#include "session/name_prefixes.hpp"

#include <gtest/gtest.h>

#include <random>
#include <set>

namespace twk::session {
namespace {

/// Short names of few letters, so that many begin alike, and some bytes that compare as negative numbers.
std::string any_name(std::minstd_rand& random) {
  std::string name;
  for (auto size = random() % 7; size > 0; --size)
    name += "ab,\xC3\xFF"[random() % 5];
  return name;
}

TEST(NamePrefixes, AnswerLikeAWalkOverAllNames) {
  std::minstd_rand random(5);
  NamePrefixes names;
  std::set<std::string> all;
  EXPECT_FALSE(names.has_beginning(""));
  for (int i = 0; i < 4000; ++i) {
    const std::string asked = any_name(random);
    const auto first = all.lower_bound(asked);
    ASSERT_EQ(names.has_beginning(asked), first != all.end() && first->starts_with(asked)) << asked;
    ASSERT_EQ(names.has(asked), all.contains(asked) && !asked.empty()) << asked;
    std::string added = any_name(random) + (i % 3 == 0 ? std::to_string(i) : "");
    names.add(added);
    all.insert(std::move(added));
  }
  EXPECT_GT(all.size(), 2000U);
}

}  // namespace
}  // namespace twk::session
