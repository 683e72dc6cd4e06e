#include "session/settings_schema.hpp"

#include "directory/hours_zone.hpp"
#include "directory/load_options.hpp"
#include "support/world.hpp"
#include "windows/editors/custom_properties.hpp"
#include "windows/import_options.hpp"
#include "windows/read_settings.hpp"

namespace twk::session {
namespace {

class SettingsSchemaTest : public test::TestWorld {};

TEST_F(SettingsSchemaTest, EverySettingThatIsReadIsKnown) {
  windows::read_settings(session);
  directory::read_load_options(session);
  windows::ImportGrps_Load(session);
  windows::Custom_Load(session);
  directory::chosen_zone(session.platform);
  ASSERT_GT(registry.asked.size(), 60U);
  for (const auto& [key, name] : registry.asked)
    EXPECT_NE(find_setting(key.substr(kTree.size() + 1), name), nullptr) << key << " " << name;
}

TEST_F(SettingsSchemaTest, AValueIsRefusedWhenItsReaderWouldIgnoreIt) {
  const struct {
    const char* key;
    const char* name;
    const char* value;
    const char* taken;  ///< instead; empty for a value that is accepted
  } cases[] = {{"Setup", "IncNumber", "banana", "a number from 0 to 32767"},
               {"setup", "INCNUMBER", "7", ""},
               {"Setup", "IncNumber", "32768", "a number from 0 to 32767"},
               {"Setup", "UserFormat", "6", "a number from 1 to 5"},
               {"Setup", "SUBOU", "no", "Yes or No"},
               {"Setup", "SUBOU", "", ""},
               {"Preferences", "SkipPrompt", "yes", "Yes or No"},
               {"Preferences", "PasswdNVRExpire", "yes", ""},
               {"ADO", "PageSize", "0", "a number from 1 up"},
               {"ADO", "Search", "gc://", ""},
               {"ADO", "Search", "ldap", "LDAP:// or GC://"},
               {"Live", "Method", "smoke", "ticket, ldaps or starttls"},
               {"Version", "DBVersion", "1.3", ""},
               {"Version", "DBVersion", "3", "1, 2.0, 2.1, 2.2, 2.3 or 2.4"},
               {"Preferences", "LogonHoursZone", "Berlin", "UTC+12 or Workstation"},
               {"Setup", "SetupID", "anything", ""}};
  for (const auto& one : cases)
    EXPECT_EQ(setting_refusal(*find_setting(one.key, one.name), one.value), one.taken)
        << one.name << " " << one.value;
  EXPECT_EQ(find_setting("Stup", "SetupID"), nullptr);
  for (const Setting& setting : all_settings()) {
    EXPECT_EQ(setting_refusal(setting, setting.initial), "") << setting.full_name();
    EXPECT_FALSE(setting.meaning.empty()) << setting.full_name();
  }
}

}  // namespace
}  // namespace twk::session
