#include "ads/ads_path.hpp"

#include <gtest/gtest.h>

#include "contract/world.hpp"

namespace twk::ads {
namespace {

using Kind = AdsPath::Kind;

TEST(AdsPathText, EveryFormIsTakenApart) {
  const struct {
    const char* text;
    Provider provider;
    Kind kind;
    const char* server;
    const char* name;
    const char* account_class;
  } cases[] = {
      {"LDAP:", Provider::kLdap, Kind::kNamespace, "", "", ""},
      {"gc:", Provider::kGc, Kind::kNamespace, "", "", ""},
      {"WinNT:", Provider::kWinnt, Kind::kNamespace, "", "", ""},
      {"LDAP://RootDSE", Provider::kLdap, Kind::kRootDse, "", "", ""},
      {"LDAP://dc1/rootdse", Provider::kLdap, Kind::kRootDse, "dc1", "", ""},
      {"LDAP://Schema", Provider::kLdap, Kind::kSchema, "", "", ""},
      {"LDAP://Schema/User", Provider::kLdap, Kind::kSchema, "", "User", ""},
      {"LDAP://twk.test", Provider::kLdap, Kind::kEntry, "twk.test", "", ""},
      {"LDAP://twk.test/CN=A/B,DC=x", Provider::kLdap, Kind::kEntry, "twk.test", "CN=A/B,DC=x", ""},
      {"LDAP://CN=A/B,DC=x", Provider::kLdap, Kind::kEntry, "", "CN=A/B,DC=x", ""},
      {"GC://twk.test", Provider::kGc, Kind::kEntry, "twk.test", "", ""},
      {"WinNT://TWK", Provider::kWinnt, Kind::kDomain, "TWK", "", ""},
      {"WinNT://TWK,domain", Provider::kWinnt, Kind::kDomain, "TWK", "", ""},
      {"WinNT://TWK/Domain Admins", Provider::kWinnt, Kind::kAccount, "TWK", "Domain Admins", ""},
      {"WinNT://TWK/jo,user", Provider::kWinnt, Kind::kAccount, "TWK", "jo", "user"},
      {"WinNT://FS1/LanManServer", Provider::kWinnt, Kind::kFileServer, "FS1", "", ""},
      {"WinNT://FS1/lanmanserver/Homes$", Provider::kWinnt, Kind::kFileShare, "FS1", "Homes$", ""},
  };
  for (const auto& one : cases) {
    SCOPED_TRACE(one.text);
    const AdsPath path = ads::parse_ads_path(one.text);
    EXPECT_EQ(path.provider, one.provider);
    EXPECT_EQ(path.kind, one.kind);
    EXPECT_EQ(path.server, one.server);
    EXPECT_EQ(path.name, one.name);
    EXPECT_EQ(path.account_class, one.account_class);
  }
}

TEST(AdsPathText, AnythingElseIsABadPathname) {
  for (const char* const text :
       {"", "LDAP", "HTTP://x", "LDAP:x", "LDAP:///CN=x", "LDAP://server/plain", "WinNT:///x",
        "WinNT://TWK/a/b", "WinNT://TWK//x", "WinNT://TWK/,user", "WinNT://a/b/c/d"}) {
    EXPECT_EQ(contract::number_of([&] { static_cast<void>(parse_ads_path(text)); }),
              platform::ads_error::kBadPathname)
        << text;
  }
}

}  // namespace
}  // namespace twk::ads
