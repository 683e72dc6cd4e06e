#include <set>

#include "base/text.hpp"
#include "lab_world.hpp"
#include "local/system_clock.hpp"
#include "support/variable.hpp"

namespace twk::lab {
namespace {

using contract::get_account;
using contract::get_entry;
using contract::make_group;
using contract::make_user;
using contract::number_of;
using platform::User;
namespace ads_error = platform::ads_error;

/// A lab with custom rules.
class LabRules : public testing::Test {
 protected:
  void set_policy(const PasswordPolicy& policy) {
    LabConfig config = w_.lab().config();
    config.passwords = policy;
    write_lab_config(w_.folder() / "lab.conf", config);
    w_.reopen();
  }
  std::uint32_t log_on(const std::string& user, const std::string& password) {
    return number_of([&] { w_.directory().OpenDSObject("LDAP://" + w_.domain(), user, password); });
  }

  test::LabWorld w_;
};

TEST_F(LabRules, PolicyDecidesWhichPasswordsPass) {
  const struct {
    PasswordPolicy policy;
    const char* password;
    bool passes;
  } cases[] = {
      {{7, true, 0}, "Abcdef1", true},
      {{7, true, 0}, "Abcde1", false},
      {{7, true, 0}, "abcdefg1", false},
      {{7, true, 0}, "abcd-efg1", true},
      {{7, true, 0}, "x-JSMITH-1", false},
      {{7, false, 0}, "abcdefg", true},
      {{0, true, 0}, "", true},
      {{1, true, 0}, "", false},
      {{4, true, 0}, "Äé1x", true},
      {{4, true, 0}, "山-1田", true},
      {{4, true, 0}, "山x田y", false},
      {{5, true, 0}, "Äé1x", false},
  };
  make_user(w_, "Jo", "jsmith");
  for (const auto& one : cases) {
    set_policy(one.policy);
    const std::uint32_t number = number_of([&] { get_account(w_, "jsmith")->SetPassword(one.password); });
    EXPECT_EQ(number, one.passes ? 0U : ads_error::kPasswordPolicy) << one.password;
  }
}

TEST_F(LabRules, LogonKnowsTheUserByEveryName) {
  const auto user = make_user(w_, "Jo", "jsmith");
  test::store(user, {{"userPrincipalName", "jo@twk.test"}});
  user->SetPassword("Correct-Horse-7");
  for (const char* const name :
       {"jsmith", "TWK\\jsmith", "twk.test\\JSMITH", "jo@twk.test", "CN=Jo,OU=Tests,DC=twk,DC=test"}) {
    EXPECT_EQ(log_on(name, "Correct-Horse-7"), 0U) << name;
    EXPECT_EQ(log_on(name, "wrong"), ads_error::kLogonFailure) << name;
  }
  EXPECT_EQ(log_on("OTHER\\jsmith", "Correct-Horse-7"), ads_error::kLogonFailure);
  EXPECT_EQ(log_on("nobody", ""), ads_error::kLogonFailure);
  EXPECT_EQ(log_on("", ""), 0U);
}

TEST_F(LabRules, AccountWithoutPasswordOrDisabledCannotLogOn) {
  User user(make_user(w_, "Jo", "jsmith"));
  EXPECT_EQ(log_on("jsmith", ""), ads_error::kLogonFailure);
  user.SetPassword("Correct-Horse-7");
  user.put_AccountDisabled(true);
  user.SetInfo();
  EXPECT_EQ(log_on("jsmith", "Correct-Horse-7"), ads_error::kLogonFailure);
}

TEST_F(LabRules, AnAccountEndsAndIsMadeInUtcWhateverTheZone) {
  const auto utc_now = [] { return base::to_filetime(local::SystemClock().utc_now()); };
  constexpr std::int64_t kMinute = 600'000'000;
  for (const char* const zone : {"XXX+11", "XXX-11"}) {
    const test::TimeZone here(zone);
    const std::string name = zone[3] == '+' ? "west" : "east";
    const auto user = make_user(w_, name, name);
    user->SetPassword("Correct-Horse-7");
    for (const std::string_view made : {"pwdLastSet", "whenCreated"}) {
      const std::int64_t at = made == "whenCreated" ? base::to_filetime(user->Get(made).date())
                                                    : std::stoll(user->Get(made).text());
      EXPECT_LT(std::abs(at - utc_now()), kMinute) << zone << " " << made;
    }
    for (const int minutes : {-5, 5}) {
      test::store(user, {{"accountExpires", base::to_text(utc_now() + minutes * kMinute)}});
      EXPECT_EQ(log_on(name, "Correct-Horse-7") == 0, minutes > 0) << zone << " " << minutes;
    }
  }
}

TEST_F(LabRules, WrongPasswordsLockTheAccountUntilItIsUnlocked) {
  set_policy({7, true, 3});
  make_user(w_, "Jo", "jsmith")->SetPassword("Correct-Horse-7");
  EXPECT_NE(log_on("jsmith", "wrong"), 0U);
  EXPECT_NE(log_on("jsmith", "wrong"), 0U);
  EXPECT_EQ(log_on("jsmith", "Correct-Horse-7"), 0U);
  for (int i = 0; i < 3; ++i)
    EXPECT_NE(log_on("jsmith", "wrong"), 0U);
  EXPECT_EQ(log_on("jsmith", "Correct-Horse-7"), ads_error::kLogonFailure);
  User account(get_account(w_, "jsmith"));
  EXPECT_TRUE(account.IsAccountLocked());
  EXPECT_TRUE(User(get_entry(w_, "CN=Jo,OU=Tests,DC=twk,DC=test")).IsAccountLocked());
  account.Put("UserFlags", account.Get("UserFlags").integer() | 64);
  account.SetInfo();
  EXPECT_TRUE(User(get_account(w_, "jsmith")).IsAccountLocked());
  account.put_IsAccountLocked(false);
  account.SetInfo();
  EXPECT_EQ(log_on("jsmith", "Correct-Horse-7"), 0U);
}

TEST_F(LabRules, WhatIsKeptOfAPasswordIsNeitherReadNorTheWord) {
  const auto user = make_user(w_, "Jo", "jsmith");
  user->SetPassword("Correct-Horse-7");
  EXPECT_EQ(number_of([&] { user->Get("supplementalCredentials"); }), ads_error::kPropertyNotFound);
  EXPECT_THAT(contract::column_of(w_, "<LDAP://twk.test>;(supplementalCredentials=*);name;subtree"),
              testing::IsEmpty());
  const std::string journal = test::get_file((w_.folder() / "domain.journal.ldif").string());
  EXPECT_NE(journal.find("supplementalCredentials"), std::string::npos);
  EXPECT_EQ(journal.find("Correct-Horse-7"), std::string::npos);
}

TEST_F(LabRules, RelativeIdsAreNeverReused) {
  std::set<base::Bytes> seen;
  const auto remember = [&](const std::string& account) {
    EXPECT_TRUE(seen.insert(get_account(w_, account)->Get("objectSID").bytes()).second) << account;
  };
  for (int i = 0; i < 70; ++i) {
    const std::string account = "u" + std::to_string(i);
    make_user(w_, account, account);
    remember(account);
    if (i % 2 == 0)
      get_entry(w_, w_.unit())->Delete("user", "CN=" + account);
  }
  w_.reopen();
  make_user(w_, "later", "later");
  remember("later");
  test::OtherProgram other(w_);
  const auto user = test::store(
      other.platform().directory.GetObject("LDAP://OU=Tests,DC=twk,DC=test")->Create("user", "cn=theirs"),
      {{"samAccountName", "theirs"}});
  remember("theirs");
}

TEST_F(LabRules, TwoProgramsCannotGiveOneAccountNameTwice) {
  test::OtherProgram other(w_);
  make_user(w_, "Jo", "jsmith");
  auto& directory = other.platform().directory;
  const auto user = directory.GetObject("LDAP://OU=Tests,DC=twk,DC=test")->Create("user", "cn=Other");
  EXPECT_EQ(number_of([&] { test::store(user, {{"samAccountName", "jsmith"}}); }), ads_error::kObjectExists);
  EXPECT_EQ(directory.GetObject("WinNT://TWK/jsmith")->Name(), "jsmith");
}

TEST_F(LabRules, CannotChangePasswordOutlivesFlagsWrittenThroughLdap) {
  User user(make_user(w_, "Jo", "jsmith"));
  user.put_AccountDisabled(true);
  const auto account = get_account(w_, "jsmith");
  test::store(account, {{"UserFlags", account->Get("UserFlags").integer() | 64}});
  user.SetInfo();
  EXPECT_EQ(get_account(w_, "jsmith")->Get("UserFlags").integer() & 66, 66);
}

TEST_F(LabRules, WhatTheDomainNeedsIsNeitherDeletedNorMoved) {
  const auto users = get_entry(w_, "CN=Users,DC=twk,DC=test");
  EXPECT_EQ(number_of([&] { users->Delete("user", "CN=Administrator"); }), ads_error::kUnwilling);
  EXPECT_EQ(number_of([&] { users->Delete("group", "CN=Domain Users"); }), ads_error::kUnwilling);
  const auto unit = get_entry(w_, w_.unit());
  EXPECT_EQ(number_of([&] { unit->MoveHere("LDAP://CN=Users,DC=twk,DC=test", std::nullopt); }),
            ads_error::kUnwilling);
  unit->Create("organizationalUnit", "OU=Below")->SetInfo();
  const auto below = get_entry(w_, "OU=Below," + w_.unit());
  EXPECT_EQ(number_of([&] { below->MoveHere("LDAP://" + w_.unit(), std::nullopt); }), ads_error::kUnwilling);
}

TEST_F(LabRules, PrimaryGroupOfAUserIsNotDeleted) {
  const auto user = make_user(w_, "Jo", "jsmith");
  const auto group = make_group(w_, "Readers");
  group->Add(user->ADsPath());
  test::store(user, {{"primaryGroupID", group->Get("primaryGroupToken")}});
  const auto unit = get_entry(w_, w_.unit());
  EXPECT_EQ(number_of([&] { unit->Delete("group", "CN=Readers"); }), ads_error::kUnwilling);
  EXPECT_EQ(number_of([&] { group->Add(user->ADsPath()); }), ads_error::kObjectExists);
  EXPECT_EQ(number_of([&] { group->Remove(user->ADsPath()); }), ads_error::kMemberNotInGroup);
}

TEST_F(LabRules, OnlyTheDirectoryWritesWhatItComputes) {
  make_user(w_, "Jo", "jsmith");
  for (const char* const attribute :
       {"objectSid", "memberOf", "cn", "name", "distinguishedName", "whenCreated"}) {
    const auto entry = get_entry(w_, "CN=Jo,OU=Tests,DC=twk,DC=test");
    EXPECT_EQ(number_of([&] { test::store(entry, {{attribute, "x"}}); }), ads_error::kUnwilling) << attribute;
  }
}

TEST_F(LabRules, EssentialAttributesOfAnAccountAreNotRemoved) {
  make_user(w_, "Jo", "jsmith");
  for (const char* const attribute : {"sAMAccountName", "userAccountControl", "primaryGroupID"}) {
    for (const int control : {1, 4}) {
      const auto entry = get_entry(w_, "CN=Jo,OU=Tests,DC=twk,DC=test");
      entry->PutEx(control, attribute, entry->Get(attribute));
      EXPECT_EQ(number_of([&] { entry->SetInfo(); }), ads_error::kConstraint) << attribute << control;
    }
  }
}

TEST_F(LabRules, CatalogueIsForReading) {
  make_user(w_, "Jo", "jsmith");
  const auto user = w_.directory().GetObject("GC://twk.test/CN=Jo,OU=Tests,DC=twk,DC=test");
  EXPECT_EQ(user->Get("samAccountName").text(), "jsmith");
  EXPECT_EQ(number_of([&] { test::store(user, {{"description", "x"}}); }), ads_error::kUnwilling);
}

TEST_F(LabRules, BatchIsSeenByOtherProgramsBeforeItEnds) {
  test::OtherProgram other(w_);
  platform::WriteBatch batch(w_.directory());
  make_user(w_, "Jo", "jsmith");
  EXPECT_EQ(other.platform().directory.GetObject("WinNT://TWK/jsmith")->Name(), "jsmith");
  batch.commit();
}

TEST_F(LabRules, ShareNeedsAFolderAndAName) {
  const auto server = w_.directory().GetObject("WinNT://FS1/lanmanserver");
  const std::pair<const char*, const char*> cases[] = {
      {"Homes", "D:\\Missing"}, {"Homes", "Q:\\"}, {"Homes", "D:\\..\\..\\db"}, {"Ho/mes", "D:\\Users"},
      {"", "D:\\Users"},        {"Homes", ""},     {"D$", "D:\\Users"}};
  for (const auto& [name, path] : cases) {
    const auto share = server->Create("fileshare", name);
    share->Put("Path", path);
    EXPECT_NE(number_of([&] { share->SetInfo(); }), 0U) << name << " " << path;
  }
  EXPECT_EQ(number_of([&] { w_.directory().GetObject("WinNT://NOWHERE/lanmanserver"); }), 0x80070035U);
}

TEST_F(LabRules, SettingsStayInTheFolder) {
  EXPECT_TRUE(
      w_.platform().registry.Reg_Write(platform::kHiveCurrentUser, "Software\\Lab", "Colour", "blue"));
  w_.reopen();
  std::string value;
  EXPECT_TRUE(w_.platform().registry.Reg_Read(platform::kHiveCurrentUser, "software\\lab", "colour", value));
  EXPECT_EQ(value, "blue");
  EXPECT_EQ(w_.lab().registry_listing().entries(platform::kHiveCurrentUser, "Software").size(), 1U);
}

}  // namespace
}  // namespace twk::lab
