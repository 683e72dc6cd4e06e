#include "lab_world.hpp"

namespace twk::lab {
namespace {

using contract::children_of;
using contract::names_of;
using contract::number_of;
using platform::ObjectPtr;
using platform::Value;
using platform::ValueList;
using testing::ElementsAre;
namespace ads_error = platform::ads_error;

const std::string kSite = "OU=Head Office,O=Tarnwick";
const std::string kRecipients = "LDAP://EX55/CN=Recipients," + kSite;

Value bytes(std::string_view text) {
  return base::Bytes(text.begin(), text.end());
}

/// A new lab with its Exchange 5.5 server.
class Exchange55 : public testing::Test {
 protected:
  ObjectPtr bind(const std::string& path) { return world.directory().GetObject(path); }
  ObjectPtr make(const std::string& name, const std::string& object_class = "OrganizationalPerson") {
    ObjectPtr made = bind(kRecipients)->Create(object_class, "CN=" + name);
    made->Put("MailPreferenceOption", 0);
    if (object_class == "Remote-Address")
      made->Put("target-address", "SMTP:jo@elsewhere.test");
    made->SetInfo();
    return made;
  }
  test::LabWorld world;
};

TEST_F(Exchange55, AMailboxIsMadeReadAndDeletedAndOthersSeeIt) {
  const ObjectPtr made = make("jsmith");
  made->Put("Cn", "Jo Smith");
  made->PutEx(2, "otherMailBox", ValueList{"a@b", "c@d"});
  test::store(made, {{"Replication-Sensitivity", "20"}, {"MAPI-Recipient", true}});
  test::OtherProgram other(world);
  const ObjectPtr seen = other.platform().directory.GetObject(
      "LDAP://ex55.twk.test:389/cn=jsmith,cn=recipients,ou=head office, o = tarnwick");
  EXPECT_EQ(seen->Name(), "CN=jsmith");
  EXPECT_EQ(seen->Class(), "OrganizationalPerson");
  EXPECT_EQ(seen->Get("CN").text(), "Jo Smith");
  EXPECT_EQ(seen->Get("othermailbox").list().size(), 2U);
  EXPECT_EQ(seen->Get("replication-sensitivity").integer(), 20);
  EXPECT_TRUE(seen->Get("mapi-recipient").boolean());
  EXPECT_EQ(number_of([&] { seen->Get("Mail"); }), ads_error::kPropertyNotFound);
  bind(kRecipients)->Delete("OrganizationalPerson", "CN=jsmith");
  EXPECT_EQ(number_of([&] { seen->Get("cn"); }), ads_error::kNoSuchObject);
}

TEST_F(Exchange55, APathFromTheTopDownMeansTheSameObject) {
  EXPECT_EQ(bind("LDAP://EX55/O=Tarnwick/OU=Head Office/CN=Recipients")->ADsPath(), kRecipients);
  EXPECT_EQ(bind("LDAP://EX55")->Name(), "O=Tarnwick");
  EXPECT_THAT(names_of(children_of(bind("LDAP://EX55/O=Tarnwick/OU=Head Office"), {"container"})),
              ElementsAre("CN=Configuration", "CN=Recipients"));
}

struct Refusal {
  const char* what;
  const char* object_class;
  const char* parent;
  const char* name;
  std::uint32_t number;
};

TEST_F(Exchange55, WhatCannotBeMadeIsRefused) {
  make("taken");
  const std::vector<Refusal> refusals = {
      {"a name in use", "OrganizationalPerson", "CN=Recipients,", "CN=TAKEN", ads_error::kObjectExists},
      {"no such parent", "Remote-Address", "CN=Nowhere,", "CN=a", ads_error::kNoSuchObject},
      {"a class that is none", "user", "CN=Recipients,", "CN=a", ads_error::kUnwilling},
      {"a mailbox on the site itself", "OrganizationalPerson", "", "CN=a", ads_error::kUnwilling},
      {"a mailbox in the configuration", "OrganizationalPerson", "CN=Servers,CN=Configuration,", "CN=a",
       ads_error::kUnwilling},
      {"a mailbox in a mailbox", "OrganizationalPerson", "CN=taken,CN=Recipients,", "CN=a",
       ads_error::kUnwilling},
      {"a recipient without address", "Remote-Address", "CN=Recipients,", "CN=a", ads_error::kConstraint},
      {"a name of two parts", "Container", "CN=Recipients,", "CN=a,CN=b", ads_error::kInvalidDn},
      {"a name of another kind", "Container", "CN=Recipients,", "OU=a", ads_error::kInvalidDn}};
  for (const Refusal& refusal : refusals) {
    EXPECT_EQ(number_of([&] {
                bind("LDAP://EX55/" + (refusal.parent + kSite))
                    ->Create(refusal.object_class, refusal.name)
                    ->SetInfo();
              }),
              refusal.number)
        << refusal.what;
  }
  EXPECT_EQ(number_of([&] { bind(kRecipients)->Delete("Remote-Address", "CN=taken"); }),
            ads_error::kNoSuchObject);
  EXPECT_EQ(number_of([&] { bind("LDAP://EX55/" + kSite)->Delete("Container", "CN=Recipients"); }),
            ads_error::kNotOnNonLeaf);
}

TEST_F(Exchange55, ValuesThatDoNotFitAreRefusedAndNothingIsWritten) {
  const ObjectPtr mailbox = make("jo");
  const std::vector<std::pair<std::string, Value>> bad = {{"Assoc-NT-Account", bytes("0105")},
                                                          {"Assoc-NT-Account", bytes("010")},
                                                          {"Assoc-NT-Account", bytes("xy")},
                                                          {"Assoc-NT-Account", "S-1-1-0"},
                                                          {"NT-Security-Descriptor", bytes("0100")},
                                                          {"Home-MTA", "no name"},
                                                          {"MAPI-Recipient", "perhaps"},
                                                          {"Replication-Sensitivity", "much"},
                                                          {"Mail", ValueList{"a@b", "c@d"}},
                                                          {"givenName", ""}};
  for (const auto& [attribute, value] : bad) {
    const ObjectPtr again = bind(mailbox->ADsPath());
    again->Put("info", "written");
    again->Put(attribute, value);
    EXPECT_EQ(number_of([&] { again->SetInfo(); }), ads_error::kConstraint) << attribute;
  }
  EXPECT_EQ(number_of([&] { test::store(mailbox, {{"Shoe-Size", "44"}}); }), ads_error::kNoSuchAttribute);
  EXPECT_EQ(number_of([&] { bind(mailbox->ADsPath())->Get("info"); }), ads_error::kPropertyNotFound);
  test::store(bind(mailbox->ADsPath()), {{"Assoc-NT-Account", bytes("010100000000000100000000")}});
  EXPECT_EQ(bind(mailbox->ADsPath())->Get("assoc-nt-account"), bytes("010100000000000100000000"));
}

TEST_F(Exchange55, ADistributionListTakesMembersByAPathWithoutThePort) {
  make("jo");
  make("remote", "Remote-Address");
  const ObjectPtr list = bind("LDAP://EX55:389/CN=All Staff,CN=Recipients," + kSite);
  const std::string jo = "LDAP://EX55/CN=jo,CN=Recipients," + kSite;
  list->Add(jo);
  list->Add("LDAP://EX55/CN=remote,CN=Recipients," + kSite);
  EXPECT_TRUE(list->IsMember(jo));
  EXPECT_THAT(names_of(list->Members()), ElementsAre("CN=jo", "CN=remote"));
  EXPECT_THAT(names_of(bind(jo)->Groups()), ElementsAre("CN=All Staff"));
  EXPECT_EQ(number_of([&] { list->Add(jo); }), ads_error::kObjectExists);
  EXPECT_EQ(number_of([&] { list->Add("LDAP://EX55/CN=no,CN=Recipients," + kSite); }),
            ads_error::kNoSuchObject);
  EXPECT_EQ(number_of([&] { list->Add("LDAP://twk.test/CN=Users,DC=twk,DC=test"); }),
            ads_error::kNoSuchObject);
  bind(kRecipients)->Delete("OrganizationalPerson", "CN=jo");
  EXPECT_THAT(names_of(list->Members()), ElementsAre("CN=remote"));
}

TEST_F(Exchange55, CredentialsAreThoseOfTheDomain) {
  const auto admin = contract::make_user(world, "Mail Admin", "mailadmin");
  admin->SetPassword("Right-2026");
  platform::DirectoryService& directory = world.directory();
  EXPECT_EQ(directory.OpenDSObject(kRecipients, "TWK\\mailadmin", "Right-2026")->Name(), "CN=Recipients");
  EXPECT_EQ(number_of([&] { directory.OpenDSObject(kRecipients, "mailadmin", "wrong"); }),
            ads_error::kLogonFailure);
}

TEST_F(Exchange55, AServerIsFoundAtItsOwnPortOnly) {
  const auto port = [&](const std::string& text) {
    const auto root = bind("LDAP://EX55/O=Tarnwick");
    test::store(root, {{"ldapPort", text}});
  };
  port("390");
  EXPECT_EQ(bind("LDAP://ex55:390/" + kSite)->Class(), "organizationalUnit");
  for (const char* const server : {"EX55", "EX55:389", "EX55:x", "EX56:390"}) {
    EXPECT_EQ(number_of([&] { bind("LDAP://" + std::string(server) + "/" + kSite); }), ads_error::kServerDown)
        << server;
  }
}

TEST_F(Exchange55, NamesThatANameMayHoldAreKeptApartFromTheirPlace) {
  const ObjectPtr odd = bind(kRecipients)->Create("OrganizationalPerson", "CN=Smith\\, Jo a/b");
  odd->SetInfo();
  EXPECT_EQ(bind("LDAP://EX55/CN=Smith\\, Jo a\\/b,CN=Recipients," + kSite)->Get("rdn").text(),
            "Smith, Jo a/b");
  EXPECT_EQ(children_of(bind(kRecipients)).size(), 2U);
}

TEST_F(Exchange55, ABatchThatWasOpenedBeforeTheServerIsWrittenAtItsEnd) {
  world.directory().begin_batch();
  make("jo");
  world.directory().end_batch();
  world.reopen();
  EXPECT_THAT(names_of(children_of(bind(kRecipients))), ElementsAre("CN=All Staff", "CN=jo"));
}

TEST(LabWithoutExchange, HasNoMailServer) {
  LabPlan plan = test::small_plan();
  plan.exchange.reset();
  test::LabWorld world(plan);
  EXPECT_EQ(number_of([&] { world.directory().GetObject(kRecipients); }), ads_error::kServerDown);
  EXPECT_EQ(
      number_of([&] { world.directory().GetObject("LDAP://CN=Services,CN=Configuration,DC=twk,DC=test"); }),
      ads_error::kNoSuchObject);
}

TEST(MailServerOfAnNtLab, AnswersWhereTheDomainHasNoLdap) {
  test::LabWorld world(test::plan_of(DomainKind::kNt));
  EXPECT_EQ(world.directory().GetObject(kRecipients)->Name(), "CN=Recipients");
}

}  // namespace
}  // namespace twk::lab
