#include "platform/user_parameters.hpp"

#include <gmock/gmock.h>

#include <fstream>

#include "support/number_of.hpp"

namespace twk::platform {
namespace {

using base::Bytes;
using test::number_of;
using enum WtsConfigClass;

/// A value that tools/user_parameters.py has made.
Bytes made(const std::string& name) {
  std::ifstream file(std::string(TWK_SOURCE_DIR "/tests/fuzz/corpus/user_parameters/") + name,
                     std::ios::binary);
  EXPECT_TRUE(file) << name;
  return {std::istreambuf_iterator<char>(file), {}};
}

WtsConfigValue text(std::string_view words) {
  return std::string(words);
}
WtsConfigValue number(std::uint32_t value) {
  return value;
}

struct Case {
  WtsConfigClass setting;
  WtsConfigValue without;  ///< what a user without settings has
  WtsConfigValue made;     ///< what "complete" holds
  WtsConfigValue other;    ///< a further value that it accepts
};

const Case kCases[] = {
    {kInitialProgram, text(""), text("C:\\Tools\\menu.exe"), text("C:\\ü.exe")},
    {kWorkingDirectory, text(""), text("C:\\Tools"), text("D:\\")},
    {kInheritInitialProgram, number(1), number(0), number(1)},
    {kAllowLogonTerminalServer, number(1), number(0), number(1)},
    {kTimeoutSettingsConnections, number(0), number(60000), number(0xFFFFFFFF)},
    {kTimeoutSettingsDisconnections, number(0), number(300000), number(0)},
    {kTimeoutSettingsIdle, number(0), number(172800000), number(1)},
    {kDeviceClientDrives, number(1), number(1), number(0)},
    {kDeviceClientPrinters, number(1), number(0), number(1)},
    {kDeviceClientDefaultPrinter, number(1), number(1), number(0)},
    {kBrokenTimeoutSettings, number(0), number(0), number(1)},
    {kReconnectSettings, number(0), number(0), number(1)},
    {kModemCallbackSettings, number(0), number(1), number(2)},
    {kModemCallbackPhoneNumber, text(""), text(""), text("030 123")},
    {kShadowingSettings, number(1), number(2), number(4)},
    {kTerminalServerProfilePath, text(""), text("\\\\fs1\\profiles\\josé"), text("\\\\fs2\\\U0001F600")},
    {kTerminalServerHomeDir, text(""), text("\\\\fs1\\Łukasz"), text("")},
    {kTerminalServerHomeDirDrive, text(""), text("W:"), text("X:")}};

TEST(UserParameters, ASettingIsReadWhereTheProtocolPutsIt) {
  const UserParameters none;
  const UserParameters complete = UserParameters::decode(made("complete"));
  for (const Case& one : kCases) {
    EXPECT_EQ(wts_setting(none, one.setting), one.without) << static_cast<int>(one.setting);
    EXPECT_EQ(wts_setting(complete, one.setting), one.made) << static_cast<int>(one.setting);
  }
  EXPECT_EQ(wts_setting(none, kTerminalServerRemoteHomeDir), number(0));
  EXPECT_EQ(wts_setting(complete, kTerminalServerRemoteHomeDir), number(1));
}

TEST(UserParameters, ASettingThatIsChangedChangesNoOther) {
  for (const Case& one : kCases) {
    UserParameters parameters = UserParameters::decode(made("complete"));
    set_wts_setting(parameters, one.setting, one.other);
    const UserParameters read = UserParameters::decode(parameters.encode());
    for (const Case& each : kCases) {
      EXPECT_EQ(wts_setting(read, each.setting), each.setting == one.setting ? one.other : each.made)
          << static_cast<int>(one.setting) << " " << static_cast<int>(each.setting);
    }
    EXPECT_EQ(read.ReservedData, parameters.ReservedData);
    EXPECT_EQ(read.TSPropertyArray[3].PropValue, Bytes({'0', '7', '0', '4', '0', '0', '0', '0'}));
    EXPECT_EQ(read.rest, Bytes({'t', 0, 'a', 0, 'i', 0, 'l', 0}));
  }
}

TEST(UserParameters, TheFirstSettingOfAUserMakesAttributeAndMarker) {
  UserParameters parameters = UserParameters::decode(made("short"));
  set_wts_setting(parameters, kTerminalServerHomeDirDrive, "W:");
  const Bytes bytes = parameters.encode();
  const std::string chars(bytes.begin(), bytes.end());
  EXPECT_EQ(chars.substr(0, 6), std::string("m\0:\0 \0", 6));
  EXPECT_EQ(chars.substr(96, 4), std::string("P\0\4\0", 4));
  EXPECT_NE(chars.find("551e0bb0"), std::string::npos);
  EXPECT_NE(chars.find("00e02090"), std::string::npos);
  EXPECT_NE(chars.find("573a00"), std::string::npos);
  EXPECT_NE(chars.find("57003a000000"), std::string::npos);
}

TEST(UserParameters, AValueIsWrittenAsTheProtocolsExample) {
  UserParameters parameters;
  set_wts_setting(parameters, kInitialProgram, "ABCDE");
  const Bytes expected = {0x34, 0x31, 0x34, 0x32, 0x34, 0x33, 0x34, 0x34, 0x34, 0x35, 0x30, 0x30};
  EXPECT_EQ(parameters.TSPropertyArray.at(2).PropValue, expected);
}

TEST(UserParameters, AnEmptyTextRemovesBothOfItsProperties) {
  UserParameters parameters = UserParameters::decode(made("complete"));
  const std::size_t before = parameters.TSPropertyArray.size();
  set_wts_setting(parameters, kTerminalServerProfilePath, "");
  EXPECT_EQ(parameters.TSPropertyArray.size(), before - 2);
}

TEST(UserParameters, SettingsWithoutTheMarkerDoNotCountEvenAfterAChange) {
  UserParameters parameters = UserParameters::decode(made("not-present"));
  EXPECT_EQ(wts_setting(parameters, kAllowLogonTerminalServer), number(1));
  set_wts_setting(parameters, kTimeoutSettingsIdle, 60000U);
  EXPECT_EQ(wts_setting(parameters, kAllowLogonTerminalServer), number(1));
  EXPECT_EQ(wts_setting(parameters, kTimeoutSettingsIdle), number(60000));
}

TEST(UserParameters, AnotherProgramsAttributeIsLeftAlone) {
  UserParameters parameters = UserParameters::decode(made("foreign"));
  EXPECT_EQ(wts_setting(parameters, kDeviceClientDrives), number(1));
  EXPECT_EQ(number_of([&] { set_wts_setting(parameters, kDeviceClientDrives, 0U); }), 13U);
  EXPECT_EQ(parameters.encode(), made("foreign"));
}

TEST(UserParameters, WhatWasReadIsWrittenByteByByte) {
  for (const char* const name : {"complete", "only-present", "not-present", "no-properties", "no-digits"})
    EXPECT_EQ(UserParameters::decode(made(name)).encode(), made(name)) << name;
}

TEST(UserParameters, NoBeginningOfTheAttributeIsReadBeyondItsEnd) {
  const Bytes complete = made("complete");
  std::size_t refused = 0;
  for (std::size_t size = 0; size < complete.size(); ++size) {
    // A copy of exactly this size lets the sanitizers detect a read past its end.
    const Bytes part(complete.begin(), complete.begin() + static_cast<std::ptrdiff_t>(size));
    const std::uint32_t failure = number_of([&] { UserParameters::decode(part); });
    EXPECT_TRUE(failure == 0 || failure == user_parameters_error::kInvalidData) << size;
    refused += failure == 0 ? 0U : 1U;
  }
  EXPECT_GT(refused, complete.size() / 2);
  for (const char* const name : {"count-too-large", "value-beyond-the-end"})
    EXPECT_EQ(number_of([&] { UserParameters::decode(made(name)); }), 13U) << name;
}

TEST(UserParameters, AStoredValueThatIsNotANumberIsRefusedAndCanBeReplaced) {
  UserParameters parameters = UserParameters::decode(made("complete"));
  parameters.TSPropertyArray.at(6).PropValue = {'0', 'x'};
  EXPECT_EQ(number_of([&] { wts_setting(parameters, kTimeoutSettingsConnections); }), 13U);
  set_wts_setting(parameters, kTimeoutSettingsConnections, 5U);
  EXPECT_EQ(wts_setting(parameters, kTimeoutSettingsConnections), number(5));
  UserParameters flags = UserParameters::decode(made("no-digits"));
  EXPECT_EQ(number_of([&] { set_wts_setting(flags, kDeviceClientDrives, 0U); }), 13U);
}

TEST(UserParameters, AValueOfTheWrongKindIsRefusedAndChangesNothing) {
  const std::pair<WtsConfigClass, WtsConfigValue> cases[] = {{kInitialProgram, number(1)},
                                                             {kAllowLogonTerminalServer, text("Yes")},
                                                             {kAllowLogonTerminalServer, number(2)},
                                                             {kTimeoutSettingsIdle, text("1 min")},
                                                             {kShadowingSettings, number(5)},
                                                             {kTerminalServerHomeDirDrive, text("WXYZ")},
                                                             {kInitialProgram, text(std::string(257, 'x'))},
                                                             {kInitialProgram, text(std::string("a\0b", 3))},
                                                             {kInitialProgram, text("\xFF")},
                                                             {kTerminalServerRemoteHomeDir, number(1)},
                                                             {static_cast<WtsConfigClass>(19), number(1)},
                                                             {static_cast<WtsConfigClass>(-1), text("x")}};
  for (const auto& [setting, value] : cases) {
    UserParameters parameters;
    EXPECT_EQ(number_of([&] { set_wts_setting(parameters, setting, value); }), 87U)
        << static_cast<int>(setting);
    EXPECT_EQ(parameters, UserParameters());
  }
  EXPECT_EQ(number_of([] { wts_setting({}, static_cast<WtsConfigClass>(19)); }), 87U);
}

TEST(UserParameters, MoreThanTheAttributeHoldsIsRefused) {
  UserParameters parameters;
  parameters.rest.assign(65534 - 100, 0);
  EXPECT_EQ(parameters.encode().size(), 65534U);
  parameters.rest.resize(65534 - 98);
  EXPECT_EQ(number_of([&] { static_cast<void>(parameters.encode()); }), 87U);
}

TEST(UserParameters, TheAttributesTextIsItsBytesInUtf16) {
  const std::pair<std::string, Bytes> cases[] = {
      {"", {}},
      {"P", {'P', 0}},
      {std::string("\0\1", 2), {0, 0, 1, 0}},
      {"\xE3\x94\xB5", {0x35, 0x35}},
      {"\U0001F600", {0x3D, 0xD8, 0x00, 0xDE}},
      {"\U0010FFFF\U00010000", {0xFF, 0xDB, 0xFF, 0xDF, 0x00, 0xD8, 0x00, 0xDC}}};
  for (const auto& [text, bytes] : cases) {
    EXPECT_EQ(user_parameters_bytes(text), bytes);
    EXPECT_EQ(user_parameters_text(bytes), text);
  }
  EXPECT_EQ(user_parameters_bytes(user_parameters_text(made("complete"))), made("complete"));
}

TEST(UserParameters, AServerMayHandOutTheBytesAsTheyAre) {
  for (const char* const name : {"complete", "only-present", "no-properties", "count-too-large"}) {
    const Bytes bytes = made(name);
    EXPECT_EQ(user_parameters_bytes(std::string(bytes.begin(), bytes.end())), bytes) << name;
  }
}

TEST(UserParameters, WhatIsNotATextIsRefused) {
  for (const char* const text : {"\xFF", "\xED\xA0\x80", "\xC0\x80", "\xE3\x94"})
    EXPECT_EQ(number_of([&] { user_parameters_bytes(text); }), 13U);
  for (const Bytes& bytes : {Bytes{'P'}, Bytes{0, 0xD8}, Bytes{0, 0xDC}, Bytes{0, 0xD8, 'x', 0},
                             Bytes{0, 0xD8, 0, 0xD8}, Bytes{0, 0xD8, 0}})
    EXPECT_EQ(number_of([&] { user_parameters_text(bytes); }), 13U);
}

}  // namespace
}  // namespace twk::platform
