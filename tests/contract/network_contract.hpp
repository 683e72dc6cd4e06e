#pragma once

#include "contract/world.hpp"
#include "platform/access_check.hpp"

namespace twk::contract {

class NetworkContract : public Contract {
 protected:
  platform::Network& network_ = world_->network();
};

TEST_P(NetworkContract, ShareIsMadeReadListedAndTakenAway) {
  const platform::SecurityDescriptor descriptor =
      test::with_list({{platform::ace_type::kAllow, 0, 0xA0000000, platform::well_known::everyone()}});
  platform::ShareInfo502 wanted = share_of("Homes$");
  wanted.shi502_security_descriptor = descriptor;
  network_.NetShareAdd("\\\\" + world_->file_server(), wanted);

  const auto read = network_.NetShareGetInfo(world_->file_server(), "HOMES$");
  EXPECT_EQ(read.shi502_path, world_->told_path("D:\\Users"));
  EXPECT_EQ(read.shi502_remark, "Users Home Share");
  EXPECT_EQ(read.shi502_max_uses, -1);
  ASSERT_TRUE(read.shi502_security_descriptor);
  // A server may store the rights that the generic ones mean.
  const std::vector everyone = {platform::well_known::everyone()};
  EXPECT_EQ(platform::granted_access(*read.shi502_security_descriptor, everyone),
            platform::granted_access(descriptor, everyone));
  std::vector<std::string> names;
  for (const auto& one : network_.NetShareEnum(world_->file_server()))
    names.push_back(one.shi502_netname);
  EXPECT_THAT(names, testing::IsSupersetOf({"D$", "Homes$"}));
  EXPECT_TRUE(world_->files().exists("\\\\" + world_->file_server() + "\\homes$"));

  network_.NetShareDel(world_->file_server(), "homes$");
  EXPECT_EQ(number_of([&] { network_.NetShareGetInfo(world_->file_server(), "Homes$"); }),
            platform::network_error::kShareNotFound);
}

TEST_P(NetworkContract, WhatCannotBeSharedIsRefusedByNumber) {
  namespace network_error = platform::network_error;
  const std::string server = world_->file_server();
  network_.NetShareAdd(server, share_of("Homes"));
  EXPECT_EQ(number_of([&] { network_.NetShareAdd(server, share_of("HOMES")); }),
            network_error::kDuplicateShare);
  EXPECT_EQ(number_of([&] { network_.NetShareAdd(server, share_of("New", "D:\\None")); }),
            network_error::kUnknownDirectory);
  EXPECT_EQ(number_of([&] { network_.NetShareAdd(server, share_of("a/b")); }), network_error::kInvalidName);
  EXPECT_EQ(number_of([&] { network_.NetShareAdd("NOWHERE", share_of("New")); }), network_error::kBadNetPath);
  EXPECT_EQ(number_of([&] { network_.NetShareEnum("NOWHERE"); }), network_error::kBadNetPath);
  EXPECT_EQ(number_of([&] { network_.NetShareDel(server, "None"); }), network_error::kShareNotFound);
}

TEST_P(NetworkContract, ControllerIsFoundByEachNameOfItsDomain) {
  for (const std::string& name : {std::string(), world_->netbios(), world_->domain()})
    EXPECT_EQ(network_.NetGetDCName("", name), "\\\\DC1") << name;
  EXPECT_EQ(number_of([&] { network_.NetGetDCName("", "NOSUCH"); }),
            platform::network_error::kControllerNotFound);
}

TEST_P(NetworkContract, TerminalSettingsAreKeptOneByOne) {
  using enum platform::WtsConfigClass;
  using platform::WtsConfigValue;
  make_user(w_, "Jo", "jo");
  const std::string dc = network_.NetGetDCName("", world_->netbios());
  EXPECT_EQ(network_.WTSQueryUserConfig(dc, "jo", kAllowLogonTerminalServer), WtsConfigValue(1U));
  network_.WTSSetUserConfig(dc, "jo", kTerminalServerHomeDir, "\\\\FS1\\Users\\jö");
  network_.WTSSetUserConfig(dc, "jo", kAllowLogonTerminalServer, 0U);
  network_.WTSSetUserConfig(dc, "jo", kTimeoutSettingsIdle, 600000U);
  EXPECT_EQ(network_.WTSQueryUserConfig(dc, "JO", kTerminalServerHomeDir),
            WtsConfigValue("\\\\FS1\\Users\\jö"));
  EXPECT_EQ(network_.WTSQueryUserConfig(dc, "jo", kAllowLogonTerminalServer), WtsConfigValue(0U));
  EXPECT_EQ(network_.WTSQueryUserConfig(dc, "jo", kTimeoutSettingsIdle), WtsConfigValue(600000U));
  EXPECT_EQ(number_of([&] { network_.WTSSetUserConfig(dc, "nobody", kInitialProgram, "x"); }),
            platform::network_error::kUserNotFound);
  EXPECT_EQ(number_of([&] { network_.WTSSetUserConfig(dc, "jo", kTimeoutSettingsIdle, "x"); }), 87U);
  EXPECT_EQ(number_of([&] { network_.WTSQueryUserConfig("\\\\NOWHERE", "jo", kInitialProgram); }),
            platform::network_error::kBadNetPath);
}

}  // namespace twk::contract
