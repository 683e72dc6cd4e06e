#pragma once

#include <map>

#include "base/text.hpp"
#include "contract/world.hpp"

namespace twk::contract {

namespace ads_error = platform::ads_error;
using platform::ObjectPtr;
using platform::User;
using platform::Value;
using platform::ValueList;

class DirectoryContract : public Contract {
 protected:
  std::string path_of(const std::string& dn) const { return "LDAP://" + world_->domain() + "/" + dn; }
  ObjectPtr get(const std::string& path) { return world_->directory().GetObject(path); }
};

TEST_P(DirectoryContract, NewUserIsMadeFilledEnabledAndPutIntoAGroup) {
  const ObjectPtr group = make_group(w_, "Readers");
  const ObjectPtr object = get("LDAP://" + w_.unit())->Create("user", "cn=Jo Smith");
  User user(object);
  user.Put("samAccountName", "jsmith");
  user.SetInfo();
  user.put_Description("Clerk");
  user.put_FullName("Smith, Jo");
  user.put_FirstName("Jo");
  user.put_LastName("Smith");
  user.put_HomeDirectory("\\\\FS1\\D$\\Users\\jsmith");
  user.put_LoginHours(base::Bytes(21, 0xFF));
  user.SetInfo();
  user.SetPassword("Correct-Horse-7");
  user.Put("pwdLastSet", -1);
  user.Put("HomeDrive", "H:");
  user.SetInfo();
  const ObjectPtr account = get_account(w_, "jsmith");
  store(account, {{"UserFlags", account->Get("UserFlags").integer() | 64}});
  store(account, {{"UserFlags", account->Get("UserFlags").integer() | 0x10000}});
  group->Add("LDAP://CN=Jo Smith," + w_.unit());

  const User read(get_entry(w_, "CN=Jo Smith," + w_.unit()));
  EXPECT_EQ(read.Name(), "CN=Jo Smith");
  EXPECT_EQ(read.FullName(), "Smith, Jo");
  EXPECT_EQ(read.Description(), "Clerk");
  EXPECT_EQ(read.Get("givenName").text(), "Jo");
  EXPECT_EQ(read.Get("homeDrive").text(), "H:");
  EXPECT_EQ(read.LoginHours(), base::Bytes(21, 0xFF));
  EXPECT_FALSE(read.AccountDisabled());
  EXPECT_EQ(get_account(w_, "jsmith")->Get("UserFlags").integer() & 0x10042, 0x10040);
  EXPECT_THAT(names_of(read.Groups()), testing::ElementsAre("CN=Readers"));
}

TEST_P(DirectoryContract, StagedValuesReachTheDirectoryOnlyAtSetInfo) {
  const ObjectPtr user = make_user(w_, "Jo", "jo");
  user->Put("description", "staged");
  EXPECT_EQ(user->Get("Description").text(), "staged");
  EXPECT_EQ(number_of([&] { get_entry(w_, "CN=Jo," + w_.unit())->Get("description"); }),
            ads_error::kPropertyNotFound);
  user->SetInfo();
  EXPECT_EQ(get_entry(w_, "CN=Jo," + w_.unit())->Get("description").text(), "staged");
}

TEST_P(DirectoryContract, AnObjectKeepsWhatItReadFirstUntilItIsBoundAgain) {
  const ObjectPtr first = make_user(w_, "Jo", "jo");
  store(first, {{"description", "old"}});
  const ObjectPtr second = get_entry(w_, "CN=Jo," + w_.unit());
  EXPECT_EQ(second->Get("description").text(), "old");
  store(first, {{"description", "new"}});
  EXPECT_EQ(second->Get("description").text(), "old");
}

TEST_P(DirectoryContract, FailedSetInfoWritesNoneOfTheStagedValues) {
  const ObjectPtr user = make_user(w_, "Jo", "jo");
  user->Put("description", "never written");
  EXPECT_EQ(number_of([&] { store(user, {{"noSuchAttribute", "x"}}); }), ads_error::kNoSuchAttribute);
  const ObjectPtr again = get_entry(w_, "CN=Jo," + w_.unit());
  EXPECT_EQ(number_of([&] { again->Get("description"); }), ads_error::kPropertyNotFound);
}

TEST_P(DirectoryContract, NamesInUseAreRefusedWithTheNumberThatCreationTests) {
  make_user(w_, "Jo", "jo");
  const ObjectPtr unit = get_entry(w_, w_.unit());
  unit->Create("organizationalUnit", "OU=Below")->SetInfo();
  const struct {
    const char* what;
    std::string parent;
    const char* cn;
    const char* account;
  } cases[] = {{"account name in another unit", "OU=Below," + w_.unit(), "cn=Other", "JO"},
               {"name in the same unit", w_.unit(), "cn=jo", "other"}};
  for (const auto& one : cases) {
    SCOPED_TRACE(one.what);
    const ObjectPtr user = get_entry(w_, one.parent)->Create("user", one.cn);
    EXPECT_EQ(number_of([&] { store(user, {{"samAccountName", one.account}}); }), ads_error::kObjectExists);
  }
  const ObjectPtr second = make_user(w_, "Second", "second");
  EXPECT_EQ(number_of([&] { store(second, {{"samAccountName", "jo"}}); }), ads_error::kObjectExists);
}

TEST_P(DirectoryContract, PathsThatLeadNowhereTellWhy) {
  const struct {
    std::string path;
    std::uint32_t number;
  } cases[] = {{path_of("CN=Nobody," + w_.unit()), ads_error::kNoSuchObject},
               {"LDAP://elsewhere.example/CN=Jo", ads_error::kServerDown},
               {"HTTP://x", ads_error::kBadPathname},
               {"LDAP", ads_error::kBadPathname},
               {"", ads_error::kBadPathname},
               {"WinNT://" + w_.netbios() + "/nobody", ads_error::kUserNotFound},
               {"WinNT://" + w_.netbios() + "/nobody,group", ads_error::kGroupNotFound}};
  for (const auto& one : cases)
    EXPECT_EQ(number_of([&] { get(one.path); }), one.number) << one.path;
}

TEST_P(DirectoryContract, ValuesOfSeveralKindsComeBackAsTheirSyntaxSays) {
  const ObjectPtr user = make_user(w_, "Jo", "jo");
  user->PutEx(2, "otherTelephone", ValueList{"1", "2"});
  store(user, {{"adminCount", 44}, {"accountExpires", "133000000000000000"}});
  user->PutEx(3, "otherTelephone", ValueList{"3"});
  user->PutEx(1, "adminCount", 0);
  user->SetInfo();
  const ObjectPtr read = get_entry(w_, "CN=Jo," + w_.unit());
  EXPECT_EQ(read->Get("otherTelephone").list().size(), 3U);
  EXPECT_EQ(number_of([&] { read->Get("adminCount"); }), ads_error::kPropertyNotFound);
  EXPECT_EQ(read->Get("accountExpires"), Value("133000000000000000"));
  EXPECT_EQ(read->Get("objectSid").bytes().size(), 28U);
  EXPECT_EQ(read->Get("userAccountControl").integer() & 0x200, 0x200);
  user->PutEx(4, "otherTelephone", ValueList{"1", "3"});
  user->SetInfo();
  EXPECT_EQ(get_entry(w_, "CN=Jo," + w_.unit())->Get("otherTelephone"), Value("2"));
}

TEST_P(DirectoryContract, ValuesThatBreakTheirAttributeAreRefused) {
  const ObjectPtr user = make_user(w_, "Jo", "jo");
  const std::pair<const char*, Value> cases[] = {{"sn", ValueList{"two", "names"}},
                                                 {"adminCount", "many"},
                                                 {"initials", "far too long"},
                                                 {"logonHours", base::Bytes(3)},
                                                 {"description", ""},
                                                 {"manager", "no name"},
                                                 {"pwdLastSet", 17},
                                                 {"accountExpires", "never"}};
  for (const auto& [attribute, value] : cases) {
    const ObjectPtr again = get_entry(w_, "CN=Jo," + w_.unit());
    EXPECT_EQ(number_of([&] { store(again, {{attribute, value}}); }), ads_error::kConstraint) << attribute;
  }
}

TEST_P(DirectoryContract, MembersAreOfTheirOwnClasses) {
  const ObjectPtr group = make_group(w_, "Readers");
  for (const std::string name : {"Al", "Bo", "Cy\\, (x)", "Di"})
    group->Add(make_user(w_, name, base::lower(name.substr(0, 2)))->ADsPath());
  group->Add(make_group(w_, "Writers")->ADsPath());
  std::map<std::string, std::string> classes;
  for (const ObjectPtr& member : group->Members())
    classes.emplace(member->Name(), member->Class());
  EXPECT_EQ(classes, (std::map<std::string, std::string>{{"CN=Al", "user"},
                                                         {"CN=Bo", "user"},
                                                         {"CN=Cy\\, (x)", "user"},
                                                         {"CN=Di", "user"},
                                                         {"CN=Writers", "group"}}));
}

TEST_P(DirectoryContract, MembershipActsAtOnceAndReportsWhatWasAlreadySo) {
  const ObjectPtr user = make_user(w_, "Jo", "jo");
  const ObjectPtr group = make_group(w_, "Readers");
  EXPECT_FALSE(group->IsMember(user->ADsPath()));
  EXPECT_EQ(number_of([&] { group->Remove(user->ADsPath()); }), ads_error::kMemberNotInGroup);
  group->Add(user->ADsPath());
  EXPECT_TRUE(group->IsMember("WinNT://" + w_.netbios() + "/jo"));
  EXPECT_EQ(number_of([&] { group->Add(user->ADsPath()); }), ads_error::kObjectExists);
  EXPECT_EQ(number_of([&] { get_account(w_, "Readers")->Add("WinNT://" + w_.netbios() + "/jo"); }),
            ads_error::kMemberInGroup);
  EXPECT_THAT(names_of(group->Members()), testing::ElementsAre("CN=Jo"));
  get_account(w_, "Readers")->Remove("WinNT://" + w_.netbios() + "/jo");
  EXPECT_TRUE(group->Members().empty());
  EXPECT_EQ(number_of([&] { group->Add("LDAP://CN=Nobody," + w_.unit()); }), ads_error::kNoSuchObject);
}

TEST_P(DirectoryContract, ManyMembersJoinAndLeaveTogetherOrNotAtAll) {
  const ObjectPtr group = make_group(w_, "Readers");
  ASSERT_TRUE(group->takes_many());
  const std::string jo = make_user(w_, "Jo", "jo")->ADsPath();
  const std::string al = make_user(w_, "Al", "al")->ADsPath();
  EXPECT_FALSE(group->AddTogether(std::vector{jo, "LDAP://CN=Nobody," + w_.unit()}));
  EXPECT_TRUE(group->Members().empty());
  EXPECT_TRUE(group->AddTogether(std::vector{jo, al}));
  EXPECT_THAT(names_of(group->Members()), testing::UnorderedElementsAre("CN=Jo", "CN=Al"));
  EXPECT_FALSE(group->RemoveTogether(std::vector{jo, group->ADsPath()}));
  EXPECT_TRUE(group->IsMember(jo));
  EXPECT_TRUE(group->RemoveTogether(std::vector{jo, al}));
  EXPECT_TRUE(group->Members().empty());
}

TEST_P(DirectoryContract, PrimaryGroupMustBeOneOfTheUsersAndTakesTheOldOnesPlace) {
  const ObjectPtr user = make_user(w_, "Jo", "jo");
  const ObjectPtr group = make_group(w_, "Readers");
  const auto sid = get("WinNT://" + w_.netbios() + "/Readers,group")->Get("objectSID").bytes();
  const std::int32_t rid = sid[24] | sid[25] << 8 | sid[26] << 16;
  EXPECT_EQ(number_of([&] { store(user, {{"PrimaryGroupID", rid}}); }), ads_error::kUnwilling);
  group->Add(user->ADsPath());
  user->SetInfo();
  const ObjectPtr read = get_entry(w_, "CN=Jo," + w_.unit());
  EXPECT_EQ(read->Get("primaryGroupID").integer(), rid);
  EXPECT_THAT(names_of(read->Groups()), testing::ElementsAre("CN=Domain Users"));
  EXPECT_THAT(names_of(get_account(w_, "jo")->Groups()), testing::ElementsAre("Readers", "Domain Users"));
  EXPECT_TRUE(group->IsMember(user->ADsPath()));
}

TEST_P(DirectoryContract, MovedAndRenamedUserKeepsGroupsAndEscapesItsComma) {
  const ObjectPtr user = make_user(w_, "Jo", "jo");
  make_group(w_, "Readers")->Add(user->ADsPath());
  get_entry(w_, w_.unit())->Create("organizationalUnit", "OU=Sales\\, Europe")->SetInfo();
  const ObjectPtr target = get_entry(w_, "OU=Sales\\, Europe," + w_.unit());
  EXPECT_EQ(target->Get("name").text(), "Sales, Europe");
  const ObjectPtr moved = target->MoveHere(user->ADsPath(), "CN=Smith\\, Jo");
  EXPECT_EQ(moved->ADsPath(), path_of("CN=Smith\\, Jo,OU=Sales\\, Europe," + w_.unit()));
  EXPECT_EQ(moved->Get("cn").text(), "Smith, Jo");
  EXPECT_THAT(names_of(moved->Groups()), testing::ElementsAre("CN=Readers"));
  EXPECT_EQ(number_of([&] { get(user->ADsPath()); }), ads_error::kNoSuchObject);
  const ObjectPtr back = get_entry(w_, w_.unit())->MoveHere(moved->ADsPath(), std::nullopt);
  EXPECT_EQ(back->Parent(), path_of(w_.unit()));
}

TEST_P(DirectoryContract, MoveOntoANameInUseChangesNothing) {
  make_user(w_, "Jo", "jo");
  const ObjectPtr other = make_user(w_, "Other", "other");
  const ObjectPtr unit = get_entry(w_, w_.unit());
  EXPECT_EQ(number_of([&] { unit->MoveHere(other->ADsPath(), "CN=Jo"); }), ads_error::kObjectExists);
  EXPECT_EQ(get(other->ADsPath())->Get("samAccountName").text(), "other");
}

TEST_P(DirectoryContract, DeleteTakesEmptyObjectsOnly) {
  make_user(w_, "Jo", "jo");
  const ObjectPtr root = get_entry(w_, w_.root());
  const std::string unit_name = w_.unit().substr(0, w_.unit().find(','));
  EXPECT_EQ(number_of([&] { root->Delete("organizationalUnit", unit_name); }), ads_error::kNotOnNonLeaf);
  get_entry(w_, w_.unit())->Delete("user", "CN=Jo");
  EXPECT_EQ(number_of([&] { get_account(w_, "jo"); }), ads_error::kUserNotFound);
  root->Delete("organizationalUnit", unit_name);
  EXPECT_EQ(number_of([&] { get_entry(w_, w_.unit()); }), ads_error::kNoSuchObject);
}

TEST_P(DirectoryContract, NamesThatBreakTheSyntaxAreRefused) {
  const ObjectPtr unit = get_entry(w_, w_.unit());
  for (const char* const name : {"Jo", "cn=", "cn=Jo,OU=Other", "cn=Jo\tSmith", "OU=Jo"}) {
    EXPECT_EQ(number_of([&] { unit->Create("user", name)->SetInfo(); }), ads_error::kInvalidDn) << name;
  }
  for (const char* const account : {"a/b", "a\nb", "twenty-one characters", "...", "jo.", "a*"}) {
    const ObjectPtr user = unit->Create("user", "cn=Jo");
    user->Put("samAccountName", account);
    EXPECT_EQ(number_of([&] { user->SetInfo(); }), ads_error::kInvalidAccountName) << account;
  }
}

TEST_P(DirectoryContract, WhetherAPasswordMustBeChangedIsWrittenAndReadOnEitherSide) {
  const ObjectPtr user = make_user(w_, "Jo", "jo");
  const auto is_expired = [&] { return get_account(w_, "jo")->Get("PasswordExpired").integer(); };
  const auto write = [&](int last_set) { store(user, {{"pwdLastSet", last_set}}); };
  user->SetPassword("Correct-Horse-7");
  EXPECT_EQ(is_expired(), 0);
  write(-1);
  EXPECT_EQ(is_expired(), 0);
  write(0);
  EXPECT_EQ(is_expired(), 1);
  write(-1);
  EXPECT_EQ(is_expired(), 0) << "also without a new password";
  write(0);
  store(get_account(w_, "jo"), {{"PasswordExpired", 0}});
  EXPECT_NE(get_entry(w_, "CN=Jo," + w_.unit())->Get("pwdLastSet").text(), "0");
}

TEST_P(DirectoryContract, PasswordThatThePolicyRefusesIsToldByItsNumber) {
  const ObjectPtr user = make_user(w_, "Jo", "jo");
  EXPECT_EQ(number_of([&] { user->SetPassword("short"); }), ads_error::kPasswordPolicy);
}

TEST_P(DirectoryContract, NewAccountIsMadeWithItsPasswordOrNotAtAll) {
  const auto draft = [&](const std::string& cn, const std::string& account) {
    User user(get_entry(w_, w_.unit())->Create("user", "cn=" + cn));
    user.Put("samAccountName", account);
    user.put_Description("Clerk");
    user.put_LoginHours(base::Bytes(21, 0x0F));
    user.Put("userPrincipalName", std::string(account) + "@twk.test");
    return user;
  };
  const auto bind = [&](const char* cn) { return User(get_entry(w_, std::string(cn) + "," + w_.unit())); };
  EXPECT_FALSE(draft("Jo", "jo").SetInfoWithPassword("short"));
  User wrong = draft("Jo", "jo");
  wrong.Put("objectGUID", std::string("of another one"));
  EXPECT_FALSE(wrong.SetInfoWithPassword("Correct-Horse-7"));
  EXPECT_EQ(number_of([&] { bind("CN=Jo"); }), ads_error::kNoSuchObject);

  User user = draft("Jo", "jo");
  ASSERT_TRUE(user.SetInfoWithPassword("Correct-Horse-7"));
  EXPECT_EQ(bind("CN=Jo").Description(), "Clerk");
  EXPECT_EQ(bind("CN=Jo").LoginHours(), base::Bytes(21, 0x0F));
  EXPECT_EQ(bind("CN=Jo").Get("userPrincipalName").text(), "jo@twk.test");
  EXPECT_EQ(bind("CN=Jo").Get("userAccountControl").integer(), platform::kFlagNormalAccount);
  EXPECT_NE(bind("CN=Jo").Get("pwdLastSet").text(), "0");
  user.put_Description("Driver");
  EXPECT_FALSE(user.SetInfoWithPassword("Correct-Horse-8")) << "it is stored by now";
  EXPECT_EQ(bind("CN=Jo").Description(), "Clerk");
  user.SetInfo();
  EXPECT_EQ(bind("CN=Jo").Description(), "Driver");
  user.SetPassword("Correct-Horse-8");

  EXPECT_FALSE(draft("Jo", "another").SetInfoWithPassword("Correct-Horse-7"));
  EXPECT_FALSE(draft("Another", "jo").SetInfoWithPassword("Correct-Horse-7"));
  EXPECT_EQ(number_of([&] { draft("Another", "jo").SetInfo(); }), ads_error::kObjectExists);

  User locked_away = draft("Al", "al");
  locked_away.Put("pwdLastSet", 0);
  locked_away.put_AccountDisabled(true);
  locked_away.put_AccountExpirationDate(base::make_date({2030, 5, 17}));
  ASSERT_TRUE(locked_away.SetInfoWithPassword("Correct-Horse-7"));
  EXPECT_TRUE(bind("CN=Al").AccountDisabled());
  EXPECT_EQ(bind("CN=Al").Get("pwdLastSet").text(), "0");
  EXPECT_EQ(bind("CN=Al").AccountExpirationDate(), base::make_date({2030, 5, 17}));
}

TEST_P(DirectoryContract, ExpiryReadsAsSentinelThroughLdapAndRaisesThroughWinnt) {
  User user(make_user(w_, "Jo", "jo"));
  EXPECT_EQ(user.AccountExpirationDate(), platform::never_expires());
  EXPECT_NE(number_of([&] { static_cast<void>(User(get_account(w_, "jo")).AccountExpirationDate()); }), 0U);
  const base::Date day = base::make_date({2030, 5, 17});
  user.put_AccountExpirationDate(day);
  user.SetInfo();
  EXPECT_EQ(User(get_account(w_, "jo")).AccountExpirationDate(), day);
  User account(get_account(w_, "jo"));
  account.put_AccountExpirationDate(base::Date{-1.0});
  account.SetInfo();
  EXPECT_EQ(User(get_entry(w_, "CN=Jo," + w_.unit())).AccountExpirationDate(), platform::never_expires());
}

TEST_P(DirectoryContract, RootDseAndPartitionsNameTheDomain) {
  const ObjectPtr root = get("LDAP://RootDSE");
  EXPECT_FALSE(root->Get("dnshostname").text().empty());
  EXPECT_EQ(root->Get("defaultNamingContext").text(), w_.root());
  const ObjectPtr partitions = get("LDAP://cn=Partitions," + root->Get("configurationNamingContext").text());
  std::map<std::string, ObjectPtr> seen;
  for (const ObjectPtr& child : children_of(partitions))
    seen.emplace(child->Get("Name").text(), child);
  EXPECT_TRUE(seen.contains("Enterprise Configuration") && seen.contains("Enterprise Schema"));
  EXPECT_EQ(seen.at(w_.netbios())->Get("dnsRoot").text(), w_.domain());
  EXPECT_EQ(get("LDAP://" + w_.domain())->Get("nTMixedDomain").integer(), 0);
}

TEST_P(DirectoryContract, NameSpacesEnumerateTheDomain) {
  for (const auto& [space, child] : {std::pair{"WinNT:", w_.netbios()}, std::pair{"GC:", w_.domain()}}) {
    EXPECT_EQ(children_of(get(space)).back()->ADsPath(), std::string(space) + "//" + child);
  }
}

TEST_P(DirectoryContract, WinntDomainEnumeratesUsersWithoutComputers) {
  make_user(w_, "Jo", "jo");
  make_group(w_, "Readers");
  const ObjectPtr domain = get("WinNT://" + w_.netbios());
  for (const std::string object_class : {"User", "Group"}) {
    const auto children = children_of(domain, {object_class});
    EXPECT_THAT(names_of(children), testing::Contains(object_class == "User" ? "jo" : "Readers"));
    for (const ObjectPtr& child : children) {
      EXPECT_EQ(child->Class(), object_class);
      EXPECT_FALSE(child->Name().ends_with("$")) << child->Name();
    }
  }
}

TEST_P(DirectoryContract, WinntDomainMakesRenamesAndDeletesAccounts) {
  const ObjectPtr domain = get("WinNT://" + w_.netbios());
  User user(domain->Create("User", "jo"));
  user.put_FullName("Jo Smith");
  user.SetInfo();
  EXPECT_EQ(number_of([&] { domain->Create("User", "JO")->SetInfo(); }), ads_error::kUserExists);
  const ObjectPtr renamed = domain->MoveHere("WinNT://" + w_.netbios() + "/jo", "joanna");
  EXPECT_EQ(renamed->Name(), "joanna");
  EXPECT_EQ(domain->GetObject("user", "joanna")->Get("FullName").text(), "Jo Smith");
  domain->Delete("User", "joanna");
  EXPECT_EQ(number_of([&] { domain->GetObject("user", "joanna"); }), ads_error::kUserNotFound);
}

TEST_P(DirectoryContract, SchemaTellsSyntaxAndWhetherSeveralValuesFit) {
  const ObjectPtr schema = get(get("LDAP://Schema/User")->Parent());
  const struct {
    const char* attribute;
    const char* syntax;
    bool multi_valued;
  } cases[] = {{"displayName", "String", false},
               {"otherTelephone", "String", true},
               {"logonHours", "OctetString", false},
               {"userAccountControl", "Integer", false},
               {"accountExpires", "INTEGER8", false},
               {"manager", "DN", false},
               {"memberOf", "DN", true},
               {"msNPAllowDialin", "Boolean", false}};
  for (const auto& one : cases) {
    const ObjectPtr property = schema->GetObject("Property", one.attribute);
    EXPECT_EQ(property->Syntax(), one.syntax) << one.attribute;
    EXPECT_EQ(property->MultiValued(), one.multi_valued) << one.attribute;
  }
  EXPECT_EQ(number_of([&] { schema->GetObject("Property", "noSuchThing"); }), ads_error::kNoSuchObject);
  const ValueList names = get("LDAP://Schema/User")->Get("OptionalProperties").list();
  EXPECT_THAT(names, testing::Contains(Value("otherTelephone")));
  EXPECT_THAT(names, testing::Contains(Value("profilePath")));
  EXPECT_THAT(names, testing::Not(testing::Contains(Value("member")))) << "is of groups";
  const ValueList needed = get("LDAP://Schema/User")->Get("MandatoryProperties").list();
  EXPECT_THAT(needed, testing::IsSupersetOf({Value("objectClass"), Value("sAMAccountName"), Value("cn")}));
  for (const Value& name : needed)
    EXPECT_THAT(names, testing::Not(testing::Contains(name))) << name.text();
  EXPECT_EQ(get("LDAP://Schema/otherTelephone")->Syntax(), "String");
}

TEST_P(DirectoryContract, FileSharesAreMadeReadEnumeratedAndDeleted) {
  const std::string path = "WinNT://" + w_.file_server() + "/lanmanserver";
  const ObjectPtr server = get(path);
  store(server->Create("fileshare", "Homes$"),
        {{"Path", "D:\\Users"}, {"Description", "Home directories"}, {"MaxUserCount", -1}});
  EXPECT_EQ(get(path + "/homes$")->Get("Path").text(), w_.told_path("D:\\Users"));
  EXPECT_THAT(names_of(children_of(server, {"FileShare"})), testing::IsSupersetOf({"Homes$", "D$"}));
  EXPECT_NE(number_of([&] { store(server->Create("fileshare", "HOMES$"), {{"Path", "D:\\Users"}}); }), 0U);
  server->Delete("fileshare", "Homes$");
  EXPECT_NE(number_of([&] { get(path + "/Homes$"); }), 0U);
}

}  // namespace twk::contract
