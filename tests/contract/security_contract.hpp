#pragma once

#include "contract/world.hpp"
#include "platform/access_check.hpp"

namespace twk::contract {

namespace security_error = platform::security_error;
namespace information = platform::security_information;

class SecurityContract : public Contract {
 protected:
  static constexpr std::size_t kBuffer = 4000;

  std::string users() const { return "\\\\" + world_->file_server() + "\\D$\\Users"; }
  std::string make_folder(const std::string& name) {
    const std::string path = users() + "\\" + name;
    world_->files().make_directory(path);
    return path;
  }
  platform::Sid sid(std::string_view account) { return security_.LookupAccountName({}, account).sid; }
  platform::SecurityDescriptor list_of(const std::string& path) {
    return security_.GetFileSecurity(path, information::kDacl, kBuffer);
  }
  platform::Sid owner_of(const std::string& path) {
    return security_.GetFileSecurity(path, information::kOwner, kBuffer).owner.value();
  }
  void write_list(const std::string& path, const std::vector<platform::Ace>& entries) {
    security_.SetFileSecurity(path, information::kDacl, test::with_list(entries));
  }
  void write_owner(const std::string& path, const platform::Sid& owner) {
    platform::SecurityDescriptor descriptor;
    descriptor.owner = owner;
    security_.SetFileSecurity(path, information::kOwner, descriptor);
  }
  void enable(std::string_view privilege, bool on) {
    security_.OpenProcessToken()->AdjustTokenPrivileges(security_.LookupPrivilegeValue(privilege), on);
  }

