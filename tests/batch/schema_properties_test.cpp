#include "batch/schema_properties.hpp"

#include <set>

#include "batch/property_world.hpp"
#include "records/terminal_server_rows.hpp"
#include "session/ad_properties.hpp"

namespace twk::batch {
namespace {

using platform::WtsConfigClass;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsSupersetOf;

TEST(SchemaProperties, TerminalServerSettingsComeBeforeTheSchemasPropertiesOfUsers) {
  const PropertyWorld world;
  const std::vector<std::string>& names = world.session.ad_properties.AD_Properties.items();
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

TEST(SchemaProperties, SyntaxAndFrameFollowTheChosenProperty) {
  PropertyWorld world;
  const session::ADProperties& tab = world.session.ad_properties;
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
    world.choose("otherTelephone");
    world.choose(one.property);
    EXPECT_EQ(tab.Syntax.caption, std::string(one.syntax)) << one.property;
    EXPECT_EQ(tab.multi_value, one.multi_valued) << one.property;
    EXPECT_EQ(tab.AD_Append.enabled, one.multi_valued) << one.property;
    EXPECT_EQ(tab.AD_Replace.enabled, one.multi_valued) << one.property;
  }
}

TEST(SchemaProperties, DirectoryThatDoesNotAnswerIsReported) {
  PropertyWorld world;
  world.directory.before = test::fail_at("GetObject", 1, platform::ads_error::kServerDown);
  world.choose("title");
  EXPECT_EQ(world.session.ad_properties.Syntax.caption, std::string());
  EXPECT_THAT(world.status(), HasSubstr("\"title\" is not a property: "));
  world.directory.before = test::fail_at("GetObject", 1, platform::ads_error::kServerDown);
  EXPECT_THROW(windows::fill_properties(world.session), base::RuntimeError);
}

TEST(SchemaProperties, ListIsFilledOnceForADomain) {
  PropertyWorld world;
  session::ADProperties& tab = world.session.ad_properties;
  tab.AD_Properties.clear();
  world.directory.before = test::fail_at("GetObject", 1, platform::ads_error::kServerDown);
  world.dialogs.expect("Error Setting AD Properties in mutliuser form");
  windows::prepare_properties(world.session);
  EXPECT_EQ(tab.AD_Properties.items().size(), records::kTerminalServerRows.size());
  windows::prepare_properties(world.session);
  EXPECT_GT(tab.AD_Properties.items().size(), 200U);
  tab.AD_Properties.text = "title";
  windows::prepare_properties(world.session);
  EXPECT_EQ(tab.AD_Properties.text, std::string("title")) << "stays from window to window";
  world.session.DirectoryMode = session::kWinNtMode;
  windows::prepare_properties(world.session);
  EXPECT_EQ(tab.AD_Properties.items().size(), 0U);
}

/// What the controller stores for a setting.
platform::WtsConfigValue setting_of(PropertyWorld& world, const std::string& user, WtsConfigClass setting) {
  return world.services.network.WTSQueryUserConfig("", user, setting);
}

TEST(TerminalServerProperty, ReachesTheControllerInItsForm) {
  PropertyWorld world;
  const struct {
    const char* property;
    const char* value;
    WtsConfigClass setting;
    platform::WtsConfigValue stored;
  } cases[] = {
      {"WTSTerminalServerProfilePath", "\\\\FS1\\ts\\%UserName%", WtsConfigClass::kTerminalServerProfilePath,
       "\\\\FS1\\ts\\jo"},
      {"WTSTerminalServerHomeDir", "D:\\%username%", WtsConfigClass::kTerminalServerHomeDir, "D:\\jo"},
      {"WTSTerminalServerHomeDirDrive", "W:", WtsConfigClass::kTerminalServerHomeDirDrive, "W:"},
      {"WTSAllowLogonTerminalServer", "yes", WtsConfigClass::kAllowLogonTerminalServer, 1U},
      {"WTSInheritInitialProgram", "TRUE", WtsConfigClass::kInheritInitialProgram, 1U},
      {"WTSInitialProgram", "calc.exe", WtsConfigClass::kInitialProgram, "calc.exe"},
      {"WTSWorkingDirectory", "C:\\, D:\\", WtsConfigClass::kWorkingDirectory, "C:\\, D:\\"},
      {"WTSDeviceClientDrives", "No", WtsConfigClass::kDeviceClientDrives, 0U},
      {"WTSDeviceClientPrinters", "false", WtsConfigClass::kDeviceClientPrinters, 0U},
      {"WTSDeviceClientDefaultPrinter", "NO", WtsConfigClass::kDeviceClientDefaultPrinter, 0U},
      {"WTSTimeoutConnections", "5 mins", WtsConfigClass::kTimeoutSettingsConnections, 300000U},
      {"WTSTimeoutDisconnections", "1 HOUR", WtsConfigClass::kTimeoutSettingsDisconnections, 3600000U},
      {"WTSTimeoutIdle", "2 days", WtsConfigClass::kTimeoutSettingsIdle, 172800000U},
      {"WTSTimeoutIdle", "Never", WtsConfigClass::kTimeoutSettingsIdle, 0U},
      {"WTSWorkingDirectory", "", WtsConfigClass::kWorkingDirectory, ""}};
  for (const auto& one : cases) {
    world.change({"jo"}, one.property, one.value);
    EXPECT_EQ(setting_of(world, "jo", one.setting), one.stored) << one.property << " " << one.value;
    EXPECT_EQ(world.counts.errors, 0) << world.log();
  }
  EXPECT_THAT(world.log(),
              HasSubstr("Change property:'WTSTerminalServerProfilePath' to '\\\\FS1\\ts\\jo' for "
                        "jo Lee\n"));
}

TEST(TerminalServerProperty, RefusalCountsAsAnError) {
  PropertyWorld world;
  world.change({"jo", "ann"}, "WTSInitialProgram", std::string(300, 'x'));
  EXPECT_THAT(world.outcomes, ElementsAre("not jo", "not ann"));
  EXPECT_THAT(world.log(), HasSubstr("WTSSetUserConfigString failed with error "));
  EXPECT_THAT(world.log_tab(), ElementsAre(testing::MatchesRegex(
                                   "YELLOW  AD Property changed for 0 users. - had errors: "
                                   "Error Number: .* The terminal-server setting was refused. .+")));
}

TEST(TerminalServerProperty, DomainWithoutAControllerEndsTheRunWithoutABoxAUser) {
  PropertyWorld world;
  world.session.NTDomainName = "ELSEWHERE";
  world.change({"jo", "ann"}, "WTSInitialProgram", "calc.exe");
  EXPECT_THAT(world.outcomes, testing::IsEmpty());
  EXPECT_EQ(world.status(), "Error Retrieving Domain Info.");
}

}  // namespace
}  // namespace twk::batch
