#include "batch/schema_properties.hpp"

#include <set>

#include "batch/property_world.hpp"
#include "records/terminal_server_rows.hpp"
#include "windows/state/ad_properties.hpp"

namespace twk::batch {
namespace {

using platform::WtsConfigClass;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsSupersetOf;

class SchemaProperties : public testing::Test, public PropertyWorld {};

TEST_F(SchemaProperties, TerminalServerSettingsComeBeforeTheSchemasPropertiesOfUsers) {
  const std::vector<std::string>& names = session.ad_properties.AD_Properties.items();
  ASSERT_GT(names.size(), 200U);
  EXPECT_THAT(std::vector<std::string>(names.begin(), names.begin() + 14),
              ElementsAre("WTSTerminalServerProfilePath", "WTSTerminalServerHomeDir",
                          "WTSTerminalServerHomeDirDrive", "WTSAllowLogonTerminalServer",
                          "WTSInheritInitialProgram", "WTSInitialProgram", "WTSWorkingDirectory",
                          "WTSDeviceClientDrives", "WTSDeviceClientPrinters", "WTSDeviceClientDefaultPrinter",
                          "WTSTimeoutConnections", "WTSTimeoutDisconnections", "WTSTimeoutIdle", "cn"))
      << "the mandatory ones follow";
  EXPECT_THAT(names, IsSupersetOf({"sAMAccountName", "title", "otherTelephone", "logonHours"}));
  EXPECT_EQ(std::set<std::string>(names.begin(), names.end()).size(), names.size());
}

TEST_F(SchemaProperties, SyntaxAndFrameFollowTheChosenProperty) {
  const windows::ADProperties& tab = session.ad_properties;
  const struct {
    const char* property;
    const char* syntax;
    bool multi_valued;
  } cases[] = {{"title", "String", false},
               {"otherTelephone", "String:- Multi value", true},
               {"OTHERTELEPHONE", "String:- Multi value", true},
               {" countryCode ", "Integer", false},
               {"logonHours", "OctetString", false},
               {"userCertificate", "OctetString:- Multi value", true},
               {"publicDelegates", "DN:- Multi value", true},
               {"WTSInitialProgram", "String", false},
               {"WTSAllowLogonTerminalServer", "String", false},
               {"wtstimeoutidle", "Never,1 min,5 mins,10 mins...", false},
               {"WTSTimeoutSettingsIdle", "Never,1 min,5 mins,10 mins...", false},
               {"", "", false},
               {"titel", "", false},
               {"WTSTimeoutOther", "", false},
               {"*)(objectClass=*", "", false}};
  for (const auto& one : cases) {
    choose("otherTelephone");
    choose(one.property);
    EXPECT_EQ(tab.Syntax.caption, std::string(one.syntax)) << one.property;
    EXPECT_EQ(tab.multi_value, one.multi_valued) << one.property;
    EXPECT_EQ(tab.AD_Append.enabled, one.multi_valued) << one.property;
    EXPECT_EQ(tab.AD_Replace.enabled, one.multi_valued) << one.property;
  }
}

TEST_F(SchemaProperties, DirectoryThatDoesNotAnswerIsReported) {
  directory.before = test::fail_at("GetObject", 1, platform::ads_error::kServerDown);
  choose("title");
  EXPECT_EQ(session.ad_properties.Syntax.caption, std::string());
  EXPECT_THAT(status(), HasSubstr("\"title\" is not a property: "));
  directory.before = test::fail_at("GetObject", 1, platform::ads_error::kServerDown);
  EXPECT_THROW(windows::fill_properties(session), base::RuntimeError);
}

TEST_F(SchemaProperties, ListIsFilledOnceForADomain) {
  windows::ADProperties& tab = session.ad_properties;
  tab.AD_Properties.clear();
  directory.before = test::fail_at("GetObject", 1, platform::ads_error::kServerDown);
  dialogs.expect("Error Setting AD Properties in mutliuser form");
  windows::prepare_properties(session);
  EXPECT_EQ(tab.AD_Properties.items().size(), records::kTerminalServerRows.size());
  windows::prepare_properties(session);
  EXPECT_GT(tab.AD_Properties.items().size(), 200U);
  tab.AD_Properties.text = "title";
  windows::prepare_properties(session);
  EXPECT_EQ(tab.AD_Properties.text, std::string("title")) << "stays from window to window";
  session.DirectoryMode = session::kWinNtMode;
  windows::prepare_properties(session);
  EXPECT_EQ(tab.AD_Properties.items().size(), 0U);
}

class TerminalServerProperty : public testing::Test, public PropertyWorld {};

TEST_F(TerminalServerProperty, ReachesTheControllerInItsForm) {
  const struct {
    const char* property;
    const char* value;
    WtsConfigClass setting;
    platform::WtsConfigValue stored;
  } cases[] = {{"WTSTerminalServerProfilePath", "\\\\FS1\\ts\\%UserName%",
                WtsConfigClass::kTerminalServerProfilePath, "\\\\FS1\\ts\\jo"},
               {"WTSAllowLogonTerminalServer", "yes", WtsConfigClass::kAllowLogonTerminalServer, 1U},
               {"WTSInheritInitialProgram", "TRUE", WtsConfigClass::kInheritInitialProgram, 1U},
               {"WTSTimeoutConnections", "5 mins", WtsConfigClass::kTimeoutSettingsConnections, 300000U},
               {"WTSTimeoutIdle", "Never", WtsConfigClass::kTimeoutSettingsIdle, 0U},
               {"WTSWorkingDirectory", "", WtsConfigClass::kWorkingDirectory, ""}};
  for (const auto& one : cases) {
    change({"jo"}, one.property, one.value);
    EXPECT_EQ(services.network.WTSQueryUserConfig("", "jo", one.setting), one.stored)
        << one.property << " " << one.value;
    EXPECT_EQ(counts.errors, 0) << log();
  }
  EXPECT_THAT(log(), HasSubstr("Change property:'WTSTerminalServerProfilePath' to '\\\\FS1\\ts\\jo' for "
                               "jo Lee\n"));
}

TEST_F(TerminalServerProperty, RefusalCountsAsAnError) {
  change({"jo", "ann"}, "WTSInitialProgram", std::string(300, 'x'));
  EXPECT_THAT(outcomes, ElementsAre("not jo", "not ann"));
  EXPECT_THAT(log(), HasSubstr("WTSSetUserConfigString failed with error "));
  EXPECT_THAT(log_tab(), ElementsAre(testing::MatchesRegex(
                             "YELLOW  AD Property changed for 0 users. - had errors: "
                             "Error Number: .* The terminal-server setting was refused. .+")));
}

TEST_F(TerminalServerProperty, DomainWithoutAControllerEndsTheRunWithoutABoxAUser) {
  session.NTDomainName = "ELSEWHERE";
  change({"jo", "ann"}, "WTSInitialProgram", "calc.exe");
  EXPECT_THAT(outcomes, testing::IsEmpty());
  EXPECT_EQ(status(), "Error Retrieving Domain Info.");
}

}  // namespace
}  // namespace twk::batch
