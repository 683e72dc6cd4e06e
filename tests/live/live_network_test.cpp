#include <gtest/gtest.h>

#include "live/live_world.hpp"

namespace twk::live {
namespace {

using contract::number_of;
namespace network_error = platform::network_error;

class LiveNetworkTest : public testing::Test {
 protected:
  test::LiveWorld w_;
  platform::Network& network_ = w_.network();
};

TEST_F(LiveNetworkTest, ShareWhoseListTheServerDoesNotStoreIsRemovedAgain) {
  platform::ShareInfo502 share = contract::share_of("NoList");
  share.shi502_security_descriptor = test::with_list({});
  EXPECT_EQ(number_of([&] { network_.NetShareAdd(w_.file_server(), share); }),
            platform::security_error::kAccessDenied);
  EXPECT_EQ(number_of([&] { network_.NetShareGetInfo(w_.file_server(), "NoList"); }),
            network_error::kShareNotFound);
}

TEST_F(LiveNetworkTest, NamesThatNoServerHasReachNoServer) {
  EXPECT_EQ(number_of([&] { network_.NetGetDCName("\\\\NOWHERE", "TWK"); }), network_error::kBadNetPath);
  for (const char* const name : {"", "a b", "x]", "a\nb", "ncacn_np:x", "a@b"})
    EXPECT_EQ(number_of([&] { network_.NetShareEnum(name); }), network_error::kBadNetPath) << name;
}

TEST_F(LiveNetworkTest, CallIsMadeAgainAfterTheServerRestarted) {
  const std::string server = w_.file_server();
  const std::size_t count = network_.NetShareEnum(server).size();
  EXPECT_EQ(network_.NetGetDCName("", "TWK"), "\\\\DC1");
  test::control("stop");
  test::control("start");
  EXPECT_EQ(network_.NetShareEnum(server).size(), count);
  EXPECT_EQ(network_.NetGetDCName("", "TWK"), "\\\\DC1");
}

TEST_F(LiveNetworkTest, ServerThatDoesNotAnswerIsAbandoned) {
  LiveSettings hasty = test::live_settings();
  hasty.timeout_seconds = 2;
  LiveDomain domain(hasty);
  AccountService& accounts = domain.rpc().accounts(w_.file_server());
  EXPECT_TRUE(accounts.find("Administrator"));
  test::control("stall");
  EXPECT_EQ(number_of([&] { accounts.find("Administrator"); }), network_error::kBadNetPath);
  test::control("resume");
  EXPECT_TRUE(accounts.find("Administrator"));
}

TEST_F(LiveNetworkTest, WrongPasswordIsReported) {
  LiveSettings settings = test::password_settings();
  settings.password = "wrong";
  LiveDomain domain(settings);
  LiveNetwork network(domain);
  EXPECT_EQ(number_of([&] { network.NetShareEnum(w_.file_server()); }), kRpcLogonFailure);
  settings.password = test::variable("TWK_LIVE_PASSWORD");
  for (const std::string& user : {settings.user, "TWK\\" + settings.user, settings.user + "@twk.test"}) {
    settings.user = user;
    LiveDomain right(settings);
    LiveNetwork answering(right);
    EXPECT_FALSE(answering.NetShareEnum(w_.file_server()).empty()) << user;
  }
}

TEST_F(LiveNetworkTest, RefusedPasswordIsNotSentAgain) {
  LiveSettings settings = test::password_settings();
  settings.password.clear();
  int asked = 0;
  LiveDomain domain(settings, {.password =
                                   [&](const std::string&) {
                                     ++asked;
                                     return std::optional<std::string>("wrong");
                                   },
                               .tell = nullptr});
  LiveNetwork network(domain);
  std::string last;
  for (int i = 0; i < 3; ++i) {
    base::Trap trap;
    trap([&] { network.NetShareEnum(i == 2 ? "DC1" : w_.file_server()); });
    EXPECT_EQ(trap.number(), kRpcLogonFailure);
    EXPECT_TRUE(last.empty() || last == trap.description()) << "a new refusal by the server";
    last = trap.description();
  }
  EXPECT_EQ(asked, 1);
}

TEST_F(LiveNetworkTest, LogonWithoutATicketIsReportedAsSuch) {
  const test::Variable none("KRB5CCNAME", "FILE:/nowhere/ticket");
  LiveDomain domain(test::live_settings());
  EXPECT_EQ(number_of([&] { LiveNetwork(domain).NetShareEnum(w_.file_server()); }), kRpcLogonFailure);
}

}  // namespace
}  // namespace twk::live
