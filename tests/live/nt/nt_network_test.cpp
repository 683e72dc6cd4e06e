#include <gmock/gmock.h>

#include <cstdlib>
#include <fstream>

#include "base/text.hpp"
#include "live/domain/account_sid.hpp"
#include "live/nt/nt_world.hpp"

namespace twk::live {
namespace {

using contract::number_of;
using platform::WtsConfigClass;
using platform::WtsConfigValue;
namespace network_error = platform::network_error;

using NtNetwork = test::NtDomainTest;

TEST_F(NtNetwork, ControllerIsFoundByTheNameOfItsDomain) {
  for (const char* const name : {"", "OLDNT", "oldnt"})
    EXPECT_EQ(network_.NetGetDCName("", name), "\\\\OLDPDC") << name;
  EXPECT_EQ(number_of([&] { network_.NetGetDCName("", "NOSUCH"); }), network_error::kControllerNotFound);
}

TEST_F(NtNetwork, TerminalSettingsAreKeptOneByOne) {
  make_user("jo");
  network_.WTSSetUserConfig("\\\\OLDPDC", "jo", WtsConfigClass::kTerminalServerProfilePath, "\\\\FS1\\P\\jö");
  network_.WTSSetUserConfig("\\\\OLDPDC", "jo", WtsConfigClass::kTimeoutSettingsIdle, 60000U);
  EXPECT_EQ(network_.WTSQueryUserConfig("OLDPDC", "JO", WtsConfigClass::kTerminalServerProfilePath),
            WtsConfigValue("\\\\FS1\\P\\jö"));
  EXPECT_EQ(network_.WTSQueryUserConfig("OLDPDC", "jo", WtsConfigClass::kTimeoutSettingsIdle),
            WtsConfigValue(60000U));
  for (const char* const name : {"nobody", "Domain Users"}) {
    EXPECT_EQ(
        number_of([&] { network_.WTSQueryUserConfig("OLDPDC", name, WtsConfigClass::kInitialProgram); }),
        network_error::kUserNotFound)
        << name;
  }
}

TEST_F(NtNetwork, AccountsAndIdentifiersLeadToEachOther) {
  make_user("jo");
  for (const std::string name : {"jo", "Domain Users", "Helpers", "Administrators"}) {
    const auto sid = find_account_sid(domain_, name);
    ASSERT_TRUE(sid) << name;
    EXPECT_EQ(find_account_name(domain_, *sid), name);
  }
  EXPECT_EQ(find_account_sid(domain_, "Administrators"), platform::well_known::administrators());
  EXPECT_FALSE(find_account_sid(domain_, "nobody"));
  EXPECT_FALSE(find_account_name(domain_, platform::well_known::everyone()));
}

TEST_F(NtNetwork, LogonHasTheGroupsOfBothKinds) {
  const platform::User user = make_user("jo");
  const auto readers = domain_object()->Create("Group", "Readers");
  readers->SetInfo();
  readers->Add(user.ADsPath());
  account("Helpers")->Add("WinNT://OLDNT/Readers");
  const std::vector<platform::Sid> sids = security_.account_identifiers("OLDNT\\jo");
  for (const std::string name : {"jo", "Readers", "Helpers", "Domain Users"})
    EXPECT_THAT(sids, testing::Contains(security_.LookupAccountName("OLDPDC", name).sid)) << name;
  EXPECT_THAT(sids, testing::Contains(platform::well_known::everyone()));
  EXPECT_EQ(security_.LookupAccountSid("OLDPDC", security_.LookupAccountName({}, "jo").sid), "OLDNT\\jo");
  EXPECT_EQ(security_.LookupAccountName({}, "Administrators").domain, "BUILTIN");
  EXPECT_EQ(number_of([&] { security_.LookupAccountName({}, "nobody"); }),
            platform::security_error::kNoneMapped);
  account("Helpers")->Remove("WinNT://OLDNT/Readers");
}

/// The server's list of its connections, without the heading.
std::string connections() {
  const std::string state = test::variable("TWK_LIVE_STATE");
  const std::string command =
      "smbstatus --configfile=" + state + "/smb.conf --processes | grep SMB3 >" + state + "/shown";
  EXPECT_EQ(std::system(command.c_str()), 0);
  std::ifstream file(state + "/shown");
  return {std::istreambuf_iterator<char>(file), {}};
}

TEST_F(NtNetwork, ConnectionsAreSignedAndEncryptedWhereTheServerCan) {
  const struct {
    const char* setting;
    bool encrypted;
  } cases[] = {{"off", false}, {"required", true}, {"default", true}};
  const std::string conf = test::variable("TWK_LIVE_STATE") + "/smb.conf";
  for (const auto& one : cases) {
    const std::string change = "sed -i '/server smb encrypt/d; /^.global./a server smb encrypt = ";
    ASSERT_EQ(std::system((change + one.setting + "' " + conf).c_str()), 0);
    test::control("stop");
    test::control("start");
    SmbClient files(test::password_settings());
    testing::internal::CaptureStdout();
    EXPECT_FALSE(files.list(*parse_smb_path("\\\\OLDPDC\\D$")).empty());
    std::fflush(stdout);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "") << one.setting;
    AccountService service(std::make_shared<Credentials>(test::password_settings(), Prompts{}), "OLDPDC");
    EXPECT_EQ(service.domain_name(), "OLDNT");
    const std::string shown = connections();
    EXPECT_EQ(std::ranges::count(shown, '\n'), 2) << shown;
    for (const std::string& line : base::split(shown.substr(0, shown.size() - 1), '\n')) {
      EXPECT_THAT(line, testing::ContainsRegex(" AES-128-(GMAC|CMAC)")) << one.setting;  // of every part
      EXPECT_EQ(line.find("AES-128-GCM") != base::npos, one.encrypted) << one.setting << line;
    }
  }
}

}  // namespace
}  // namespace twk::live
