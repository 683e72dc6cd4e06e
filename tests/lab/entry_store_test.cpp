#include "lab/store/entry_store.hpp"

#include <filesystem>
#include <fstream>

#include "base/text.hpp"
#include "platform/directory.hpp"
#include "support/number_of.hpp"
#include "support/other_process.hpp"
#include "support/temporary_directory.hpp"

namespace twk::lab {
namespace {

namespace fs = std::filesystem;
namespace ads_error = platform::ads_error;
using test::complaint_of;
using test::get_file;
using test::number_of;
using test::OtherProcess;
using test::put_file;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr const char* kWorld =
    "dn: DC=twk,DC=test\nobjectClass: domainDNS\n\n"
    "dn: CN=Staff,DC=twk,DC=test\nobjectClass: group\nsAMAccountName: Staff\n"
    "member: CN=Ann,OU=West,DC=twk,DC=test\nmember: CN=Foreign,DC=else,DC=where\n\n"
    "dn: OU=West,DC=twk,DC=test\nobjectClass: organizationalUnit\nou: West\n\n"
    "dn: CN=Ann,OU=West,DC=twk,DC=test\nobjectClass: top\nobjectClass: user\ncn: Ann\nname: Ann\n"
    "sAMAccountName: ann\nuserPrincipalName: ann@twk.test\nobjectSid:: AQID\nprimaryGroupID: 513\n\n";

class EntryStoreTest : public testing::Test {
 protected:
  EntryStoreTest() { put_file(folder_ / "domain.ldif", kWorld); }

  std::unique_ptr<EntryStore> open() {
    return open_entry_store(folder_.path(), "domain",
                            [this](const std::string& text) { warnings_.push_back(text); });
  }
  static void add_user(EntryStore& store, const std::string& name, const std::string& parent) {
    store.add("CN=" + name + "," + parent, {{"objectClass", {"user"}}, {"sAMAccountName", {name}}}, nullptr);
  }
  static std::string exported(const EntryStore& store) {
    std::string text;
    store.export_to([&](std::string_view piece) { text += piece; });
    return text;
  }
  static std::vector<std::string> child_names(const EntryStore& store, std::string_view dn) {
    std::vector<std::string> names;
    store.children(*store.find(dn), [&](const Entry& entry) {
      names.push_back(entry.dn().substr(0, entry.dn().find(',')));
      return true;
    });
    return names;
  }
  [[nodiscard]] std::string journal() const { return folder_ / "domain.journal.ldif"; }

