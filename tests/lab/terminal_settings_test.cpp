#include <thread>

#include "lab_world.hpp"
#include "platform/user_parameters.hpp"

namespace twk::lab {
namespace {

using contract::number_of;
using platform::WtsConfigValue;
using enum platform::WtsConfigClass;

class TerminalSettings : public testing::TestWithParam<DomainKind> {
 protected:
  TerminalSettings() {
    const auto domain = w_.directory().GetObject("WinNT://TWK");
    domain->Create("User", "jo")->SetInfo();
    domain->Create("Group", "Readers")->SetInfo();
  }
  [[nodiscard]] platform::Network& network() { return w_.platform().network; }
  [[nodiscard]] std::string controller() { return network().NetGetDCName("", "TWK"); }

  test::LabWorld w_{test::plan_of(GetParam())};
};
INSTANTIATE_TEST_SUITE_P(Kinds, TerminalSettings, testing::Values(DomainKind::kNative, DomainKind::kNt),
                         [](const auto& kind) { return kind.param == DomainKind::kNt ? "Nt" : "Native"; });

TEST_P(TerminalSettings, ASettingIsKeptInTheUsersEntry) {
  EXPECT_EQ(network().WTSQueryUserConfig(controller(), "jo", kInheritInitialProgram), WtsConfigValue(1U));
  network().WTSSetUserConfig(controller(), "JO", kTerminalServerHomeDir, "\\\\FS1\\Łuk");
  network().WTSSetUserConfig("", "jo", kInheritInitialProgram, 0U);
  w_.reopen();
  EXPECT_EQ(network().WTSQueryUserConfig(controller(), "jo", kTerminalServerHomeDir),
            WtsConfigValue("\\\\FS1\\Łuk"));
  EXPECT_EQ(network().WTSQueryUserConfig("DC1", "jo", kInheritInitialProgram), WtsConfigValue(0U));
  const std::string text = contract::get_account(w_, "jo")->Get("Parameters").text();
  const auto parameters = platform::UserParameters::decode(platform::user_parameters_bytes(text));
  EXPECT_EQ(platform::wts_setting(parameters, kTerminalServerHomeDir), WtsConfigValue("\\\\FS1\\Łuk"));
}

TEST_P(TerminalSettings, WhatIsRefusedLeavesNoSettings) {
  EXPECT_EQ(number_of([&] { network().WTSSetUserConfig("", "Readers", kTimeoutSettingsIdle, 0U); }),
            platform::network_error::kUserNotFound);
  EXPECT_EQ(number_of([&] { network().WTSQueryUserConfig("\\\\FS1", "jo", kTimeoutSettingsIdle); }),
            platform::network_error::kBadNetPath);
  EXPECT_EQ(number_of([&] { network().WTSSetUserConfig("", "jo", kInitialProgram, 1U); }), 87U);
  EXPECT_EQ(number_of([&] { contract::get_account(w_, "jo")->Get("Parameters"); }),
            platform::ads_error::kPropertyNotFound);
}

TEST_P(TerminalSettings, AnAttributeOfAnotherProgramIsNotOverwritten) {
  const auto user = contract::get_account(w_, "jo");
  const std::string theirs(60, '#');
  test::store(user, {{"Parameters", theirs}});
  EXPECT_EQ(number_of([&] { network().WTSSetUserConfig("", "jo", kInitialProgram, "x"); }), 13U);
  EXPECT_EQ(contract::get_account(w_, "jo")->Get("Parameters").text(), theirs);
}

TEST_P(TerminalSettings, TwoProgramsDoNotLoseEachOthersSettings) {
  const auto change = [this](platform::WtsConfigClass setting) {
    test::OtherProgram other(w_);
    platform::Network& net = other.platform().network;
    for (std::uint32_t i = 0; i < 60; ++i) {
      net.WTSSetUserConfig("", "jo", setting, i);
      EXPECT_EQ(net.WTSQueryUserConfig("", "jo", setting), WtsConfigValue(i));
    }
  };
  std::thread first(change, kTimeoutSettingsIdle);
  std::thread second(change, kTimeoutSettingsConnections);
  first.join();
  second.join();
}

}  // namespace
}  // namespace twk::lab
