#include <gmock/gmock.h>

#include "live/nt/nt_world.hpp"
#include "platform/account_listing.hpp"

namespace twk::live {
namespace {

using contract::children_of;
using contract::names_of;
using contract::number_of;
using platform::User;
using platform::Value;
namespace ads_error = platform::ads_error;

using NtDirectory = test::NtDomainTest;

TEST_F(NtDirectory, LdapDoesNotAnswer) {
  for (const char* const path :
       {"LDAP://RootDSE", "LDAP://OLDNT", "LDAP://CN=Users,DC=OLDNT", "GC://OLDNT", "LDAP://Schema/User"})
    EXPECT_EQ(number_of([&] { get(path); }), ads_error::kServerDown) << path;
  EXPECT_EQ(number_of([&] {
              query_.execute(platform::parse_query_text("<LDAP://OLDNT>;(objectClass=*);name;subtree"), {});
            }),
            ads_error::kServerDown);
  EXPECT_EQ(children_of(get("WinNT:")).at(0)->ADsPath(), "WinNT://OLDNT");
  EXPECT_THAT(children_of(get("GC:")), testing::IsEmpty());
}

TEST_F(NtDirectory, AccountIsMadeFilledAndPutIntoGroups) {
  const auto domain = domain_object();
  User user(domain->Create("User", "jo"));
  const std::pair<const char*, const char*> texts[] = {{"FullName", "Jö Smith"},
                                                       {"Description", "Clerk"},
                                                       {"HomeDirectory", "\\\\OLDPDC\\Users\\jo"},
                                                       {"Profile", "\\\\OLDPDC\\Profiles\\jo"},
                                                       {"LoginScript", "logon.bat"},
                                                       {"HomeDirDrive", "H:"}};
  for (const auto& [name, text] : texts)
    user.Put(name, text);
  base::Bytes hours(21, 0xFF);
  hours[3] = 0x0F;
  user.put_LoginHours(hours);
  user.SetInfo();
  user.SetPassword("Correct-Horse-7");
  user.Put("PasswordExpired", 1);
  user.put_AccountDisabled(true);
  user.SetInfo();
  for (const std::int32_t flag : {0x40, 0x10000}) {
    user.Put("UserFlags", user.Get("UserFlags").integer() | flag);
    user.SetInfo();
  }
  const auto group = domain->Create("Group", "Readers & Co");
  group->SetInfo();
  group->Add(user.ADsPath());

  const User read(account("jo"));
  for (const auto& [name, text] : texts)
    EXPECT_EQ(read.Get(name).text(), text);
  EXPECT_EQ(read.LoginHours(), hours);
  EXPECT_EQ(read.Get("UserFlags").integer(), 0x10242);
  EXPECT_TRUE(read.AccountDisabled());
  EXPECT_FALSE(read.IsAccountLocked());
  EXPECT_EQ(read.Get("PasswordExpired").integer(), 1);
  EXPECT_THAT(names_of(read.Groups()), testing::ElementsAre("Domain Users", "Readers & Co"));
  EXPECT_EQ(account("Readers & Co")->Get("groupType").integer(), 2);
  // The same of the list of all users, which is one call.
  std::vector<std::string> listed;
  dynamic_cast<platform::AccountListing&>(*domain).list_users([&](const platform::ListedUser& one) {
    const bool disabled = (one.flags & platform::kFlagAccountDisabled) != 0;
    listed.push_back(one.name + " " + one.full_name + " " + one.description + (disabled ? " disabled" : ""));
    return true;
  });
  EXPECT_THAT(listed, testing::IsSupersetOf({"jo Jö Smith Clerk disabled", "root root "}));
}

TEST_F(NtDirectory, EachSettingIsWrittenSeparately) {
  User user = make_user("jo");
  user.put_FullName("Jo");
  user.Put("UserFlags", user.Get("UserFlags").integer() | 0x40);
  user.SetInfo();
  EXPECT_EQ(User(account("jo")).Get("UserFlags").integer() & 0x42, 0x40) << "enabled, password fixed";
  User other(account("jo"));
  user.put_Description("first");
  user.SetInfo();
  other.put_FullName("");
  other.Put("UserFlags", other.Get("UserFlags").integer() & ~0x40);
  other.SetInfo();
  const User read(account("jo"));
  EXPECT_EQ(read.FullName(), "");
  EXPECT_EQ(read.Description(), "first");
  EXPECT_EQ(read.Get("UserFlags").integer() & 0x40, 0);
}

TEST_F(NtDirectory, ExpiryIsADateOrNone) {
  User user = make_user("jo");
  EXPECT_NE(number_of([&] { static_cast<void>(User(account("jo")).AccountExpirationDate()); }), 0U);
  const base::Date day = base::make_date({2030, 5, 17});
  user.put_AccountExpirationDate(day);
  user.SetInfo();
  EXPECT_EQ(User(account("jo")).AccountExpirationDate(), day);
  user.put_AccountExpirationDate(base::Date{-1.0});
  user.SetInfo();
  EXPECT_NE(number_of([&] { static_cast<void>(User(account("jo")).AccountExpirationDate()); }), 0U);
}

TEST_F(NtDirectory, NamesInUseAreRefusedByTheNumberOfTheirKind) {
  const auto domain = domain_object();
  make_user("jo");
  domain->Create("Group", "Readers")->SetInfo();
  EXPECT_EQ(number_of([&] { make_user("JO"); }), ads_error::kUserExists);
  EXPECT_EQ(number_of([&] { domain->Create("Group", "readers")->SetInfo(); }), ads_error::kGroupExists);
  for (const char* const name : {"a/b", "a\nb", "twenty-one characters", "...", "jo.", "a*", "", "\xFF"})
    EXPECT_EQ(number_of([&] { domain->Create("User", name); }), ads_error::kInvalidAccountName) << name;
  EXPECT_EQ(number_of([&] { domain->Create("Computer", "x"); }), ads_error::kUnwilling);
}

TEST_F(NtDirectory, RenamedAccountIsKnownOnlyByItsNewName) {
  const auto domain = domain_object();
  make_user("old");
  EXPECT_EQ(domain->MoveHere("WinNT://OLDNT/old", "new")->Name(), "new");
  EXPECT_EQ(number_of([&] { account("old"); }), ads_error::kUserNotFound);
  make_user("old");
  EXPECT_EQ(number_of([&] { domain->MoveHere("WinNT://OLDNT/new", "OLD"); }), ads_error::kUserExists);
  EXPECT_EQ(domain->GetObject("user", "NEW")->Name(), "new");
  domain->Delete("User", "new");
  EXPECT_EQ(number_of([&] { domain->GetObject("user", "new"); }), ads_error::kUserNotFound);
  EXPECT_EQ(number_of([&] { domain->Delete("Group", "new"); }), ads_error::kGroupNotFound);
  EXPECT_EQ(number_of([&] { domain->Delete("Group", "old"); }), ads_error::kGroupNotFound);
}

TEST_F(NtDirectory, MembershipActsAtOnceAndReportsWhatWasAlreadySo) {
  const User user = make_user("jo");
  test::store(domain_object()->Create("Group", "Readers"), {{"Description", "who reads"}});
  const std::string path = user.ADsPath();
  for (const std::string name : {"Readers", "Helpers"}) {
    SCOPED_TRACE(name);
    const auto one = account(name);
    EXPECT_FALSE(one->IsMember(path));
    EXPECT_EQ(number_of([&] { one->Remove(path); }), ads_error::kMemberNotInGroup);
    one->Add(path);
    EXPECT_TRUE(one->IsMember(path));
    EXPECT_EQ(number_of([&] { one->Add(path); }), ads_error::kMemberInGroup);
    EXPECT_THAT(names_of(one->Members()), testing::ElementsAre("jo"));
    EXPECT_EQ(number_of([&] { one->Add("WinNT://OLDNT/nobody"); }), ads_error::kUserNotFound);
    EXPECT_EQ(number_of([&] { one->Add("WinNT://OTHER/jo"); }), ads_error::kNoSuchDomain);
  }
  EXPECT_THAT(names_of(user.Groups()), testing::ElementsAre("Domain Users", "Readers", "Helpers"));
  EXPECT_EQ(account("Helpers")->Get("groupType").integer(), 4);
  EXPECT_EQ(account("Readers")->Get("Description").text(), "who reads");
  for (const std::string name : {"Readers", "Helpers"})
    account(name)->Remove(path);
  EXPECT_THAT(names_of(account("jo")->Groups()), testing::ElementsAre("Domain Users"));
}

TEST_F(NtDirectory, DomainListsUsersAndBothKindsOfGroups) {
  make_user("jo");
  const auto names = [&](const std::string& object_class) {
    const auto children = children_of(domain_object(), {object_class});
    for (const platform::ObjectPtr& child : children)
      EXPECT_EQ(child->Class(), object_class);
    return names_of(children);
  };
  EXPECT_THAT(names("User"), testing::UnorderedElementsAre("root", "jo"));
  EXPECT_THAT(names("Group"),
              testing::UnorderedElementsAre("Domain Admins", "Domain Users", "Helpers", "Administrators"));
  EXPECT_THAT(names_of(account("Domain Users")->Members()), testing::ElementsAre("jo"));
}

TEST_F(NtDirectory, ValuesThatBreakTheirPropertyAreRefusedAndChangeNothing) {
  const auto user = make_user("jo").object();
  EXPECT_EQ(number_of([&] { user->Put("noSuchThing", "x"); }), ads_error::kNoSuchAttribute);
  const struct {
    const char* property;
    Value value;
  } cases[] = {{"LoginHours", base::Bytes(3)}, {"FullName", "a\nb"}, {"HomeDirectory", "\xFF"}};
  for (const auto& one : cases) {
    const auto again = account("jo");
    again->Put("Description", "never written");
    again->Put(one.property, one.value);
    EXPECT_NE(number_of([&] { again->SetInfo(); }), 0U) << one.property;
    EXPECT_EQ(number_of([&] { account("jo")->Get("Description"); }), ads_error::kPropertyNotFound)
        << one.property;
  }
  const auto unborn = domain_object()->Create("User", "unborn");
  unborn->Put("LoginHours", base::Bytes(3));
  EXPECT_NE(number_of([&] { unborn->SetInfo(); }), 0U);
  EXPECT_EQ(number_of([&] { account("unborn"); }), ads_error::kUserNotFound);
}

TEST_F(NtDirectory, WrongPasswordAndMissingServerAreDistinguished) {
  LiveSettings settings = test::password_settings();
  settings.password = "wrong";
  LiveDomain wrong(settings);
  EXPECT_EQ(number_of([&] { LiveDirectory(wrong).GetObject("WinNT://OLDNT"); }), ads_error::kLogonFailure);
  settings.server = "NOWHERE";
  LiveDomain nowhere(settings);
  EXPECT_EQ(number_of([&] { LiveDirectory(nowhere).GetObject("WinNT://OLDNT"); }), 0x80070035U);
  EXPECT_EQ(number_of([&] { get("WinNT://OTHER"); }), ads_error::kNoSuchDomain);
}

TEST_F(NtDirectory, AccountsAreReadAfterTheServerRestarted) {
  make_user("jo");
  test::control("stop");
  test::control("start");
  User user(account("jo"));
  user.put_FullName("Jo");
  test::control("stop");
  test::control("start");
  user.SetInfo();
  user.SetPassword("Correct-Horse-7");
  EXPECT_EQ(User(account("jo")).FullName(), "Jo");
}

}  // namespace
}  // namespace twk::live