  test::TemporaryDirectory folder_;
  std::vector<std::string> warnings_;
  const std::string domain_ = "DC=twk,DC=test";
  const std::string west_ = "OU=West,DC=twk,DC=test";
  const std::string ann_ = "CN=Ann,OU=West,DC=twk,DC=test";
  const std::string staff_ = "CN=Staff,DC=twk,DC=test";
};

TEST_F(EntryStoreTest, EntriesAreFoundByEveryKeyInAnySpelling) {
  const auto store = open();
  const Entry* const ann = store->find("cn=ANN , ou=west,dc=TWK,dc=test");
  ASSERT_NE(ann, nullptr);
  EXPECT_EQ(store->find_account("ANN"), ann);
  EXPECT_EQ(store->find_principal("Ann@TWK.test"), ann);
  EXPECT_EQ(store->find_sid("\1\2\3"), ann);
  EXPECT_THAT(store->with_primary_group("513"), ElementsAre(ann));
  EXPECT_EQ(store->find("CN=Bob," + west_), nullptr);
  EXPECT_EQ(number_of([&] { (void)store->find("no name"); }), ads_error::kInvalidDn);
  EXPECT_EQ(store->size(), 4U);
}

TEST_F(EntryStoreTest, AttributesAreReadWithoutRegardToCase) {
  const auto store = open();
  const Entry& ann = *store->find(ann_);
  EXPECT_THAT(ann.values("OBJECTCLASS"), ElementsAre("top", "user"));
  EXPECT_EQ(ann.value("cn"), "Ann");
  EXPECT_EQ(ann.value("DistinguishedName"), ann_);
  EXPECT_FALSE(ann.has("mail"));
  EXPECT_THAT(ann.attribute_names(),
              ElementsAre("objectClass", "cn", "name", "sAMAccountName", "userPrincipalName", "objectSid",
                          "primaryGroupID", "memberOf", "distinguishedName"));
}

TEST_F(EntryStoreTest, ChangesAreThereAfterOpeningAgain) {
  const auto store = open();
  add_user(*store, "bob", west_);
  store->modify(staff_, {{ModifyKind::kAdd, "member", {"CN=bob," + west_}}}, nullptr);
  store->modify(ann_, {{ModifyKind::kReplace, "description", {"caf\xC3\xA9"}}}, nullptr);
  store->rename(west_, "OU=East", "", nullptr);
  add_user(*store, "gone", domain_);
  store->remove("CN=gone," + domain_, nullptr);
  const auto again = open();
  EXPECT_EQ(exported(*again), exported(*store));
  EXPECT_EQ(again->find_account("bob")->dn(), "CN=bob,OU=East," + domain_);
  EXPECT_EQ(again->find_account("gone"), nullptr);
  EXPECT_THAT(warnings_, IsEmpty());
}

TEST_F(EntryStoreTest, WhatBreaksTheStructureIsRefusedWithItsNumber) {
  const auto store = open();
  const std::string before = exported(*store);
  const auto modify = [&](const std::string& dn, ModifyKind kind, const std::string& name,
                          const std::string& value) {
    return number_of([&] { store->modify(dn, {{kind, name, {value}}}, nullptr); });
  };
  const auto add = [&](const std::string& dn, const std::vector<LdifAttribute>& attributes = {}) {
    return number_of([&] { store->add(dn, attributes, nullptr); });
  };
  EXPECT_EQ(add("CN=x,OU=None," + domain_), ads_error::kNoSuchObject);
  EXPECT_EQ(add("cn=ANN, ou=west," + domain_), ads_error::kObjectExists);
  EXPECT_EQ(add("Ann"), ads_error::kInvalidDn);
  EXPECT_EQ(add("CN=x," + west_, {{"a:b", {"c"}}}), ads_error::kNoSuchAttribute);
  EXPECT_EQ(add("CN=x," + west_, {{"member", {"CN=No," + west_}}}), ads_error::kNoSuchObject);
  EXPECT_EQ(number_of([&] { store->remove(west_, nullptr); }), ads_error::kNotOnNonLeaf);
  EXPECT_EQ(number_of([&] { store->remove("CN=No," + west_, nullptr); }), ads_error::kNoSuchObject);
  EXPECT_EQ(number_of([&] { store->rename(ann_, "CN=Staff", domain_, nullptr); }), ads_error::kObjectExists);
  EXPECT_EQ(number_of([&] { store->rename(ann_, "CN=a,CN=b", "", nullptr); }), ads_error::kInvalidDn);
  EXPECT_EQ(number_of([&] { store->rename(west_, "OU=West", ann_, nullptr); }), ads_error::kUnwilling);
  EXPECT_EQ(modify(staff_, ModifyKind::kAdd, "member", "cn=ann," + west_), ads_error::kObjectExists);
  EXPECT_EQ(modify(staff_, ModifyKind::kDelete, "member", west_), ads_error::kMemberNotInGroup);
  EXPECT_EQ(modify(ann_, ModifyKind::kAdd, "objectClass", "USER"), ads_error::kConstraint);
  EXPECT_EQ(modify(ann_, ModifyKind::kDelete, "objectClass", "group"), ads_error::kNoSuchAttribute);
  EXPECT_EQ(modify(ann_, ModifyKind::kReplace, "distinguishedName", "x"), ads_error::kUnwilling);
  EXPECT_EQ(exported(*store), before);
  EXPECT_EQ(exported(*open()), before);
}

TEST_F(EntryStoreTest, LaterModificationsSeeEarlierOnesAndAllOrNoneAreMade) {
  const auto store = open();
  store->modify(ann_, {{ModifyKind::kAdd, "mail", {"a", "b"}}, {ModifyKind::kDelete, "mail", {"A"}}},
                nullptr);
  EXPECT_THAT(store->find(ann_)->values("mail"), ElementsAre("b"));
  store->modify(staff_, {{ModifyKind::kDelete, "member", {}}, {ModifyKind::kAdd, "member", {ann_}}}, nullptr);
  EXPECT_THAT(store->find(staff_)->values("member"), ElementsAre(ann_));
  EXPECT_EQ(number_of([&] {
              store->modify(ann_, {{ModifyKind::kReplace, "mail", {"c"}}, {ModifyKind::kDelete, "fax", {}}},
                            nullptr);
            }),
            ads_error::kNoSuchAttribute);
  EXPECT_THAT(store->find(ann_)->values("mail"), ElementsAre("b"));
}

TEST_F(EntryStoreTest, AGuardThatRefusesLeavesAllAsItWas) {
  const auto store = open();
  const auto refuse = [] { throw base::RuntimeError(ads_error::kObjectExists, "in use"); };
  EXPECT_EQ(number_of([&] { store->add("CN=x," + west_, {}, refuse); }), ads_error::kObjectExists);
  EXPECT_EQ(store->size(), 4U);
  EXPECT_EQ(exported(*open()), exported(*store));
}

TEST_F(EntryStoreTest, IndexesFollowChanges) {
  const auto store = open();
  store->modify(
      ann_,
      {{ModifyKind::kReplace, "sAMAccountName", {"anna"}}, {ModifyKind::kReplace, "primaryGroupID", {"514"}}},
      nullptr);
  EXPECT_EQ(store->find_account("ann"), nullptr);
  EXPECT_EQ(store->find_account("anna"), store->find(ann_));
  EXPECT_THAT(store->with_primary_group("513"), IsEmpty());
  EXPECT_THAT(store->with_primary_group("514"), ElementsAre(store->find(ann_)));
  // Of a name the first eight bytes count, as a filter compares them.
  store->add("CN=Zoë," + west_, {{"objectClass", {"user"}}, {"cn", {"Zoë  Ray and others"}}}, nullptr);
  const Entry* const zoe = store->find("CN=Zoë," + west_);
  for (const char* const piece : {"z", "ZOË R", "zoë ray a"})
    EXPECT_THAT(store->with_name_beginning(piece), ElementsAre(zoe)) << piece;
  EXPECT_THAT(store->with_name_beginning("an"), ElementsAre(store->find(ann_)));
  store->rename(ann_, "CN=Bea", "", nullptr);
  const std::string bea = "CN=Bea," + west_;
  EXPECT_THAT(store->with_name_beginning("an"), IsEmpty());
  EXPECT_THAT(store->with_name_beginning("be"), ElementsAre(store->find(bea)));
  store->remove(bea, nullptr);
  EXPECT_THAT(store->with_name_beginning("b"), IsEmpty());
  EXPECT_EQ(store->find_account("anna"), nullptr);
  EXPECT_EQ(store->find_principal("ann@twk.test"), nullptr);
  EXPECT_THAT(store->with_primary_group("514"), IsEmpty());
}

TEST_F(EntryStoreTest, RenamingAnOuRenamesAllBelowAndTheirMemberships) {
  const auto store = open();
  store->add("OU=Inner," + west_, {}, nullptr);
  add_user(*store, "deep", "OU=Inner," + west_);
  store->modify("CN=deep,OU=Inner," + west_, {{ModifyKind::kAdd, "memberOf", {staff_}}}, nullptr);
  store->rename(west_, "OU=East\\, Far", "", nullptr);
  const std::string east = "OU=East\\, Far," + domain_;
  EXPECT_EQ(store->find(west_), nullptr);
  EXPECT_EQ(store->find_account("deep")->dn(), "CN=deep,OU=Inner," + east);
  EXPECT_EQ(store->find("cn=deep,ou=inner,ou=East\\2C far," + domain_), store->find_account("deep"));
  EXPECT_THAT(store->find(staff_)->values("member"),
              ElementsAre("CN=Ann," + east, "CN=Foreign,DC=else,DC=where", "CN=deep,OU=Inner," + east));
  EXPECT_THAT(store->find(east)->values("ou"), ElementsAre("East, Far"));
  store->rename(staff_, "CN=All", east, nullptr);
  EXPECT_THAT(store->find_account("ann")->values("memberOf"), ElementsAre("CN=All," + east));
  EXPECT_EQ(exported(*open()), exported(*store));
}

TEST_F(EntryStoreTest, RenamingUpdatesTheNamingAttributes) {
  const auto store = open();
  store->rename(ann_, "CN=Anna", domain_, nullptr);
  const Entry& anna = *store->find("CN=Anna," + domain_);
  EXPECT_THAT(anna.values("cn"), ElementsAre("Anna"));
  EXPECT_EQ(anna.value("name"), "Anna");
  EXPECT_THAT(child_names(*store, west_), IsEmpty());
  EXPECT_THAT(child_names(*store, domain_), ElementsAre("CN=Staff", "OU=West", "CN=Anna"));
}

TEST_F(EntryStoreTest, MembershipsVanishWithEitherSide) {
  const auto store = open();
  EXPECT_TRUE(store->is_member(*store->find(staff_), *store->find(ann_)));
  store->remove(ann_, nullptr);
  EXPECT_THAT(store->find(staff_)->values("member"), ElementsAre("CN=Foreign,DC=else,DC=where"));
  add_user(*store, "Ann", west_);
  EXPECT_FALSE(store->find(ann_)->has("memberOf"));
  store->modify(staff_, {{ModifyKind::kReplace, "member", {ann_, "CN=Foreign,DC=else,DC=where"}}}, nullptr);
  store->remove(staff_, nullptr);
  EXPECT_FALSE(store->find(ann_)->has("memberOf"));
}

TEST_F(EntryStoreTest, ALinkToNothingIsTextUntilAnEntryGetsThatName) {
  put_file(folder_ / "domain.ldif", std::string(kWorld) + "dn: CN=Lone," + domain_ + "\nmemberOf: CN=Late," +
                                        domain_ + "\nmember;range=0-1499: not a name\n\n");
  const auto store = open();
  EXPECT_THAT(store->find("CN=Lone," + domain_)->values("memberOf"), ElementsAre("CN=Late," + domain_));
  EXPECT_THAT(store->find("CN=Lone," + domain_)->values("member"), ElementsAre("not a name"));
  store->add("CN=late," + domain_, {}, nullptr);
  EXPECT_TRUE(store->is_member(*store->find("CN=Late," + domain_), *store->find("CN=Lone," + domain_)));
  store->modify(staff_, {{ModifyKind::kDelete, "member", {"CN=foreign, DC=else,DC=where"}}}, nullptr);
  EXPECT_THAT(store->find(staff_)->values("member"), ElementsAre(ann_));
  EXPECT_EQ(exported(*open()), exported(*store));
}

TEST_F(EntryStoreTest, ChildrenBeforeTheirParentInAFileAreAccepted) {
  put_file(folder_ / "domain.ldif",
           "dn: CN=a,OU=x,DC=t\ncn: a\n\ndn: OU=x,DC=t\nou: x\n\ndn: DC=t\ndc: t\n\n");
  const auto store = open();
  EXPECT_THAT(store->roots(), ElementsAre(store->find("DC=t")));
  std::vector<std::string> names;
  store->subtree(*store->find("DC=t"), [&](const Entry& entry) {
    names.push_back(entry.dn());
    return true;
  });
  EXPECT_THAT(names, ElementsAre("DC=t", "OU=x,DC=t", "CN=a,OU=x,DC=t"));
}

TEST_F(EntryStoreTest, TwoStoresOnOneFolderSeeEachOthersChanges) {
  const auto one = open();
  const auto two = open();
  add_user(*one, "bob", west_);
  EXPECT_EQ(two->find_account("bob"), nullptr);
  two->refresh();
  EXPECT_NE(two->find_account("bob"), nullptr);
  add_user(*two, "cid", west_);
  const auto unique = [&] {
    if (one->find_account("cid") != nullptr)
      throw base::RuntimeError(ads_error::kObjectExists, "in use");
  };
  EXPECT_EQ(number_of([&] { one->add("CN=other," + west_, {}, unique); }), ads_error::kObjectExists);
  EXPECT_EQ(number_of([&] { add_user(*one, "cid", west_); }), ads_error::kObjectExists);
  EXPECT_EQ(exported(*one), exported(*two));
}

TEST_F(EntryStoreTest, InATurnOthersChangesAreLookedForOnceAndBeforeEachWrite) {
  StoreTerms terms;
  const auto one = open_entry_store(folder_.path(), "domain", nullptr, terms);
  const auto two = open();
  terms.turn->begin();
  one->refresh();
  add_user(*two, "bob", west_);
  one->refresh();
  EXPECT_EQ(one->find_account("bob"), nullptr);
  add_user(*one, "cid", west_);
  EXPECT_NE(one->find_account("bob"), nullptr);
  add_user(*two, "dan", west_);
  terms.turn->end();
  one->refresh();
  EXPECT_NE(one->find_account("dan"), nullptr);
}

TEST_F(EntryStoreTest, ATornTailIsDroppedWithAWarningWhereverItsCutIs) {
  const auto store = open();
  add_user(*store, "bob", west_);
  const std::string whole = get_file(journal());
  const std::string state = exported(*store);
  store->modify(ann_, {{ModifyKind::kReplace, "mail", {"a", "b"}}, {ModifyKind::kReplace, "title", {"x"}}},
                nullptr);
  const std::string longer = get_file(journal());
  for (std::size_t size = whole.size() + 1; size < longer.size(); ++size) {
    put_file(journal(), longer.substr(0, size));
    warnings_.clear();
    const auto again = open();
    ASSERT_EQ(exported(*again), state) << size;
    ASSERT_THAT(warnings_, ElementsAre(HasSubstr("domain.journal.ldif"))) << size;
    ASSERT_EQ(get_file(journal()), whole) << size;
  }
}

TEST_F(EntryStoreTest, ATailTornWhileTheLabIsOpenIsCutByTheNextWriter) {
  const auto store = open();
  add_user(*store, "bob", west_);
  std::ofstream(journal(), std::ios::app) << "dn: " << ann_ << "\nchangetype: del";
  add_user(*store, "cid", west_);
  EXPECT_EQ(warnings_.size(), 1U);
  EXPECT_EQ(exported(*open()), exported(*store));
}

TEST_F(EntryStoreTest, DamageInTheMidstOfTheJournalIsAnErrorWithItsLine) {
  const auto store = open();
  add_user(*store, "bob", west_);
  add_user(*store, "cid", west_);
  std::string text = get_file(journal());
  text[text.find("bob")] = 'B';
  put_file(journal(), text);
  EXPECT_THAT(complaint_of([&] { (void)open(); }), HasSubstr("domain.journal.ldif: Line 3:"));
  EXPECT_EQ(get_file(journal()), text);
}

TEST_F(EntryStoreTest, FaultsInAFileNameItAndTheLine) {
  const std::vector<std::pair<std::string, std::string>> cases = {
      {"dn: DC=t\n\ndn: dc=T\n", "domain.ldif: Line 3: The name is in use"},
      {"dn: DC=t\nnonsense\n", "domain.ldif: Line 2: A line without a colon"},
      {"dn: nothing\n", "domain.ldif: Line 1: Not a distinguished name"}};
  for (const auto& [text, message] : cases) {
    put_file(folder_ / "domain.ldif", text);
    EXPECT_THAT(complaint_of([&] { (void)open(); }), HasSubstr(message));
  }
}

class LargeJournalTest : public EntryStoreTest {
 protected:
  /// A journal above the size at which it is folded in.
  void fill(EntryStore& store) {
    store.begin_batch();
    for (int i = 0; i < 17; ++i) {
      store.modify(ann_, {{ModifyKind::kReplace, "thumbnailPhoto", {std::string(1U << 20U, 'x')}}}, nullptr);
    }
    store.begin_sync();
    store.modify(ann_, {{ModifyKind::kReplace, "thumbnailPhoto", {"small"}}}, nullptr);
    store.end_batch();
  }
};

TEST_F(LargeJournalTest, IsFoldedInAtOpenAndOtherStoresNotice) {
  const auto first = open();
  fill(*first);
  const std::string state = exported(*first);
  const auto second = open();
  EXPECT_LT(fs::file_size(journal()), 100U);
  EXPECT_EQ(exported(*second), state);
  EXPECT_THAT(get_file(folder_ / "domain.ldif"),
              testing::StartsWith("# generation 1\n\ndn: DC=twk,DC=test\n"));
  add_user(*first, "bob", west_);
  second->refresh();
  EXPECT_NE(second->find_account("bob"), nullptr);
  EXPECT_EQ(exported(*first), exported(*second));
  EXPECT_EQ(exported(*open()), exported(*second));
}

TEST_F(LargeJournalTest, IsNotAppliedTwiceAfterACrashBetweenFoldingAndEmptying) {
  const auto early = open();
  add_user(*early, "bob", west_);
  fill(*early);
  const auto late = open();
  const std::string old_journal = "# generation 0\n\ndn: CN=bob," + west_ + "\nchangetype: add\n# end\n\n";
  put_file(journal(), old_journal);
  const auto store = open();
  EXPECT_EQ(exported(*store), exported(*late));
  add_user(*store, "cid", west_);
  EXPECT_THAT(get_file(journal()), HasSubstr("# generation 1\n\ndn: CN=cid"));
  add_user(*early, "dan", west_);
  store->refresh();
  EXPECT_EQ(exported(*early), exported(*store));
  EXPECT_EQ(exported(*open()), exported(*store));
}

TEST_F(EntryStoreTest, AJournalWithTornFirstLinesIsAccepted) {
  for (const std::string_view torn : {"", "# gen", "# generation 0\n"}) {
    put_file(journal(), torn);
    const auto store = open();
    add_user(*store, "bob", west_);
    EXPECT_EQ(exported(*open()), exported(*store)) << torn;
  }
}

TEST_F(EntryStoreTest, AMissingFolderIsNotOpened) {
  EXPECT_EQ(number_of([] { (void)open_entry_store("/no/such/folder", "domain", nullptr); }),
            base::error::kPathNotFound);
}

TEST_F(EntryStoreTest, AJournalOfAnotherDirectoryIsRefused) {
  put_file(journal(), "# generation 7\n\n");
  EXPECT_EQ(number_of([&] { (void)open(); }), base::error::kPathFileAccess);
}

TEST_F(EntryStoreTest, AFullDiskLeavesFileAndMemoryAsTheyWere) {
  const auto store = open();
  add_user(*store, "bob", west_);
  const std::string state = exported(*store);
  const std::string before = get_file(journal());
  OtherProcess limited([&] {
    test::limit_file_size(before.size() + 20);
    base::Trap trap;
    trap([&] { add_user(*store, "cid", west_); });
    EXPECT_EQ(trap.number(), base::error::kDiskFull);
    EXPECT_THAT(trap.description(), HasSubstr("domain.journal.ldif"));
    EXPECT_EQ(exported(*store), state);
    return HasFailure() ? 2 : 0;
  });
  EXPECT_EQ(limited.exit_code(), 0);
  EXPECT_EQ(get_file(journal()), before);
  add_user(*store, "cid", west_);
  EXPECT_EQ(exported(*open()), exported(*store));
}

TEST_F(EntryStoreTest, TheJournalIsForItsOwnerOnly) {
  const auto store = open();
  EXPECT_FALSE(fs::exists(journal()));
  add_user(*store, "bob", west_);
  EXPECT_EQ(fs::status(journal()).permissions(), fs::perms::owner_read | fs::perms::owner_write);
}

TEST_F(EntryStoreTest, AReadOnlyFolderIsReadAndWritesAreRefused) {
  fs::permissions(folder_.path(), fs::perms::all & ~(fs::perms::owner_write | fs::perms::group_write |
                                                     fs::perms::others_write));
  OtherProcess reader([&] {
    test::become_ordinary_user();
    const auto store = open();
    const bool refused = number_of([&] { add_user(*store, "bob", west_); }) == base::error::kPermissionDenied;
    return refused && store->find_account("ann") != nullptr && store->size() == 4U ? 0 : 2;
  });
  EXPECT_EQ(reader.exit_code(), 0);
}

TEST_F(EntryStoreTest, ManyMembersAndChildrenAreAddedAndRemovedQuickly) {
  const auto store = open();
  store->begin_batch();
  constexpr int kCount = 5000;
  const auto name = [](int i) { return "u" + std::to_string(i); };
  for (int i = 0; i < kCount; ++i) {
    add_user(*store, name(i), west_);
    store->modify(staff_, {{ModifyKind::kAdd, "member", {"CN=" + name(i) + "," + west_}}}, nullptr);
  }
  EXPECT_EQ(store->find(staff_)->values("member").size(), kCount + 2U);
  store->begin_sync();
  for (int i = 0; i < kCount; ++i)
    store->remove("CN=" + name(i) + "," + west_, nullptr);
  store->end_batch();
  EXPECT_EQ(store->find(staff_)->values("member").size(), 2U);
  EXPECT_EQ(exported(*open()), exported(*store));
}

}  // namespace
}  // namespace twk::lab
