#include "platform/access_check.hpp"

#include <gmock/gmock.h>

#include "support/access_list.hpp"

namespace twk::platform {
namespace {

using namespace ace_flag;
using test::with_list;

const Sid kJo(5, {21, 1, 2, 3, 1001});
const Sid kStaff(5, {21, 1, 2, 3, 1100});
const Sid kOther(5, {21, 1, 2, 3, 1002});

constexpr std::uint32_t kRead = access::kFileReadData;
constexpr std::uint32_t kWrite = access::kFileWriteData;
constexpr std::uint32_t kOwners = access::kReadControl | access::kWriteDac;

Ace allow(std::uint32_t mask, const Sid& sid, std::uint8_t flags = 0) {
  return {ace_type::kAllow, flags, mask, sid};
}
Ace deny(std::uint32_t mask, const Sid& sid, std::uint8_t flags = 0) {
  return {ace_type::kDeny, flags, mask, sid};
}

TEST(AccessCheck, GenericBitsAreTheRightsOfFiles) {
  const std::pair<std::uint32_t, std::uint32_t> cases[] = {
      {0, 0},
      {kRead, kRead},
      {access::kGenericRead, 0x120089},
      {access::kGenericWrite, 0x120116},
      {access::kGenericExecute, 0x1200A0},
      {access::kGenericAll, 0x1F01FF},
      {access::kGenericRead | access::kGenericExecute | access::kDelete, 0x1300A9}};
  for (const auto& [mask, rights] : cases)
    EXPECT_EQ(map_generic_file_bits(mask), rights);
}

TEST(AccessCheck, TheFirstEntryThatSpeaksOfARightCounts) {
  const Sid jo[] = {kJo, kStaff, well_known::everyone()};
  const struct {
    const char* what;
    std::vector<Ace> entries;
    std::uint32_t granted;
    std::optional<Sid> owner = std::nullopt;
  } cases[] = {
      {"an empty list", {}, 0},
      {"allowed", {allow(kRead, kJo)}, kRead},
      {"by a group", {allow(kRead, kStaff), allow(kWrite, well_known::everyone())}, kRead | kWrite},
      {"somebody else", {allow(kRead, kOther)}, 0},
      {"deny first", {deny(kRead, kStaff), allow(kRead | kWrite, kJo)}, kWrite},
      {"allow first", {allow(kRead | kWrite, kJo), deny(kRead, kStaff)}, kRead | kWrite},
      {"allow between", {deny(kRead, kJo), allow(kRead, kJo), allow(kWrite, kJo), deny(kWrite, kJo)}, kWrite},
      {"deny of a generic right",
       {deny(access::kGenericRead, kJo), allow(access::kGenericAll, kJo)},
       access::kFileAll & ~access::kFileGenericRead},
      {"inherit only", {allow(kRead, kJo, kInheritOnly | kObjectInherit), allow(kWrite, kJo)}, kWrite},
      {"inherit-only deny", {deny(kRead, kJo, kInheritOnly), allow(kRead, kJo)}, kRead},
      {"inherited", {allow(kRead, kJo, kInherited | kObjectInherit)}, kRead},
      {"creator owner stands for nobody", {allow(kRead, well_known::creator_owner())}, kOwners, kJo},
      {"audit entry", {Ace(2, 0, kRead, kJo)}, 0},
      {"the owner", {allow(kRead, kOther)}, kOwners, kJo},
      {"another owner", {allow(kRead, kOther)}, 0, kOther},
      {"an owner by group", {}, kOwners, kStaff},
      {"an owner who is denied", {deny(access::kFileAll, kJo)}, kOwners, kJo},
      {"owner rights in place of the owner's", {allow(kRead, well_known::owner_rights())}, kRead, kJo},
      {"owner rights denied",
       {deny(kOwners, well_known::owner_rights()), allow(access::kFileAll, kJo)},
       access::kFileAll & ~kOwners,
       kJo},
      {"owner rights of another", {allow(kRead, well_known::owner_rights())}, 0, kOther},
      {"inherit-only owner rights", {allow(kRead, well_known::owner_rights(), kInheritOnly)}, kOwners, kJo}};
  for (const auto& [what, entries, granted, owner] : cases)
    EXPECT_EQ(granted_access(with_list(entries, owner), jo), granted) << what;
}

TEST(AccessCheck, WithoutAListEveryoneMayDoEverything) {
  SecurityDescriptor descriptor;
  EXPECT_EQ(granted_access(descriptor, {}), access::kFileAll);
  descriptor.dacl_present = true;
  EXPECT_EQ(granted_access(descriptor, {}), access::kFileAll);
  EXPECT_EQ(granted_access(with_list({allow(kRead, kJo)}), {}), 0U);
}

TEST(Inheritance, FilesAndFoldersGetWhatTheFlagsSay) {
  const Sid owner = well_known::creator_owner();
  constexpr std::uint8_t kBoth = kObjectInherit | kContainerInherit;
  const std::uint32_t mask = access::kGenericRead;
  const std::uint32_t mapped = access::kFileGenericRead;
  const std::vector<Ace> for_files = {allow(mapped, kJo, kInherited)};
  const struct {
    std::uint8_t flags;
    std::vector<Ace> file;
    std::vector<Ace> folder;
    std::vector<Ace> folder_of_creator;
  } cases[] = {
      {0, {}, {}, {}},
      {kInheritOnly, {}, {}, {}},
      {kNoPropagate, {}, {}, {}},
      {kObjectInherit,
       for_files,
       {allow(mask, kJo, kObjectInherit | kInheritOnly | kInherited)},
       {allow(mask, owner, kObjectInherit | kInheritOnly | kInherited)}},
      {kContainerInherit,
       {},
       {allow(mapped, kJo, kContainerInherit | kInherited)},
       {allow(mapped, kOther, kInherited),
        allow(mask, owner, kContainerInherit | kInheritOnly | kInherited)}},
      {kBoth,
       for_files,
       {allow(mapped, kJo, kBoth | kInherited)},
       {allow(mapped, kOther, kInherited), allow(mask, owner, kBoth | kInheritOnly | kInherited)}},
      {kBoth | kInheritOnly,
       for_files,
       {allow(mapped, kJo, kBoth | kInherited)},
       {allow(mapped, kOther, kInherited), allow(mask, owner, kBoth | kInheritOnly | kInherited)}},
      {kBoth | kNoPropagate, for_files, for_files, {allow(mapped, kOther, kInherited)}},
      {kObjectInherit | kNoPropagate, for_files, {}, {}},
      {kContainerInherit | kNoPropagate | kInherited, {}, for_files, {allow(mapped, kOther, kInherited)}}};
  for (const auto& [flags, file, folder, folder_of_creator] : cases) {
    const auto inherited = [&](const Sid& sid, bool is_folder) {
      return inherited_list(with_list({allow(mask, sid, flags)}), is_folder, kOther).value().entries();
    };
    EXPECT_EQ(inherited(kJo, false), file) << static_cast<int>(flags);
    EXPECT_EQ(inherited(kJo, true), folder) << static_cast<int>(flags);
    const std::vector<Ace> file_of_creator(file.size(), allow(mapped, kOther, kInherited));
    EXPECT_EQ(inherited(owner, false), file_of_creator) << static_cast<int>(flags);
    EXPECT_EQ(inherited(owner, true), folder_of_creator) << static_cast<int>(flags);
  }
}

TEST(Inheritance, EntriesKeepTheirOrderAndTheListHasNoRoomToSpare) {
  const auto list =
      inherited_list(with_list({deny(kRead, kJo, kObjectInherit), allow(kWrite, kOther),
                                allow(kRead, kStaff, kObjectInherit), Ace(2, kObjectInherit, kRead, kJo)}),
                     false, kJo);
  ASSERT_TRUE(list);
  EXPECT_THAT(list->entries(),
              testing::ElementsAre(deny(kRead, kJo, kInherited), allow(kRead, kStaff, kInherited)));
  EXPECT_EQ(list->size(), list->used());
}

TEST(Inheritance, WithoutAListNothingIsInheritedAndAnEmptyOneStaysEmpty) {
  SecurityDescriptor folder;
  EXPECT_EQ(inherited_list(folder, true, kJo), std::nullopt);
  folder.dacl_present = true;
  EXPECT_EQ(inherited_list(folder, true, kJo), std::nullopt);
  EXPECT_EQ(inherited_list(with_list({}), true, kJo), Acl(8));
}

TEST(Inheritance, AListThatGoesThroughTwoFoldersIsTheSameInBoth) {
  const SecurityDescriptor top =
      with_list({allow(access::kGenericAll, well_known::administrators(), kObjectInherit | kContainerInherit),
                 allow(access::kGenericAll, well_known::creator_owner(),
                       kObjectInherit | kContainerInherit | kInheritOnly)});
  const SecurityDescriptor child = with_list(inherited_list(top, true, kJo).value().entries());
  const SecurityDescriptor last = with_list(inherited_list(child, true, kOther).value().entries());
  const Sid jo[] = {kJo};
  const Sid other[] = {kOther};
  EXPECT_EQ(granted_access(child, jo), access::kFileAll);
  EXPECT_EQ(granted_access(last, jo), 0U);
  EXPECT_EQ(granted_access(last, other), access::kFileAll);
  EXPECT_EQ(last.dacl->entries().size(), child.dacl->entries().size());
}

}  // namespace
}  // namespace twk::platform
