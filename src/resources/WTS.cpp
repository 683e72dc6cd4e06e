#include "resources/WTS.hpp"

#include "base/errors.hpp"
#include "base/text.hpp"
#include "format/variables.hpp"
#include "session/session.hpp"
#include "stores/terminal_server_rows.hpp"

namespace twk::resources {
namespace {

using platform::WtsConfigClass;
using platform::WtsConfigValue;
using session::Session;
using stores::kTerminalServerRows;
using stores::TerminalServerRow;

constexpr std::size_t kAllowLogonRow = 4;
constexpr std::size_t kStartProgramRow = 5;
constexpr std::size_t kFirstTimeRow = 11;

/// Whom the settings are for, and where they are written.
struct Target {
  std::string controller;
  std::string user;
};

/// Empty, and the person has been told, when the domain has no controller.
std::string controller_of(Session& session, std::string_view domain) {
  std::string name;
  base::Trap trap;
  if (!trap([&] { name = session.platform.network.NetGetDCName("", domain); })) {
    session.platform.dialogs.MsgBox("NetGetDCName failed with error " + base::to_text(trap.number()),
                                    platform::Buttons::kOk, platform::Icon::kExclamation,
                                    "Terminal-server settings");
  }
  return name;
}

/// False when the controller refuses, which the log tells.
bool send(Session& session, const Target& target, WtsConfigClass setting, const WtsConfigValue& value) {
  platform::Network& network = session.platform.network;
  base::Trap trap;
  if (trap([&] { network.WTSSetUserConfig(target.controller, target.user, setting, value); }))
    return true;
  const bool is_text = std::holds_alternative<std::string>(value);
  session.log.line(
      (is_text ? "WTSSetUserConfigString failed with error " : "WTSSetUserConfigDWord failed with error ") +
      base::to_text(trap.number()));
  session.platform.dialogs.beep();
  return false;
}

std::string row_value(Session& session, const controls::ListRow& row) {
  if (row.sub_items.empty())
    return {};
  const std::string text = format::Replace_Variables(session, row.sub_items.front());
  const std::string server(base::trim(session.form1.NTSERVER.text.get()));
  return format::FRString(format::FRString(text, "%server%", server), "%UserName%",
                          session.form1.UserID_Box.text.get());
}

/// What the value of the row with this number, counted from 1, is for the controller.
WtsConfigValue value_to_send(std::size_t number, const std::string& value) {
  const TerminalServerRow& row = kTerminalServerRows.at(number - 1);
  if (!row.is_number())
    return value;
  if (row.is_time())
    return stores::milliseconds_of(value);
  const std::uint32_t on = stores::number_of_switch(value);
  return number == kStartProgramRow ? 1 - on : on;
}

bool send_rows(Session& session, const Target& target) {
  session.log.line("Setting WTS settings...");
  const controls::ListView& list = session.form1.ListView9;
  for (std::size_t number = 1; number <= list.size() && number <= kTerminalServerRows.size(); ++number) {
    const std::string value = row_value(session, list.at(number - 1));
    if (value.empty())
      continue;
    const WtsConfigClass setting = kTerminalServerRows.at(number - 1).setting;
    if (!send(session, target, setting, value_to_send(number, value)))
      return false;
  }
  return true;
}

/// `number` is that of a row, or the next one, which stands for the first row.
bool send_one(Session& session, const Target& target, std::size_t number) {
  const WtsConfigClass setting = number <= kTerminalServerRows.size()
                                     ? kTerminalServerRows.at(number - 1).setting
                                     : WtsConfigClass::kTerminalServerProfilePath;
  const std::string value =
      format::FRString(session.multi_user.AD_CHANGE.text.get(), "%UserName%", target.user);
  if (number == kAllowLogonRow || number == kStartProgramRow)
    return send(session, target, setting, stores::number_of_switch(value));
  if (number >= kFirstTimeRow && number <= kTerminalServerRows.size())
    return send(session, target, setting, stores::milliseconds_of(value));
  return send(session, target, setting, value);
}

}  // namespace

bool ApplyTerminalSettings(Session& session, std::string_view userName, std::string_view domain,
                           bool singleProperty, std::int16_t propertyNumber) {
  const Target target{controller_of(session, domain), std::string(userName)};
  if (target.controller.empty())
    return false;
  const auto number = static_cast<std::size_t>(propertyNumber);
  if (!singleProperty)
    return send_rows(session, target);
  if (propertyNumber <= 0 || number > kTerminalServerRows.size() + 1)
    return false;
  return send_one(session, target, number);
}

}  // namespace twk::resources
