#include "lab/entry_store.hpp"

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include <csignal>
#include <filesystem>
#include <fstream>

#include "base/errors.hpp"
#include "base/text.hpp"
#include "platform/directory.hpp"

namespace twk::lab {
namespace {

namespace fs = std::filesystem;
namespace ads_error = platform::ads_error;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

constexpr const char* kWorld =
    "dn: DC=twk,DC=test\nobjectClass: domainDNS\n\n"
    "dn: CN=Staff,DC=twk,DC=test\nobjectClass: group\nsAMAccountName: Staff\n"
    "member: CN=Ann,OU=West,DC=twk,DC=test\nmember: CN=Foreign,DC=else,DC=where\n\n"
    "dn: OU=West,DC=twk,DC=test\nobjectClass: organizationalUnit\nou: West\n\n"
    "dn: CN=Ann,OU=West,DC=twk,DC=test\nobjectClass: top\nobjectClass: user\ncn: Ann\nname: Ann\n"
    "sAMAccountName: ann\nuserPrincipalName: ann@twk.test\nobjectSid:: AQID\nprimaryGroupID: 513\n\n";


void write_file(const fs::path& path, std::string_view text) {
  std::ofstream(path, std::ios::binary | std::ios::trunc) << text;
}

std::uint32_t error_of(const std::function<void()>& step) {
  base::Trap trap;
  trap(step);
  return trap.number();
}

class EntryStoreTest : public testing::Test {
 protected:
  EntryStoreTest() {
    std::string pattern = (fs::temp_directory_path() / "twk-store-XXXXXX").string();
    folder_ = mkdtemp(pattern.data());
    write_file(folder_ / "domain.ldif", kWorld);
  }
  ~EntryStoreTest() override {
    std::error_code ignored;
    fs::permissions(folder_, fs::perms::owner_all, ignored);
    fs::remove_all(folder_, ignored);
  }

  std::unique_ptr<EntryStore> open() {
    return open_entry_store(folder_, [this](const std::string& text) { warnings_.push_back(text); });
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
  [[nodiscard]] fs::path journal() const { return folder_ / "domain.journal.ldif"; }

  fs::path folder_;
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
  EXPECT_EQ(error_of([&] { (void)store->find("no name"); }), ads_error::kInvalidDn);
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

}  // namespace
}  // namespace twk::lab
