#include "lab_world.hpp"

namespace twk::lab {
namespace {

using contract::number_of;
namespace ads_error = platform::ads_error;

const std::string kGroup =
    "CN=First Administrative Group,CN=Administrative Groups,CN=Tarnwick,CN=Microsoft Exchange,CN=Services,"
    "CN=Configuration,DC=twk,DC=test";
const std::string kServer = "CN=EX2K,CN=Servers," + kGroup;
const std::string kStorageGroup = "CN=First Storage Group,CN=InformationStore," + kServer;
const std::string kStore = "CN=Mailbox Store," + kStorageGroup;

TEST(Mailboxes, AreStagedOnTheUserAndWrittenByItsSetInfo) {
  test::LabWorld world;
  const auto user = contract::make_user(world, "Jo Smith", "jo smith");
  world.platform().mailboxes.mailbox_store(user)->CreateMailbox(kStore);
  EXPECT_EQ(number_of([&] { contract::get_entry(world, "CN=Jo Smith," + world.unit())->Get("homeMDB"); }),
            ads_error::kPropertyNotFound);
  user->SetInfo();
  const auto seen = contract::get_entry(world, "CN=Jo Smith," + world.unit());
  const auto text = [&](std::string_view attribute) { return seen->Get(attribute).text(); };
  EXPECT_EQ(text("homeMDB"), kStore);
  EXPECT_EQ(text("homeMTA"), "CN=Microsoft MTA," + kServer);
  EXPECT_EQ(text("msExchHomeServerName"),
            "/o=Tarnwick/ou=First Administrative Group/cn=Configuration/cn=Servers/cn=EX2K");
  EXPECT_EQ(text("legacyExchangeDN"), "/o=Tarnwick/ou=First Administrative Group/cn=Recipients/cn=jo_smith");
  EXPECT_EQ(text("mailNickname"), "jo_smith");
  EXPECT_EQ(text("mail"), "jo_smith@twk.test");
  EXPECT_EQ(text("proxyAddresses"), "SMTP:jo_smith@twk.test");
  EXPECT_EQ(seen->Get("msExchMailboxGuid").bytes().size(), 16U);
}

TEST(Mailboxes, KeepTheAddressThatTheUserHas) {
  test::LabWorld world;
  const auto user = contract::make_user(world, "Jo", "jo");
  user->Put("mail", "chief@twk.test");
  world.platform().mailboxes.mailbox_store(user)->CreateMailbox("ldap://" + kStore);
  user->SetInfo();
  EXPECT_EQ(user->Get("mail").text(), "chief@twk.test");
  EXPECT_EQ(user->Get("proxyAddresses").text(), "SMTP:chief@twk.test");
}

TEST(Mailboxes, ASecondOneAndAMissingStoreAreRefused) {
  test::LabWorld world;
  const auto user = contract::make_user(world, "Jo", "jo");
  platform::MailboxService& mailboxes = world.platform().mailboxes;
  for (const std::string& path : {"CN=No Store," + kStorageGroup, kStorageGroup}) {
    EXPECT_EQ(number_of([&] { mailboxes.mailbox_store(user)->CreateMailbox(path); }),
              ads_error::kNoSuchObject);
  }
  EXPECT_EQ(number_of([&] { mailboxes.mailbox_store(user)->CreateMailbox("no name"); }),
            ads_error::kInvalidDn);
  mailboxes.mailbox_store(user)->CreateMailbox(kStore);
  EXPECT_EQ(number_of([&] { mailboxes.mailbox_store(user)->CreateMailbox(kStore); }),
            ads_error::kObjectExists);
}

TEST(Mailboxes, AreOnlyForUsersOfTheDirectory) {
  test::LabWorld world;
  contract::make_user(world, "Jo", "jo");
  for (const platform::ObjectPtr& object :
       {contract::get_account(world, "jo"), contract::make_group(world, "Staff"), platform::ObjectPtr()}) {
    EXPECT_EQ(number_of([&] { world.platform().mailboxes.mailbox_store(object); }),
              ads_error::kNotImplementedByProvider);
  }
}

}  // namespace
}  // namespace twk::lab
