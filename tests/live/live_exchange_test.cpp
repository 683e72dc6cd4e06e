#include <gmock/gmock.h>

#include "live/live_world.hpp"

namespace twk::live {
namespace {

using contract::number_of;
using platform::ObjectPtr;
using testing::ElementsAre;
using testing::UnorderedElementsAre;
namespace ads_error = platform::ads_error;

const std::string kContainer = "CN=Recipients,OU=Head Office,O=Tarnwick";

/// A mail server's directory, which is separate from the domain's.
class ForeignDirectory : public testing::Test {
 protected:
  std::string path(const std::string& dn) const {
    return "LDAP://" + test::variable("TWK_LIVE_EXCHANGE") + "/" + dn;
  }
  ObjectPtr bind(const std::string& dn) { return world_.directory().GetObject(path(dn)); }

  /// A mailbox as the creation makes it.
  ObjectPtr make_mailbox(const std::string& account) {
    base::Trap absent;
    absent([&] { bind(kContainer)->Delete("OrganizationalPerson", "CN=" + account); });
    const ObjectPtr mailbox = test::store(bind(kContainer)->Create("OrganizationalPerson", "CN=" + account),
                                          {{"MailPreferenceOption", 0}});
    test::store(mailbox,
                {{"Assoc-NT-Account", base::Bytes{1, 0, 255}},
                 {"Home-MDB",
                  "cn=Microsoft Private MDB,cn=EX55,cn=Servers,cn=Configuration,ou=Head Office,o=Tarnwick"},
                 {"uid", account},
                 {"Sn", "Smith"},
                 {"Cn", "Jo Smith"},
                 {"MAPI-Recipient", true}});
    return mailbox;
  }

  test::LiveWorld world_;
};

TEST_F(ForeignDirectory, MailboxIsMadeFilledListedAndDeleted) {
  const ObjectPtr mailbox = make_mailbox("jsmith");
  mailbox->PutEx(2, "otherMailBox", platform::ValueList{"jo@a.test", "js@a.test"});
  test::store(mailbox, {{"Mail", "Jo.Smith@a.test"}});
  const ObjectPtr read = bind("CN=jsmith," + kContainer);
  EXPECT_EQ(read->Class(), "OrganizationalPerson");
  EXPECT_EQ(read->Get("MAPI-Recipient").integer(), -1);
  EXPECT_EQ(read->Get("MailPreferenceOption").integer(), 0);
  EXPECT_EQ(read->Get("mail").text(), "Jo.Smith@a.test");
  EXPECT_EQ(read->Get("otherMailbox").list().size(), 2U);
  // The name of the entry stays among the values that make it.
  EXPECT_EQ(read->Get("cn").list().size(), 2U);

  const std::string list = "CN=Everybody," + kContainer;
  bind(list)->Add(path("CN=jsmith," + kContainer));
  EXPECT_TRUE(bind(list)->IsMember(path("CN=jsmith," + kContainer)));
  EXPECT_EQ(number_of([&] { bind(list)->Add(path("CN=jsmith," + kContainer)); }), ads_error::kObjectExists);
  bind(list)->Remove(path("CN=jsmith," + kContainer));
  EXPECT_FALSE(bind(list)->IsMember(path("CN=jsmith," + kContainer)));

  bind(kContainer)->Delete("OrganizationalPerson", "CN=jsmith");
  EXPECT_EQ(number_of([&] { bind("CN=jsmith," + kContainer); }), ads_error::kNoSuchObject);
}

TEST_F(ForeignDirectory, PathMayNameThePartsFromTheTop) {
  make_mailbox("top");
  const ObjectPtr site = bind("O=Tarnwick/OU=Head Office");
  EXPECT_EQ(site->Name(), "OU=Head Office");
  EXPECT_EQ(bind("O=Tarnwick/OU=Head Office/CN=Recipients/CN=top")->Get("uid").text(), "top");
  EXPECT_EQ(number_of([&] { bind("O=Tarnwick/OU=Nowhere"); }), ads_error::kNoSuchObject);
}

TEST_F(ForeignDirectory, RefusalsOfTheServerAreReportedByNumber) {
  const ObjectPtr mailbox = make_mailbox("ann");
  EXPECT_EQ(number_of([&] { bind(kContainer)->Create("OrganizationalPerson", "CN=ann")->SetInfo(); }),
            ads_error::kObjectExists);
  mailbox->Put("No-Such-Attribute", "x");
  EXPECT_EQ(number_of([&] { mailbox->SetInfo(); }), ads_error::kNoSuchAttribute);
  EXPECT_EQ(number_of([&] { bind("CN=Nobody,O=Tarnwick"); }), ads_error::kNoSuchObject);
  EXPECT_EQ(
      number_of([&] { world_.directory().OpenDSObject(path(kContainer), "nobody", "no password"); }) != 0,
      true);
  bind(kContainer)->Delete("OrganizationalPerson", "CN=ann");
}

}  // namespace
}  // namespace twk::live
