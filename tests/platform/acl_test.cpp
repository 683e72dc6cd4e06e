#include "platform/acl.hpp"

#include <gmock/gmock.h>

#include "support/number_of.hpp"

namespace twk::platform {
namespace {

using base::Bytes;
using test::number_of;
using testing::ElementsAre;

/// Two entries of 20 and 24 bytes, and 4 bytes of room.
const Bytes kList = {2, 0, 56, 0, 2, 0, 0,  0, /**/ 0, 3,      20,   0,  0x89, 0, 0x12, 0, 1, 1, 0,
                     0, 0, 0,  0, 1, 0, 0,  0, 0,      /**/ 1, 0,    24, 0,    1, 0,    0, 0, 1, 2,
                     0, 0, 0,  0, 0, 5, 32, 0, 0,      0,      0x21, 2,  0,    0, 0,    0, 0, 0};

TEST(Acl, AListIsReadAndWrittenByteByByte) {
  const Acl list = Acl::decode(kList);
  EXPECT_EQ(list.size(), 56U);
  EXPECT_EQ(list.used(), 52U);
  EXPECT_THAT(list.entries(),
              ElementsAre(Ace(ace_type::kAllow, ace_flag::kObjectInherit | ace_flag::kContainerInherit,
                              access::kFileGenericRead, well_known::everyone()),
                          Ace(ace_type::kDeny, 0, access::kFileReadData, well_known::users())));
  EXPECT_EQ(list.encode(), kList);
  EXPECT_EQ(list.trimmed().encode().size(), 52U);
  EXPECT_EQ(list.trimmed().entries(), list.entries());
}

TEST(Acl, NoBeginningOfAListIsReadBeyondItsEnd) {
  for (std::size_t size = 0; size < kList.size(); ++size) {
    const Bytes part(kList.begin(), kList.begin() + static_cast<std::ptrdiff_t>(size));
    EXPECT_EQ(number_of([&] { Acl::decode(part); }), security_error::kInvalidAcl) << size;
  }
  Bytes longer = kList;
  longer.insert(longer.end(), 8, 0xFF);
  EXPECT_EQ(Acl::decode(longer), Acl::decode(kList));
}

TEST(Acl, ASizeOrCountThatDoesNotFitIsRefused) {
  const struct {
    std::size_t at;
    std::uint8_t byte;
    const char* what;
  } cases[] = {
      {0, 0, "revision"},       {0, 3, "revision"},         {0, 5, "revision"},    {2, 7, "list size"},
      {2, 57, "list size"},     {3, 1, "list size"},        {2, 51, "last entry"}, {4, 3, "count"},
      {5, 0xFF, "count"},       {10, 3, "entry size"},      {10, 0, "entry size"}, {10, 49, "entry size"},
      {11, 0xFF, "entry size"}, {30, 29, "last entry size"}};
  for (const auto& [at, byte, what] : cases) {
    Bytes bytes = kList;
    bytes[at] = byte;
    EXPECT_EQ(number_of([&] { Acl::decode(bytes); }), security_error::kInvalidAcl)
        << what << " " << at << " " << static_cast<int>(byte);
  }
}

TEST(Acl, AListHasTheSizeAndRevisionThatItIsMadeWith) {
  EXPECT_EQ(Acl(8).encode(), Bytes({2, 0, 8, 0, 0, 0, 0, 0}));
  EXPECT_EQ(Acl(12, 4).encode(), Bytes({4, 0, 12, 0, 0, 0, 0, 0, 0, 0, 0, 0}));
  EXPECT_EQ(Acl(65535).encode().size(), 65535U);
  for (const std::size_t size : {std::size_t{0}, std::size_t{7}, std::size_t{65536}})
    EXPECT_EQ(number_of([&] { Acl list(size); }), security_error::kInvalidAcl) << size;
  EXPECT_EQ(number_of([] { Acl list(8, 1); }), security_error::kInvalidAcl);
}

TEST(Acl, AnEntryIsPutBeforeTheOneAtItsPlaceAndOnlyIfThereIsRoom) {
  const auto entry = [](std::uint32_t mask) { return Ace(0, 0, mask, well_known::everyone()); };
  Acl list(8 + 3 * 20);
  list.add(Acl::kAtEnd, entry(1));
  list.add(0, entry(2));
  list.add(7, entry(3));
  EXPECT_THAT(list.entries(), ElementsAre(entry(2), entry(1), entry(3)));
  EXPECT_EQ(number_of([&] { list.add(0, entry(4)); }), security_error::kAllottedSpaceExceeded);
  EXPECT_EQ(list.entries().size(), 3U);
  EXPECT_EQ(Acl::decode(list.encode()), list);
  Acl narrow(8 + 19);
  EXPECT_EQ(number_of([&] { narrow.add(0, entry(1)); }), security_error::kAllottedSpaceExceeded);
}

/// An entry of the type: mask 0x0201, what precedes the account, the account "Everyone", a tail.
Ace entry_of(std::uint8_t type, const Bytes& before, const Bytes& tail = {}) {
  Bytes bytes = {type, 0, 0, 0, 1, 2, 0, 0};
  bytes.insert(bytes.end(), before.begin(), before.end());
  const Sid sid = well_known::everyone();
  bytes.insert(bytes.end(), sid.bytes().begin(), sid.bytes().end());
  bytes.insert(bytes.end(), tail.begin(), tail.end());
  bytes[2] = static_cast<std::uint8_t>(bytes.size());
  return Ace::decode(bytes);
}

TEST(Ace, TheAccountFollowsTheTypesOwnFields) {
  const Bytes guid(16, 0xAA);
  const auto objects = [&](std::uint8_t flags) {
    Bytes bytes = {flags, 0, 0, 0};
    for (const unsigned bit : {1U, 2U}) {
      if ((flags & bit) != 0)
        bytes.insert(bytes.end(), guid.begin(), guid.end());
    }
    return bytes;
  };
  constexpr std::uint8_t kPlain[] = {0, 1, 2, 3, 9, 10, 13, 14, 17};
  for (const std::uint8_t type : kPlain) {
    EXPECT_EQ(entry_of(type, {}).sid(), well_known::everyone()) << static_cast<int>(type);
    EXPECT_EQ(entry_of(type, {}).mask(), 0x201U);
  }
  constexpr std::uint8_t kOfObjects[] = {5, 6, 7, 8, 11, 12, 15, 16};
  for (const std::uint8_t type : kOfObjects) {
    for (std::uint8_t flags = 0; flags < 4; ++flags)
      EXPECT_EQ(entry_of(type, objects(flags)).sid(), well_known::everyone()) << static_cast<int>(type);
  }
  EXPECT_EQ(entry_of(4, {}).sid(), std::nullopt);
  EXPECT_EQ(entry_of(9, {}, {'a', 'r', 't', 'x'}).sid(), well_known::everyone());
}

TEST(Ace, AnEntryThatIsTooShortHasNoAccount) {
  EXPECT_EQ(Ace::decode(Bytes{0, 0, 4, 0}).mask(), 0U);
  EXPECT_EQ(Ace::decode(Bytes{0, 0, 4, 0}).sid(), std::nullopt);
  EXPECT_EQ(Ace::decode(Bytes{0, 0, 8, 0, 1, 0, 0, 0}).sid(), std::nullopt);
  EXPECT_EQ(Ace::decode(Bytes{5, 0, 8, 0, 1, 0, 0, 0}).sid(), std::nullopt);
  EXPECT_EQ(Ace::decode(Bytes{5, 0, 12, 0, 1, 0, 0, 0, 3, 0, 0, 0}).sid(), std::nullopt);
  EXPECT_EQ(Ace::decode(Bytes{0, 0, 16, 0, 1, 0, 0, 0, 1, 1, 0, 0, 0, 0, 0, 1}).sid(), std::nullopt);
  EXPECT_EQ(Ace::decode(Bytes{0, 0, 7, 0, 1, 2, 3}).mask(), 0U);
}

TEST(Ace, BytesThatDoNotHoldTheEntryAreRefused) {
  for (const Bytes& bytes : {Bytes{}, Bytes{0, 0, 4}, Bytes{0, 0, 3, 0}, Bytes{0, 0, 0, 0, 0, 0},
                             Bytes{0, 0, 8, 0, 1, 0, 0}, Bytes{0, 0, 4, 1}})
    EXPECT_EQ(number_of([&] { Ace::decode(bytes); }), security_error::kInvalidAcl);
}

}  // namespace
}  // namespace twk::platform