  platform::Security& security_ = world_->security();
};

TEST_P(SecurityContract, NamesThatEveryServerKnowsHaveTheirIdentifiers) {
  const std::pair<const char*, const char*> cases[] = {{"System", "S-1-5-18"},
                                                       {"everyone", "S-1-1-0"},
                                                       {"Administrators", "S-1-5-32-544"},
                                                       {"BUILTIN\\Users", "S-1-5-32-545"},
                                                       {"NT AUTHORITY\\SYSTEM", "S-1-5-18"}};
  for (const std::string& server : {std::string(), world_->file_server()}) {
    for (const auto& [name, sid] : cases)
      EXPECT_EQ(security_.LookupAccountName(server, name).sid.text(), sid) << name << server;
  }
}

TEST_P(SecurityContract, AccountOfTheDomainIsKnownOnEachServerByEachOfItsNames) {
  make_user(*world_, "Jo Smith", "jsmith");
  const platform::Sid jo = sid("jsmith");
  for (const std::string& server : {std::string(), world_->file_server(), "\\\\" + world_->file_server()}) {
    const auto found = security_.LookupAccountName(server, world_->netbios() + "\\JSMITH");
    EXPECT_EQ(found.sid, jo) << server;
    EXPECT_EQ(found.domain, world_->netbios());
  }
  EXPECT_EQ(security_.LookupAccountSid({}, jo), world_->netbios() + "\\jsmith");
  EXPECT_EQ(security_.LookupAccountSid({}, platform::well_known::everyone()), "Everyone");
  EXPECT_EQ(security_.LookupAccountSid({}, platform::Sid(5, {21, 1, 2, 3, 4})), "S-1-5-21-1-2-3-4");
}

TEST_P(SecurityContract, UnknownNamesAndServersAreToldApart) {
  for (const char* const name : {"nobody", "OTHER\\Administrator", "", "\\", "a\\b\\c"}) {
    EXPECT_EQ(number_of([&] { security_.LookupAccountName({}, name); }), security_error::kNoneMapped) << name;
  }
  EXPECT_EQ(number_of([&] { security_.LookupAccountName("NOWHERE", "Administrator"); }),
            security_error::kServerUnavailable);
  EXPECT_EQ(number_of([&] { security_.account_identifiers("nobody"); }), security_error::kNoneMapped);
}

TEST_P(SecurityContract, LogonHasTheGroupsAtAnyDepth) {
  const auto user = make_user(*world_, "Jo Smith", "jsmith");
  const auto inner = make_group(*world_, "Inner");
  const auto outer = make_group(*world_, "Outer");
  make_group(*world_, "Other");
  inner->Add(user->ADsPath());
  outer->Add(inner->ADsPath());
  const std::vector<platform::Sid> all = security_.account_identifiers("jsmith");
  const std::set<platform::Sid> found(all.begin(), all.end());
  for (const char* const name :
       {"jsmith", "Inner", "Outer", "Domain Users", "Users", "Everyone", "Authenticated Users"}) {
    EXPECT_TRUE(found.contains(sid(name))) << name;
  }
  for (const char* const name : {"Other", "Domain Admins", "Administrators"})
    EXPECT_FALSE(found.contains(sid(name))) << name;
}

TEST_P(SecurityContract, ListThatIsWrittenIsReadBackAndTheOwnerStays) {
  const std::string home = make_folder("jo");
  const platform::Sid owner = owner_of(home);
  const platform::Ace ace(platform::ace_type::kDeny, 3, platform::access::kFileAll,
                          platform::well_known::users());
  write_list(home, {ace});
  EXPECT_EQ(list_of(home).dacl->entries(), std::vector{ace});
  EXPECT_EQ(owner_of(home), owner);
  EXPECT_FALSE(list_of(home).owner);
  EXPECT_EQ(number_of([&] { security_.GetFileSecurity(home, information::kDacl, 8); }),
            security_error::kInsufficientBuffer);
  EXPECT_EQ(number_of([&] { list_of(users() + "\\none"); }), base::error::kFileNotFound);
}

TEST_P(SecurityContract, WhatIsMadeInAFolderInheritsItsList) {
  const std::string home = make_folder("jo");
  const platform::Sid users = platform::well_known::users();
  write_list(home, {{platform::ace_type::kAllow, 9, 0x1200A9, users},
                    {platform::ace_type::kAllow, 2, 0x1301BF, users}});
  world_->files().make_directory(home + "\\Mail");
  world_->files().write(home + "\\note.txt", "text");
  const std::vector users_only = {users};
  EXPECT_EQ(platform::granted_access(list_of(home), users_only), 0x1301BFU);
  EXPECT_EQ(platform::granted_access(list_of(home + "\\Mail"), users_only), 0x1301BFU);
  EXPECT_EQ(platform::granted_access(list_of(home + "\\note.txt"), users_only), 0x1200A9U);
}

TEST_P(SecurityContract, ForeignOwnerIsWrittenWithThePrivilegeAlone) {
  const std::string home = make_folder("jo");
  make_user(*world_, "Jo Smith", "jsmith");
  if (!world_->server_holds_privileges()) {
    EXPECT_EQ(number_of([&] { write_owner(home, sid("jsmith")); }), security_error::kInvalidOwner);
  }
  enable(platform::privilege::kRestore, true);
  write_owner(home, sid("jsmith"));
  enable(platform::privilege::kRestore, false);
  EXPECT_EQ(owner_of(home), sid("jsmith"));
  EXPECT_EQ(number_of([&] { security_.LookupPrivilegeValue("SeNoSuchPrivilege"); }),
            security_error::kNoSuchPrivilege);
}

TEST_P(SecurityContract, LockedOutAdministratorGetsInAsOwner) {
  const std::string home = make_folder("jo");
  make_user(*world_, "Jo Smith", "jsmith");
  enable(platform::privilege::kRestore, true);
  write_owner(home, sid("jsmith"));
  write_list(home, {{platform::ace_type::kAllow, 3, platform::access::kFileAll, sid("jsmith")}});
  enable(platform::privilege::kRestore, false);
  EXPECT_EQ(number_of([&] { list_of(home); }), security_error::kAccessDenied);
  EXPECT_EQ(number_of([&] {
              write_list(home, {{platform::ace_type::kAllow, 0, 1, platform::well_known::everyone()}});
            }),
            security_error::kAccessDenied);
  EXPECT_EQ(number_of([&] { world_->files().list(home); }), base::error::kPermissionDenied);
  EXPECT_EQ(number_of([&] { world_->files().make_directory(home + "\\x"); }), base::error::kPermissionDenied);
  EXPECT_EQ(number_of([&] { world_->files().write(home + "\\x.txt", "x"); }), base::error::kPermissionDenied);
  enable(platform::privilege::kRestore, true);
  write_owner(home, platform::well_known::administrators());
  enable(platform::privilege::kRestore, false);
  write_list(home, {{platform::ace_type::kAllow, 3, platform::access::kFileAll,
                     platform::well_known::administrators()}});
  world_->files().make_directory(home + "\\x");
}

}  // namespace twk::contract
