#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "base/text.hpp"
#include "live/ldap/ldap_connection.hpp"
#include "live/ldap/subschema.hpp"
#include "live/logon/logon_name.hpp"
#include "live/rpc/account_flags.hpp"
#include "live/rpc/ndr.hpp"
#include "live/rpc/password_buffer.hpp"
#include "live/rpc/rpc_pipe.hpp"
#include "platform/utf16.hpp"
#include "support/number_of.hpp"

namespace twk::live {
namespace {

using test::number_of;

base::Bytes bytes_of(std::string_view text) {
  return {text.begin(), text.end()};
}

std::string hex(std::span<const std::uint8_t> bytes) {
  std::string text;
  for (const std::uint8_t byte : bytes)
    text += base::hex_byte(byte);
  return base::lower(text);
}

TEST(Ndr, ArgumentsHaveTheirPlaces) {
  NdrWriter writer;
  writer.pointer(true);
  writer.text("ab");
  writer.number(7);
  writer.pointer(false);
  writer.array(bytes_of("xyz"));
  writer.number(1);
  EXPECT_EQ(hex(writer.bytes()),
            "00000200"
            "030000000000000003000000"
            "610062000000"
            "0000"
            "07000000"
            "00000000"
            "0300000078797a"
            "00"
            "01000000");
  NdrReader reader(writer.bytes());
  EXPECT_TRUE(reader.pointer());
  EXPECT_EQ(reader.text(), "ab");
  EXPECT_EQ(reader.number(), 7U);
  EXPECT_FALSE(reader.pointer());
  EXPECT_EQ(reader.array(), bytes_of("xyz"));
  EXPECT_EQ(reader.number(), 1U);
}

TEST(Ndr, AnswerThatIsCutOffIsRefusedAtEachByte) {
  NdrWriter writer;
  writer.text("share");
  writer.array(bytes_of("descriptor"));
  writer.number(0);
  for (std::size_t size = 0; size < writer.bytes().size(); ++size) {
    NdrReader reader(std::span(writer.bytes()).first(size));
    EXPECT_EQ(number_of([&] {
                reader.text();
                reader.array();
                reader.number();
              }),
              kBadStub)
        << size;
  }
}

TEST(Ndr, InvalidTextIsRefused) {
  const struct {
    const char* what;
    std::initializer_list<std::uint32_t> numbers;
  } cases[] = {{"longer than its room", {1, 0, 2, 0}},
               {"not at the beginning", {1, 1, 1, 0}},
               {"far longer than the answer", {0xFFFFFFFF, 0, 0xFFFFFFFF}},
               {"half a surrogate pair", {1, 0, 1, 0xD800}}};
  for (const auto& one : cases) {
    NdrWriter writer;
    for (const std::uint32_t number : one.numbers)
      writer.number(number);
    EXPECT_EQ(number_of([&] { NdrReader(writer.bytes()).text(); }), kBadStub) << one.what;
  }
}

TEST(PasswordOnItsWay, DigestsAreThoseOfTheStandard) {
  // RFC 1321, A.5.
  EXPECT_EQ(hex(md5({})), "d41d8cd98f00b204e9800998ecf8427e");
  EXPECT_EQ(hex(md5(bytes_of("message digest"))), "f96b697d7cb7938d525a2f31aaf161d0");
  EXPECT_EQ(hex(md5(bytes_of("1234567890123456789012345678901234567890"
                             "1234567890123456789012345678901234567890"))),
            "57edf4a22be3c955ac49da2e2107b67a");
}

TEST(PasswordOnItsWay, CipherIsThatOfTheStandard) {
  // RFC 6229, 40-bit key, offsets 0 and 16.
  const base::Bytes key = {1, 2, 3, 4, 5};
  EXPECT_EQ(hex(rc4(key, base::Bytes(32))),
            "b2396305f03dc027ccc3524a0a1118a86982944f18fc82d589c403a47a0d0919");
  EXPECT_EQ(rc4(key, rc4(key, bytes_of("there and back"))), bytes_of("there and back"));
}

TEST(PasswordOnItsWay, BufferEndsInThePasswordAndItsLength) {
  const base::Bytes buffer = password_buffer("jö", base::Bytes(kPasswordBufferSize, 0xAA));
  ASSERT_EQ(buffer.size(), kPasswordBufferSize);
  EXPECT_EQ(buffer[507], 0xAA);
  EXPECT_EQ(hex(std::span(buffer).last(8)), "6a00f60004000000");
  EXPECT_EQ(password_buffer(std::string(256, 'x'), {}).size(), kPasswordBufferSize);
  EXPECT_EQ(number_of([] { password_buffer(std::string(257, 'x'), {}); }), 2245U);
}

TEST(AccountFlags, EachCodeIsItsFlagAndTheOthersStay) {
  EXPECT_EQ(flags_of_codes(0x211), 0x10202);
  EXPECT_EQ(with_flags(0x80000010, 0x10202), 0x80000211U);
  EXPECT_EQ(with_flags(0x80000211, 0x200), 0x80000010U);
  for (std::uint32_t bit = 1; bit <= 0x40000; bit <<= 1U) {
    // 0x20 is of no account, [MS-SAMR] 2.2.1.12.
    if (bit != 0x20) {
      EXPECT_EQ(with_flags(0, flags_of_codes(bit)), bit);
    }
  }
}

TEST(LogonName, IsOneOfTheDomainOnEveryRoad) {
  const struct {
    const char* domain;
    const char* user;
    const char* windows;
    const char* bind;
    const char* kerberos;
  } cases[] = {{"OLDNT", "jo", "OLDNT\\jo", "OLDNT\\jo", ""},
               {"hq.test", "jo", "hq.test\\jo", "jo@hq.test", "jo@HQ.TEST"},
               {"hq.test", "OTHER\\jo", "OTHER\\jo", "OTHER\\jo", ""},
               {"hq.test", "polar\\jo", "polar\\jo", "polar\\jo", "jo@HQ.TEST"},
               {"hq.test", "hq.test\\jo", "hq.test\\jo", "jo@hq.test", "jo@HQ.TEST"},
               {"hq.test", "jo@north.test", "jo@north.test", "jo@north.test", "jo@NORTH.TEST"},
               {"hq.test", "CN=jo,DC=hq", "hq.test\\CN=jo,DC=hq", "CN=jo,DC=hq", ""}};
  for (const auto& one : cases) {
    LiveSettings settings;
    settings.domain = one.domain;
    settings.user = one.user;
    EXPECT_EQ(windows_logon(settings).text(), one.windows);
    EXPECT_EQ(bind_name(settings), one.bind);
    EXPECT_EQ(kerberos_name(settings, "POLAR"), one.kerberos);
  }
}

TEST(RangedValues, AreJoinedUntilTheServerSaysThatNoneFollow) {
  const struct {
    std::vector<LdapAttribute> answer;
    std::size_t values;
    std::optional<std::string> next;
  } cases[] = {
      {{{"member;range=0-1", {"a", "b"}}}, 2, "member;range=2-*"},
      {{{"member", {}}, {"member;range=0-1", {"a", "b"}}}, 2, "member;range=2-*"},
      {{{"member;range=0-1", {"a", "b"}}, {"member", {}}}, 2, "member;range=2-*"},
      {{{"MEMBER;Range=0-*", {"a"}}}, 1, std::nullopt},
      {{{"member", {"a"}}, {"memberOf", {"x"}}}, 1, std::nullopt},
      {{{"member;range=0-1", {}}}, 0, std::nullopt},
      {{}, 0, std::nullopt},
  };
  for (const auto& one : cases) {
    LdapEntry answer;
    answer.attributes = one.answer;
    std::vector<std::string> all;
    EXPECT_EQ(join_range(answer, "member", all), one.next);
    EXPECT_EQ(all.size(), one.values);
  }
}

TEST(SubschemaTest, DescriptionsTellNamesSyntaxAndWhetherSeveralValuesFit) {
  const Subschema schema(std::vector<std::string>{
      "( 2.5.4.41 NAME 'name' EQUALITY caseIgnoreMatch SYNTAX 1.3.6.1.4.1.1466.115.121.1.15{32768} )",
      "( 2.5.4.4 NAME ( 'sn' 'surname' ) DESC 'RFC 2256 (\\27last\\27)' SUP name )",
      "( 1.2.3 NAME 'count' SYNTAX 1.3.6.1.4.1.1466.115.121.1.27 SINGLE-VALUE )",
      "( 1.2.4 NAME 'loop' SUP loop )", "( 1.2.5 NAME", "(", ""});
  ASSERT_NE(schema.find("SURNAME"), nullptr);
  EXPECT_EQ(schema.find("surname"), schema.find("sn"));
  EXPECT_EQ(schema.find("sn")->syntax, ads::Syntax::kString);
  EXPECT_TRUE(schema.find("sn")->multi_valued);
  ASSERT_NE(schema.find("Count"), nullptr);
  EXPECT_EQ(schema.find("count")->syntax, ads::Syntax::kInteger);
  EXPECT_FALSE(schema.find("count")->multi_valued);
  EXPECT_NE(schema.find("loop"), nullptr);
  EXPECT_EQ(schema.find("1.2.5"), nullptr);
}

}  // namespace
}  // namespace twk::live
