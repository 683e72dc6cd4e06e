#include "world/connection_options.hpp"

#include "base/errors.hpp"
#include "local/registry_file.hpp"
#include "session/settings.hpp"
#include "support/temporary_directory.hpp"
#include "world/stored_connection.hpp"

namespace twk::test {
namespace {

using live::LiveSettings;
using testing::HasSubstr;
using world::ConnectionOptions;

ConnectionOptions make(const std::string& domain, const std::string& method = {},
                       const std::string& user = {}) {
  ConnectionOptions options;
  options.domain = domain;
  options.method = method;
  options.user = user;
  return options;
}

std::string refusal_of(const ConnectionOptions& options) {
  base::Trap trap;
  trap([&] { world::required_settings(options); });
  EXPECT_EQ(trap.number(), 5U);
  return trap.description();
}

TEST(ConnectionOptions, SayHowTheDomainIsReached) {
  ConnectionOptions options = make("twk.test", "StartTLS", "TWK\\jo");
  options.server = "dc1.twk.test";
  options.port = "3389";
  options.ca_file = "/etc/ca.pem";
  const LiveSettings settings = world::live_settings(options);
  EXPECT_EQ(settings.domain, "twk.test");
  EXPECT_EQ(settings.server, "dc1.twk.test");
  EXPECT_EQ(settings.port, 3389);
  EXPECT_EQ(settings.logon, LiveSettings::Logon::kPassword);
  EXPECT_EQ(settings.tls, LiveSettings::Tls::kStartTls);
  EXPECT_EQ(settings.user, "TWK\\jo");
  EXPECT_EQ(settings.ca_file, "/etc/ca.pem");
  EXPECT_EQ(settings.password, "");
  EXPECT_EQ(world::live_settings(make("twk.test")).logon, LiveSettings::Logon::kTicket);
  EXPECT_EQ(world::live_settings(make("twk.test", "ticket", "jo")).user, "jo");
}

TEST(ConnectionOptions, AreRefusedWithWhatIsWrong) {
  for (const char* const port : {"0", "65536", "ldap", "-1", "389x"}) {
    ConnectionOptions options = make("twk.test");
    options.port = port;
    EXPECT_THAT(refusal_of(options), HasSubstr(port));
  }
  EXPECT_THAT(refusal_of(make("twk.test", "telnet")), HasSubstr("telnet"));
  EXPECT_THAT(refusal_of(make("twk.test", "ldaps")), HasSubstr("user"));
  EXPECT_THAT(refusal_of(make("")), HasSubstr("no domain"));
  for (const char* const name : {"twk test", "a/b", ".test", "-x", "twk.test\n"})
    EXPECT_THAT(refusal_of(make(name)), HasSubstr("name of a domain"));
  ConnectionOptions options = make("twk.test");
  options.server = "ldap://dc1";
  EXPECT_THAT(refusal_of(options), HasSubstr("server"));
}

class StoredConnection : public testing::Test {
 protected:
  TemporaryDirectory folder_;
  live::Folders folders_{folder_ / "config", folder_ / "data"};
};

TEST_F(StoredConnection, IsReadAsItWasSavedAndHoldsNoPassword) {
  ConnectionOptions options = make("twk.test", "ldaps", "jo");
  options.server = "dc1.twk.test";
  options.port = "636";
  options.ca_file = "/etc/ca.pem";
  ASSERT_TRUE(world::store_connection(folders_, options));
  const ConnectionOptions stored = world::stored_connection(folders_);
  for (const world::ConnectionOption& one : world::connection_options())
    EXPECT_EQ(stored.*one.text, options.*one.text) << one.name;
  local::RegistryFile registry(live::registry_folder(folders_));
  const auto entries = registry.entries(platform::kHiveLocalMachine, std::string(session::kTree) + "\\Live");
  EXPECT_EQ(entries.size(), 5U);
  for (const platform::RegistryEntry& entry : entries)
    EXPECT_NE(entry.name, "Password");
}

TEST_F(StoredConnection, NamesNoDomainBeforeOneIsChosen) {
  EXPECT_FALSE(world::says_anything(world::stored_connection(folders_)));
  local::RegistryFile registry(live::registry_folder(folders_));
  registry.Reg_Write(platform::kHiveLocalMachine, std::string(session::kTree) + "\\Setup", "Domain",
                     "%Domain%");
  EXPECT_EQ(world::stored_connection(folders_).domain, "");
}

TEST(MergedConnection, TakesWhatIsStoredUnlessSomethingElseIsGiven) {
  ConnectionOptions stored = make("twk.test", "ldaps", "jo");
  stored.server = "dc1.twk.test";
  ConnectionOptions given;
  given.port = "3636";
  ConnectionOptions merged = world::merge_connection(stored, given);
  EXPECT_EQ(merged.server, "dc1.twk.test");
  EXPECT_EQ(merged.user, "jo");
  EXPECT_EQ(merged.port, "3636");
  given.domain = "TWK.test";
  EXPECT_EQ(world::merge_connection(stored, given).server, "dc1.twk.test");
}

TEST(MergedConnection, TakesNothingOfAnotherDomainAndNoUserOfAnotherMethod) {
  ConnectionOptions stored = make("twk.test", "ldaps", "jo");
  stored.server = "dc1.twk.test";
  const ConnectionOptions other = world::merge_connection(stored, make("corp.test"));
  EXPECT_EQ(other.server, "");
  EXPECT_EQ(other.user, "");
  EXPECT_EQ(other.method, "");
  ConnectionOptions ticket;
  ticket.method = "ticket";
  EXPECT_EQ(world::merge_connection(stored, ticket).user, "");
}

}  // namespace
}  // namespace twk::test
