#include "platform/object_access.hpp"

#include <gmock/gmock.h>

#include "platform/little_endian.hpp"
#include "support/access_list.hpp"

namespace twk::platform {
namespace {

const Sid kHelper(5, {21, 1, 2, 3, 1001});
const Sid kDesk(5, {21, 1, 2, 3, 1100});
const Sid kPupil(5, {21, 1, 2, 3, 1200});
constexpr Guid kUser = guid("bf967aba-0de6-11d0-a285-00aa003049e2");
constexpr Guid kReset = guid("00299570-246d-11d0-a768-00AA006E0529");
constexpr std::uint8_t kAllowAbout = 5;
constexpr std::uint8_t kDenyAbout = 6;

/// An entry that is about something; without `about`, one of the same form about everything.
Ace about(std::uint8_t type, std::uint32_t mask, const std::optional<Guid>& what, const Sid& sid,
          std::uint8_t flags = 0) {
  base::Bytes bytes{type, flags};
  append_u16(bytes, static_cast<std::uint16_t>(12 + (what ? what->size() : 0) + sid.size()));
  append_u32(bytes, mask);
  append_u32(bytes, what ? 1 : 0);
  if (what)
    bytes.insert(bytes.end(), what->begin(), what->end());
  bytes.insert(bytes.end(), sid.bytes().begin(), sid.bytes().end());
  return Ace::decode(bytes);
}

TEST(ObjectAccess, AnIdentifierIsPackedAsInAccessLists) {
  EXPECT_THAT(kReset, testing::ElementsAre(0x70, 0x95, 0x29, 0x00, 0x6d, 0x24, 0xd0, 0x11, 0xa7, 0x68, 0x00,
                                           0xaa, 0x00, 0x6e, 0x05, 0x29));
  EXPECT_EQ(object_type(about(kAllowAbout, 1, kReset, kDesk)), kReset);
  EXPECT_EQ(object_type(about(kDenyAbout, 1, std::nullopt, kDesk)), std::nullopt);
  EXPECT_EQ(object_type({ace_type::kAllow, 0, 1, kDesk}), std::nullopt);
}

TEST(ObjectAccess, TheFirstEntryAboutTheRightCounts) {
  using namespace directory_access;
  const Sid helper[] = {kHelper, kDesk, well_known::everyone()};
  const ObjectRight reset{.mask = kControlAccess, .about = kReset, .self = kPupil};
  const ObjectRight child{.mask = kDeleteChild, .about = kUser, .self = {}};
  const ObjectRight list{.mask = access::kWriteDac, .about = {}, .self = {}};
  const Ace all{ace_type::kAllow, 0, access::kGenericAll, kDesk};
  const struct {
    const char* what;
    std::vector<Ace> entries;
    ObjectRight right;
    bool granted;
    std::optional<Sid> owner = std::nullopt;
  } cases[] = {
      {"an empty list", {}, reset, false},
      {"all that is generic", {all}, child, true},
      {"this right", {about(kAllowAbout, kControlAccess, kReset, kDesk)}, reset, true},
      {"every extended right", {about(kAllowAbout, kControlAccess, std::nullopt, kHelper)}, reset, true},
      {"another extended right", {about(kAllowAbout, kControlAccess, kUser, kDesk)}, reset, false},
      {"another bit", {about(kAllowAbout, kWriteProperty, kReset, kDesk)}, reset, false},
      {"somebody else", {about(kAllowAbout, kDeleteChild, kUser, kPupil)}, child, false},
      {"for what is below",
       {about(kAllowAbout, kDeleteChild, kUser, kDesk, ace_flag::kInheritOnly)},
       child,
       false},
      {"denied before", {about(kDenyAbout, kDeleteChild, kUser, kHelper), all}, child, false},
      {"denied after", {all, about(kDenyAbout, kDeleteChild, kUser, kHelper)}, child, true},
      {"another class denied", {about(kDenyAbout, kDeleteChild, kReset, kHelper), all}, child, true},
      {"all denied", {{ace_type::kDeny, 0, kDeleteChild, well_known::everyone()}, all}, child, false},
      {"somebody's self",
       {about(kAllowAbout, kControlAccess, kReset, well_known::principal_self())},
       reset,
       false},
      {"own self",
       {about(kAllowAbout, kControlAccess, kReset, well_known::principal_self())},
       {.mask = kControlAccess, .about = kReset, .self = kHelper},
       true},
      {"the owner's", {{ace_type::kAllow, 0, kDeleteChild, well_known::owner_rights()}}, child, true, kDesk},
      {"another owner's",
       {{ace_type::kAllow, 0, kDeleteChild, well_known::owner_rights()}},
       child,
       false,
       kPupil},
      {"the owner's list", {}, list, true, kDesk},
      {"the list of an owner whose rights are told",
       {{ace_type::kAllow, 0, kDeleteChild, well_known::owner_rights()}},
       list,
       false,
       kDesk},
      {"allowed on a condition", {about(11, kDeleteChild, kUser, kDesk)}, child, true},
      {"denied on a condition", {about(12, kDeleteChild, kUser, kDesk), all}, child, true},
      {"an audit", {about(7, kDeleteChild, kUser, kDesk)}, child, false},
  };
  for (const auto& one : cases)
    EXPECT_EQ(grants(test::with_list(one.entries, one.owner), helper, one.right), one.granted) << one.what;
  EXPECT_TRUE(grants({}, helper, child)) << "without a list";
}

}  // namespace
}  // namespace twk::platform
