#include "directory/names.hpp"

namespace twk::directory {
namespace {

TEST(Names, DomainNamesAndDistinguishedNamesBecomeEachOther) {
  const std::vector<std::pair<std::string, std::string>> cases = {
      {"DC=twk,DC=test", "twk.test"}, {"DC=a,DC=b,DC=c", "a.b.c"}, {"DC=OLDNT", "OLDNT"}, {"DC=", ""}};
  for (const auto& [dn, dns] : cases) {
    EXPECT_EQ(domain_distinguished_name(dns), dn);
    EXPECT_EQ(domain_dns_name(dn), dns);
  }
  EXPECT_EQ(domain_dns_name("DC=a,dc=b"), "a.b");
}

TEST(Names, WhatFollowsTheFirstDotIsHeldToAHundredCharacters) {
  const std::string label(120, 'x');
  EXPECT_EQ(domain_distinguished_name("a." + label), "DC=a,DC=" + std::string(100, 'x'));
}

TEST(Names, TheParentBeginsAfterTheFirstMarker) {
  struct Case {
    std::string path;
    std::string parent;
  };
  const std::vector<Case> users = {
      {"LDAP://twk.test/CN=Jo,OU=Sales,DC=twk,DC=test", "OU=Sales,DC=twk,DC=test"},
      {"LDAP://twk.test/CN=Jo,cn=Users,DC=twk,DC=test", "cn=Users,DC=twk,DC=test"},
      {"LDAP://twk.test/CN=Smith\\, Jo,OU=A,OU=B,DC=twk,DC=test", "OU=A,OU=B,DC=twk,DC=test"},
      {"LDAP://twk.test/CN=Jo\\,OU=x,OU=A,DC=twk,DC=test", "OU=A,DC=twk,DC=test"},
      {"LDAP://twk.test/CN=Jo\\\\,OU=A,DC=twk,DC=test", "OU=A,DC=twk,DC=test"},
      {"LDAP://twk.test/CN=Jo,DC=twk,DC=test", "DC=twk,DC=test"},
      {"CN=Jo", ""},
      {"", ""},
  };
  for (const Case& one : users)
    EXPECT_EQ(parent_of_user(one.path), one.parent) << one.path;
  EXPECT_EQ(parent_of_ou("OU=A,OU=B,DC=twk,DC=test"), "OU=B,DC=twk,DC=test");
  EXPECT_EQ(parent_of_ou("OU=A,CN=x,DC=twk"), "DC=twk");
  EXPECT_EQ(parent_of_ou("DC=twk,DC=test"), "DC=test");
}

TEST(Names, TheParentBeginsAtTheFirstCommaThatIsNotPartOfAName) {
  EXPECT_EQ(name_above("CN=Smith\\, Jo,OU=A,DC=twk"), "OU=A,DC=twk");
  EXPECT_EQ(name_above("CN=Jo\\\\,OU=A,DC=twk"), "OU=A,DC=twk") << "a backslash that is itself escaped";
  EXPECT_EQ(name_above("DC=test"), "");
  EXPECT_EQ(name_above("CN=Jo\\"), "");
  EXPECT_EQ(name_in_path("LDAP://twk.test/cn=Jo,OU=A"), "cn=Jo,OU=A");
  EXPECT_EQ(name_in_path("LDAP://twk.test"), "");
}

TEST(Names, AGlobalCataloguePathBecomesAnLdapPath) {
  EXPECT_EQ(rewrite_path("GC://", "GC://twk.test/CN=Jo"), "LDAP://twk.test/CN=Jo");
  EXPECT_EQ(rewrite_path("LDAP://", "LDAP://twk.test/CN=Jo"), "LDAP://twk.test/CN=Jo");
  EXPECT_EQ(rewrite_path("", "LDAP://twk.test/CN=Jo"), "LDAP://twk.test/CN=Jo");
}

TEST(Names, TheNameOfAnOuEndsAtTheNextMarker) {
  EXPECT_EQ(ou_name("OU=Sales,OU=Europe,DC=twk"), "Sales");
  EXPECT_EQ(ou_name("OU=Sales,DC=twk"), "Sales");
  EXPECT_EQ(ou_name("OU"), "");
}

}  // namespace
}  // namespace twk::directory
