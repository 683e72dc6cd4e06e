#include <gtest/gtest.h>

#include <string>

#include "live/domain/netlogon_ping.hpp"

namespace twk::live {
namespace {

using namespace std::string_literals;

/// Opcode, flags and GUID.
const std::string kStart = "\x17\0\0\0\xfd\x03\0\0"s + std::string(16, 'g');
/// Forest, domain and controller share their end; the NetBIOS names, no user, and both sites.
const std::string kAnswer = kStart + "\x03twk\x04test\0"s + "\xc0\x18"s +
                            "\x03"
                            "dc1\xc0\x18"s +
                            "\x03TWK\0"s +
                            "\x03"
                            "DC1\0"s +
                            "\0"s + "\x04Main\0"s +
                            "\x06"
                            "Branch\0"s;

TEST(NetlogonAnswer, NamesAreReadThroughTheirPointers) {
  const auto answer = parse_netlogon_answer(kAnswer + "\x05\0\0\0\xff\xff\xff\xff"s);
  ASSERT_TRUE(answer);
  EXPECT_EQ(answer->domain, "twk.test");
  EXPECT_EQ(answer->host, "dc1.twk.test");
  EXPECT_EQ(answer->site, "Main");
  EXPECT_EQ(answer->own_site, "Branch");
}

TEST(NetlogonAnswer, WhatIsCutOffOrLeadsInCirclesIsNone) {
  for (std::size_t length = 0; length < kAnswer.size(); ++length)
    EXPECT_FALSE(parse_netlogon_answer(kAnswer.substr(0, length))) << length;
  for (const std::string& name :
       {"\xc0\x18"s, "\xc0\x19"s, "\x01x\xc0\x18"s, "\xc0\xff"s, "\xff\xff"s, "\x40x"s, "\x80x"s, "\x3fx"s})
    EXPECT_FALSE(parse_netlogon_answer(kStart + name + std::string(7, '\0'))) << name;
  std::string chain = kStart;
  for (int i = 0; i < 10; ++i)
    chain += "\x3f" + std::string(63, 'n');
  EXPECT_FALSE(parse_netlogon_answer(chain + std::string(8, '\0')));
}

TEST(NetlogonAnswer, ADatagramHoldsItInAnEntryWithoutAName) {
  const auto with_length = [](char tag, const std::string& text) {
    return tag + ("\x81"s + static_cast<char>(text.size())) + text;
  };
  const std::string values = with_length('\x31', with_length('\x04', kAnswer));
  const std::string attributes = with_length('\x30', with_length('\x30', "\x04\x08netlogon" + values));
  const std::string datagram =
      with_length('\x30', "\x02\x01\x01" + with_length('\x64', "\x04\0"s + attributes));
  ASSERT_TRUE(netlogon_answer_in(datagram));
  EXPECT_EQ(netlogon_answer_in(datagram)->own_site, "Branch");
  for (std::size_t length = 0; length < datagram.size(); ++length)
    EXPECT_FALSE(netlogon_answer_in(datagram.substr(0, length))) << length;
  EXPECT_FALSE(netlogon_answer_in(netlogon_question("twk.test")));
}

}  // namespace
}  // namespace twk::live
