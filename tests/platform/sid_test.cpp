#include "platform/sid.hpp"

#include <gmock/gmock.h>

namespace twk::platform {
namespace {

using base::Bytes;

struct Identifier {
  const char* text;
  Bytes bytes;
};

const Identifier kIdentifiers[] = {{"S-1-1-0", {1, 1, 0, 0, 0, 0, 0, 1, 0, 0, 0, 0}},
                                   {"S-1-5-32-544", {1, 2, 0, 0, 0, 0, 0, 5, 32, 0, 0, 0, 0x20, 2, 0, 0}},
                                   {"S-1-5-4294967295", {1, 1, 0, 0, 0, 0, 0, 5, 0xFF, 0xFF, 0xFF, 0xFF}},
                                   {"S-1-4294967295-1", {1, 1, 0, 0, 0xFF, 0xFF, 0xFF, 0xFF, 1, 0, 0, 0}},
                                   {"S-1-0x000100000000-1", {1, 1, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0}},
                                   {"S-1-0xFFFFFFFFFFFF", {1, 0, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF}},
                                   {"S-1-5-21-3623811015-3361044348-30300820-1013",
                                    {1,   5,   0,   0,   0,  0,   0,   5,  21,  0, 0,   0, 199, 247,
                                     254, 215, 124, 119, 85, 200, 148, 90, 206, 1, 245, 3, 0,   0}}};

TEST(Sid, TextAndBytesMeanTheSame) {
  for (const auto& [text, bytes] : kIdentifiers) {
    const auto parsed = Sid::parse(text);
    ASSERT_TRUE(parsed) << text;
    EXPECT_EQ(parsed->bytes(), bytes) << text;
    EXPECT_EQ(parsed->size(), bytes.size());
    const auto decoded = Sid::decode(bytes);
    ASSERT_TRUE(decoded) << text;
    EXPECT_EQ(decoded, parsed);
    EXPECT_EQ(decoded->text(), text);
  }
}

TEST(Sid, TextIsReadInEitherCaseAndWithHexadecimalNumbers) {
  EXPECT_EQ(Sid::parse("s-1-5-32-544"), well_known::administrators());
  EXPECT_EQ(Sid::parse("S-1-0x5-0X20-544"), well_known::administrators());
  EXPECT_EQ(Sid::parse("S-1-05-0032-544"), well_known::administrators());
}

class OtherText : public testing::TestWithParam<std::string> {};
TEST_P(OtherText, IsNotAnIdentifier) {
  EXPECT_FALSE(Sid::parse(GetParam()));
}

const std::string kFifteen = "S-1-5-1-2-3-4-5-6-7-8-9-10-11-12-13-14-15";
INSTANTIATE_TEST_SUITE_P(Sid, OtherText,
                         testing::Values("", "S", "S-1", "S-1-", "S-2-5-32", "S-1--5", "S-1-5-", "S-1-5--1",
                                         "S-1-5-+1", "S-1-5-32 ", " S-1-5-32", "S-1-5-32x", "S-1-x", "S-1-0x",
                                         "S-1-5-0x", "S-1-5-0xG", "S-1-5-0x-1", "S-1-5-4294967296",
                                         "S-1-281474976710656-1", "S-1-0x1000000000000",
                                         "S-1-5-99999999999999999999", "Administrators", kFifteen + "-16",
                                         std::string("S-1-5-32\0", 9), std::string("S-1-5\0-32", 9)));

TEST(Sid, FifteenSubAuthoritiesAreTheMost) {
  EXPECT_TRUE(Sid::parse(kFifteen));
}

TEST(Sid, BytesThatAreCutOffOrOfAnotherFormAreNoIdentifier) {
  const Bytes whole = well_known::administrators().bytes();
  for (std::size_t size = 0; size < whole.size(); ++size) {
    const Bytes part(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size));
    EXPECT_FALSE(Sid::decode(part)) << size;
  }
  Bytes other_revision = whole;
  other_revision[0] = 2;
  EXPECT_FALSE(Sid::decode(other_revision));
  Bytes too_many(8 + 16 * 4, 0);
  too_many[0] = 1;
  too_many[1] = 16;
  EXPECT_FALSE(Sid::decode(too_many));
  too_many[1] = 15;
  EXPECT_EQ(Sid::decode(too_many).value().size(), 8U + 15U * 4U);
}

TEST(Sid, WhatFollowsAnIdentifierIsIgnored) {
  Bytes bytes = well_known::everyone().bytes();
  bytes.insert(bytes.end(), 20, 0xFF);
  EXPECT_EQ(Sid::decode(bytes), well_known::everyone());
}

TEST(Sid, SubAuthoritiesBeyondTheFifteenthAreLeftOut) {
  const Sid sid(5, {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 17});
  EXPECT_EQ(sid.text(), "S-1-5-1-2-3-4-5-6-7-8-9-10-11-12-13-14-15");
  EXPECT_EQ(Sid::decode(sid.bytes()), sid);
}

TEST(Sid, WellKnownOnesHaveThePublishedNumbers) {
  const std::pair<Sid, const char*> cases[] = {{well_known::everyone(), "S-1-1-0"},
                                               {well_known::creator_owner(), "S-1-3-0"},
                                               {well_known::creator_group(), "S-1-3-1"},
                                               {well_known::owner_rights(), "S-1-3-4"},
                                               {well_known::authenticated_users(), "S-1-5-11"},
                                               {well_known::local_system(), "S-1-5-18"},
                                               {well_known::administrators(), "S-1-5-32-544"},
                                               {well_known::users(), "S-1-5-32-545"}};
  for (const auto& [sid, text] : cases)
    EXPECT_EQ(sid.text(), text);
}

}  // namespace
}  // namespace twk::platform
