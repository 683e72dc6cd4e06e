#include "platform/security_descriptor.hpp"

#include <gmock/gmock.h>

#include "base/text.hpp"
#include "support/number_of.hpp"

namespace twk::platform {
namespace {

using base::Bytes;
using test::number_of;
using testing::ElementsAre;

/// The example of [MS-DTYP] 2.5.1.4: "O:BAG:BAD:P(A;CIOI;GRGX;;;BU)(A;CIOI;GA;;;BA)(A;CIOI;GA;;;SY)
/// (A;CIOI;GA;;;CO)S:P(AU;FA;GR;;;WD)".
constexpr std::string_view kExample =
    "010014b090000000a000000014000000"
    "3000000002001c000100000002801400"
    "00000080010100000000000100000000"
    "020060000400000000031800000000a0"
    "01020000000000052000000021020000"
    "00031800000000100102000000000005"
    "20000000200200000003140000000010"
    "01010000000000051200000000031400"
    "00000010010100000000000300000000"
    "01020000000000052000000020020000"
    "01020000000000052000000020020000";

Bytes from_hex(std::string_view text) {
  Bytes bytes;
  unsigned digits = 0;
  for (const char c : text) {
    const auto digit = base::hex_digit(c);
    if (!digit)
      continue;
    if (digits++ % 2 == 0)
      bytes.push_back(static_cast<std::uint8_t>(*digit << 4U));
    else
      bytes.back() = static_cast<std::uint8_t>(bytes.back() | *digit);
  }
  return bytes;
}

TEST(SecurityDescriptor, ThePublishedExampleIsReadAndWrittenByteByByte) {
  const Bytes example = from_hex(kExample);
  ASSERT_EQ(example.size(), 0xB0U);
  const SecurityDescriptor descriptor = SecurityDescriptor::decode(example);
  EXPECT_EQ(descriptor.owner, well_known::administrators());
  EXPECT_EQ(descriptor.group, well_known::administrators());
  EXPECT_EQ(descriptor.control, 0x3000);
  EXPECT_TRUE(descriptor.dacl_present);
  const std::uint8_t inherit = ace_flag::kObjectInherit | ace_flag::kContainerInherit;
  ASSERT_TRUE(descriptor.dacl);
  EXPECT_THAT(
      descriptor.dacl->entries(),
      ElementsAre(Ace(0, inherit, access::kGenericRead | access::kGenericExecute, well_known::users()),
                  Ace(0, inherit, access::kGenericAll, well_known::administrators()),
                  Ace(0, inherit, access::kGenericAll, well_known::local_system()),
                  Ace(0, inherit, access::kGenericAll, well_known::creator_owner())));
  ASSERT_TRUE(descriptor.sacl_present && descriptor.sacl);
  EXPECT_THAT(descriptor.sacl->entries(),
              ElementsAre(Ace(2, 0x80, access::kGenericRead, well_known::everyone())));
  EXPECT_EQ(descriptor.encode(), example);
}

TEST(SecurityDescriptor, AMissingPartIsDistinguishedFromAnEmptyOne) {
  SecurityDescriptor none;
  EXPECT_EQ(none.encode(), Bytes({1, 0, 0, 0x80, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0}));
  SecurityDescriptor null_list;
  null_list.dacl_present = true;
  EXPECT_EQ(null_list.encode(), Bytes({1, 0, 4, 0x80, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0}));
  SecurityDescriptor empty_list;
  empty_list.set_dacl(Acl(8));
  EXPECT_EQ(empty_list.encode(),
            Bytes({1, 0, 4, 0x80, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 20, 0, 0, 0, 2, 0, 8, 0, 0, 0, 0, 0}));
  for (const SecurityDescriptor& each : {none, null_list, empty_list})
    EXPECT_EQ(SecurityDescriptor::decode(each.encode()), each);
}

TEST(SecurityDescriptor, PartsAreReadInAnyOrderAndMayOverlap) {
  Bytes bytes = {1, 0, 0, 0x80, 32, 0, 0, 0, 20, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0};
  for (const Sid& sid : {well_known::everyone(), well_known::creator_owner()})
    bytes.insert(bytes.end(), sid.bytes().begin(), sid.bytes().end());
  SecurityDescriptor descriptor = SecurityDescriptor::decode(bytes);
  EXPECT_EQ(descriptor.owner, well_known::creator_owner());
  EXPECT_EQ(descriptor.group, well_known::everyone());
  bytes[4] = 20;
  descriptor = SecurityDescriptor::decode(bytes);
  EXPECT_EQ(descriptor.owner, well_known::everyone());
  EXPECT_EQ(descriptor.group, well_known::everyone());
  EXPECT_EQ(SecurityDescriptor::decode(descriptor.encode()), descriptor);
}

TEST(SecurityDescriptor, NoBeginningIsReadBeyondItsEnd) {
  const Bytes example = from_hex(kExample);
  for (std::size_t size = 0; size < example.size(); ++size) {
    const Bytes part(example.begin(), example.begin() + static_cast<std::ptrdiff_t>(size));
    const std::uint32_t failure = number_of([&] { SecurityDescriptor::decode(part); });
    EXPECT_TRUE(failure >= security_error::kInvalidAcl && failure <= security_error::kInvalidDescriptor)
        << size;
  }
}

TEST(SecurityDescriptor, APartOutsideOrOfAnotherFormIsRefusedByItsNumber) {
  using namespace security_error;
  const struct {
    std::size_t at;
    std::uint8_t byte;
    std::uint32_t number;
  } cases[] = {{0, 2, kInvalidDescriptor},     // another revision
               {3, 0x30, kInvalidDescriptor},  // not self-relative
               {4, 19, kInvalidDescriptor},    // the owner within the header
               {4, 0xB1, kInvalidDescriptor},  // after the end
               {7, 0x80, kInvalidDescriptor},  {11, 0xFF, kInvalidDescriptor}, {15, 0xFF, kInvalidDescriptor},
               {19, 0xFF, kInvalidDescriptor}, {4, 0xB0, kInvalidSid},  // at the end
               {8, 0xA4, kInvalidSid},         {0x91, 16, kInvalidSid},        {12, 0xB0, kInvalidAcl},
               {16, 0xAC, kInvalidAcl},        {0x32, 0x5C, kInvalidAcl},      {0x34, 9, kInvalidAcl}};
  for (const auto& [at, byte, number] : cases) {
    Bytes bytes = from_hex(kExample);
    bytes[at] = byte;
    EXPECT_EQ(number_of([&] { SecurityDescriptor::decode(bytes); }), number)
        << at << " " << static_cast<int>(byte);
  }
}

TEST(SecurityDescriptor, AListThatTheControlBitsDoNotMentionDoesNotCount) {
  Bytes bytes = from_hex(kExample);
  bytes[2] = 0;
  const SecurityDescriptor descriptor = SecurityDescriptor::decode(bytes);
  EXPECT_FALSE(descriptor.dacl_present || descriptor.dacl || descriptor.sacl_present || descriptor.sacl);
}

}  // namespace
}  // namespace twk::platform
