#include "groups/join_members.hpp"

#include <gmock/gmock.h>

#include <algorithm>
#include <set>

#include "ads/basic_object.hpp"

namespace twk::groups {
namespace {

using testing::ElementsAre;
using testing::Pair;

/// Takes many at once, all or none of them.
class Crowd final : public ads::BasicObject {
 public:
  [[nodiscard]] std::string Name() const override { return "CN=Crowd"; }
  [[nodiscard]] std::string Class() const override { return "group"; }
  [[nodiscard]] std::string ADsPath() const override { return "LDAP://CN=Crowd"; }
  [[nodiscard]] std::string Parent() const override { return "LDAP:"; }
  void Add(std::string_view path) override {
    ++requests;
    if (path == "nobody" || !members.emplace(path).second)
      base::raise(path == "nobody" ? 2 : 1, std::string(path));
  }
  [[nodiscard]] bool takes_many() const override { return true; }
  bool AddTogether(std::span<const std::string> paths) override {
    ++requests;
    const bool refused = std::ranges::any_of(
        paths, [&](const std::string& path) { return path == "nobody" || members.contains(path); });
    if (!refused)
      members.insert(paths.begin(), paths.end());
    return !refused;
  }

  void Remove(std::string_view path) override {
    ++requests;
    if (members.erase(std::string(path)) == 0)
      base::raise(3, std::string(path));
  }
  bool RemoveTogether(std::span<const std::string> paths) override {
    ++requests;
    const bool all =
        std::ranges::all_of(paths, [&](const std::string& path) { return members.contains(path); });
    for (const std::string& path : paths)
      all ? members.erase(path) : 0;
    return all;
  }

  std::set<std::string, std::less<>> members;
  int requests = 0;
};

TEST(JoinMembers, TakesFewRequestsAndTellsEachWhatASingleOneWould) {
  Crowd crowd;
  std::vector<std::string> paths;
  for (int i = 0; i < 2000; ++i)
    paths.push_back("u" + std::to_string(i));
  crowd.members = {"u700"};
  paths[1300] = "nobody";
  std::vector<std::size_t> told;
  std::vector<std::pair<std::size_t, std::uint32_t>> refused;
  join_members(crowd, paths,
               {[&](std::size_t index, const base::Trap& failure) {
                  told.push_back(index);
                  if (failure.number() != 0)
                    refused.emplace_back(index, failure.number());
                },
                [&] { return told.size() < 1500; }});
  EXPECT_THAT(refused, ElementsAre(Pair(700, 1), Pair(1300, 2)));
  EXPECT_EQ(told.size(), 1500U);
  EXPECT_TRUE(std::ranges::is_sorted(told));
  EXPECT_EQ(crowd.members.size(), 1499U);
  EXPECT_LT(crowd.requests, 45);

  crowd.requests = 0;
  refused.clear();
  leave_members(crowd, std::span(paths).first(1500),
                {[&](std::size_t index, const base::Trap& failure) {
                   if (failure.number() != 0)
                     refused.emplace_back(index, failure.number());
                 },
                 [] { return true; }});
  EXPECT_THAT(refused, ElementsAre(Pair(1300, 3)));
  EXPECT_TRUE(crowd.members.empty());
  EXPECT_LT(crowd.requests, 45);
}

}  // namespace
}  // namespace twk::groups
