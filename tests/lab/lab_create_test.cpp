#include "lab/making/lab_create.hpp"

#include <set>

#include "lab_world.hpp"

namespace twk::lab {
namespace {

using contract::number_of;
namespace fs = std::filesystem;

LabPlan full_plan() {
  LabPlan plan = test::small_plan();
  plan.users = 300;
  plan.groups = 25;
  plan.ous = 12;
  return plan;
}

std::size_t count(test::LabWorld& world, const std::string& filter) {
  return contract::column_of(world, "<LDAP://twk.test>;" + filter + ";name;subtree").size();
}

TEST(NewLab, HoldsWhatThePlanAsksFor) {
  test::LabWorld world(full_plan());
  EXPECT_EQ(count(world, "(&(objectCategory=Person)(objectClass=User)(mail=*))"), 300U);
  EXPECT_EQ(count(world, "(objectClass=organizationalUnit)"),
            12U + 2U);  // the controllers' and the test's own
  EXPECT_EQ(count(world, "(&(objectClass=group)(!(isCriticalSystemObject=TRUE)))"), 0U);
  EXPECT_EQ(count(world, "(objectClass=group)"), 25U + 8U);
  EXPECT_GT(count(world, "(&(objectClass=group)(member=*))"), 20U);
}

TEST(NewLab, AccountNamesAndIdentifiersAreUnique) {
  test::LabWorld world(full_plan());
  std::set<std::string> names;
  std::set<base::Bytes> sids;
  const auto domain = world.directory().GetObject("WinNT://TWK");
  for (const platform::ObjectPtr& user : contract::children_of(domain, {"User"})) {
    EXPECT_TRUE(names.insert(user->Name()).second) << user->Name();
    EXPECT_LE(user->Name().size(), 20U);
    EXPECT_TRUE(sids.insert(user->Get("objectSID").bytes()).second) << user->Name();
  }
  EXPECT_EQ(names.size(), 303U);
  const auto fresh = contract::make_user(world, "Fresh", "fresh");
  EXPECT_TRUE(sids.insert(fresh->Get("objectSid").bytes()).second);
}

TEST(NewLab, EqualSeedsMakeEqualDirectories) {
  const test::TemporaryDirectory folder;
  LabPlan plan = full_plan();
  create_lab(folder / "a", plan);
  create_lab(folder / "b", plan);
  plan.seed = 2;
  create_lab(folder / "c", plan);
  EXPECT_EQ(test::get_file(folder / "a/domain.ldif"), test::get_file(folder / "b/domain.ldif"));
  EXPECT_NE(test::get_file(folder / "a/domain.ldif"), test::get_file(folder / "c/domain.ldif"));
}

TEST(NewLab, PersonOfTheWorkstationIsADomainAdministrator) {
  test::LabWorld world;
  const auto admins = world.directory().GetObject("WinNT://twk.test/Domain Admins");
  EXPECT_TRUE(admins->IsMember("WinNT://twk.test/tester"));
  EXPECT_FALSE(admins->IsMember("WinNT://twk.test/Guest"));
}

TEST(NewLab, OnlyTheOwnerHasAccess) {
  test::LabWorld world;
  for (const fs::directory_entry& entry : fs::recursive_directory_iterator(world.folder())) {
    const auto others = fs::perms::group_all | fs::perms::others_all;
    EXPECT_EQ(entry.status().permissions() & others, fs::perms::none) << entry.path();
  }
  EXPECT_TRUE(fs::is_directory(world.folder() / "servers/FS1/D/Profiles"));
  EXPECT_TRUE(fs::is_directory(world.lab().database_path()));
}

TEST(NewLab, FolderInUseOrPlanThatCannotBeIsRefused) {
  const test::TemporaryDirectory folder;
  test::put_file(folder / "something", "x");
  EXPECT_EQ(number_of([&] { create_lab(folder.path(), test::small_plan()); }), base::error::kPathFileAccess);
  LabPlan bad_domain = test::small_plan();
  bad_domain.domain = "no dots";
  LabPlan bad_server = test::small_plan();
  bad_server.servers = {{"../outside", {"C"}}};
  LabPlan bad_drive = test::small_plan();
  bad_drive.servers = {{"FS1", {"CD"}}};
  for (const LabPlan& plan : {bad_domain, bad_server, bad_drive}) {
    EXPECT_NE(number_of([&] { create_lab(folder / "new", plan); }), 0U);
    EXPECT_FALSE(fs::exists(folder / "new"));
  }
}

TEST(ImportedLab, DomainFromAnExportGetsItsConfigurationAndContinuesWithItsIds) {
  const test::TemporaryDirectory folder;
  test::put_file(folder / "lab.conf", "domain = corp.example\n");
  test::put_file(folder / "domain.ldif",
                 "dn: DC=corp,DC=example\nobjectClass: top\nobjectClass: domain\nobjectClass: domainDNS\n"
                 "objectSid:: AQQAAAAAAAUVAAAAAQAAAAIAAAADAAAA\n\n"
                 "dn: CN=Users,DC=corp,DC=example\nobjectClass: top\nobjectClass: container\n\n"
                 "dn: CN=Jo,CN=Users,DC=corp,DC=example\nobjectClass: top\nobjectClass: person\n"
                 "objectClass: organizationalPerson\nobjectClass: user\nsAMAccountName: jo\n"
                 "objectSid:: AQUAAAAAAAUVAAAAAQAAAAIAAAADAAAA0gQAAA==\n\n");
  Lab lab(folder.path(), [](const std::string& warning) { ADD_FAILURE() << warning; });
  test::ScriptedDialogs dialogs;
  auto& directory = lab.platform(dialogs).directory;
  EXPECT_EQ(directory.GetObject("LDAP://corp.example")->Get("nTMixedDomain").integer(), 0);
  EXPECT_EQ(directory.GetObject("LDAP://CN=CORP,CN=Partitions,CN=Configuration,DC=corp,DC=example")
                ->Get("dnsRoot")
                .text(),
            "corp.example");
  const auto user =
      test::store(directory.GetObject("LDAP://CN=Users,DC=corp,DC=example")->Create("user", "cn=New"),
                  {{"samAccountName", "new"}});
  const base::Bytes sid = user->Get("objectSid").bytes();
  EXPECT_EQ(sid[24] | sid[25] << 8, 1235);
}

}  // namespace
}  // namespace twk::lab
