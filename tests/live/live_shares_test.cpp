#include <gtest/gtest.h>

#include "ads/share_object.hpp"
#include "live/live_world.hpp"

namespace twk::live {
namespace {

using contract::number_of;

class LiveSharesTest : public testing::Test {
 protected:
  platform::ObjectPtr server() { return w_.directory().GetObject(path_); }
  void make(const std::string& name) {
    test::store(server()->Create("fileshare", name), {{"Path", "D:\\Users"}});
  }

  test::LiveWorld w_;
  std::string path_ = "WinNT://" + w_.file_server() + "/lanmanserver";
};

TEST_F(LiveSharesTest, CommentOfAShareIsChangedAndItsFolderStays) {
  make("Homes");
  const auto share = w_.directory().GetObject(path_ + "/homes");
  EXPECT_EQ(share->Name(), "Homes");
  test::store(share, {{"Description", "Häuser A"}});
  const auto read = w_.directory().GetObject(path_ + "/Homes");
  EXPECT_EQ(read->Get("Description").text(), "Häuser A");
  EXPECT_EQ(read->Get("Path").text(), w_.told_path("D:\\Users"));
  read->Put("Path", "D:\\Profiles");
  EXPECT_EQ(number_of([&] { read->SetInfo(); }), platform::ads_error::kUnwilling);
}

TEST_F(LiveSharesTest, WhatIsMissingIsReportedByNumber) {
  EXPECT_EQ(number_of([&] { w_.directory().GetObject("WinNT://NOWHERE/lanmanserver"); }), ads::kBadNetPath);
  EXPECT_EQ(number_of([&] { w_.directory().GetObject(path_ + "/none"); }), ads::kShareNotFound);
  for (const char* const name : {"none", "a\nb", "\"; x \"", "\xFF"})
    EXPECT_EQ(number_of([&] { server()->Delete("fileshare", name); }), ads::kShareNotFound) << name;
  make("Homes");
  EXPECT_EQ(number_of([&] { make("HOMES"); }), ads::kShareExists);
}

}  // namespace
}  // namespace twk::live
