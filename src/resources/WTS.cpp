#include "resources/WTS.hpp"

#include "base/error_words.hpp"
#include "base/errors.hpp"
#include "base/text.hpp"
#include "format/filling.hpp"
#include "format/replace.hpp"
#include "records/terminal_server_rows.hpp"
#include "session/loaded_database.hpp"
#include "session/session.hpp"

namespace twk::resources {
namespace {

using platform::WtsConfigClass;
using platform::WtsConfigValue;
using records::kTerminalServerRows;
using records::TerminalServerRow;
using session::Session;

constexpr std::size_t kStartProgramRow = 5;

/// The user whose settings they are, and where they are written.
struct Target {
  std::string controller;
  std::string user;
};

/// Empty, after a message, when the domain has no controller.
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

/// False when the controller refuses, which is logged.
bool send(Session& session, const Target& target, WtsConfigClass setting, const WtsConfigValue& value) {
  platform::Network& network = session.platform.network;
  base::Trap trap;
  if (trap([&] { network.WTSSetUserConfig(target.controller, target.user, setting, value); }))
    return true;
  const bool is_text = std::holds_alternative<std::string>(value);
  session.Error_Log_Text = base::in_words(trap.number(), trap.description());
  session.log.line(
      (is_text ? "WTSSetUserConfigString failed with error " : "WTSSetUserConfigDWord failed with error ") +
      base::to_text(trap.number()));
  session.platform.dialogs.beep();
  return false;
}

std::string row_value(Session& session, const controls::ListRow& row, std::string_view shown_name) {
  if (row.sub_items.empty())
    return {};
  return format::Filling(session, row.sub_items.front())
      .variables()
      .tag("%server%", base::trim(session.ActiveSite.NTServer))
      .tag("%UserName%", shown_name)
      .take();
}

/// A row's value in the form of its setting.
WtsConfigValue value_of_setting(const TerminalServerRow& row, const std::string& value) {
  if (!row.is_number())
    return value;
  return row.is_time() ? records::milliseconds_of(value) : records::number_of_switch(value);
}

/// The same for the row with this number, counted from 1, with the texts of the Template tab.
WtsConfigValue value_to_send(std::size_t number, const std::string& value) {
  if (number == kStartProgramRow)
    return 1 - records::number_of_switch(value);
  return value_of_setting(kTerminalServerRows.at(number - 1), value);
}

bool send_rows(Session& session, const Target& target, std::string_view shown_name) {
  session.log.line("Setting WTS settings...");
  const controls::ListView& list = session.database.terminal_rows;
  for (std::size_t number = 1; number <= list.size() && number <= kTerminalServerRows.size(); ++number) {
    const std::string value = row_value(session, list.at(number - 1), shown_name);
    if (value.empty())
      continue;
    const WtsConfigClass setting = kTerminalServerRows.at(number - 1).setting;
    if (send(session, target, setting, value_to_send(number, value)))
      continue;
    session.log.reason("Terminal-server settings: " + session.Error_Log_Text);
    return false;
  }
  return true;
}

/// `number` is a row's, or the next one, which means the first row.
bool send_one(Session& session, const Target& target, std::size_t number, std::string_view text) {
  const TerminalServerRow& row =
      kTerminalServerRows.at(number <= kTerminalServerRows.size() ? number - 1 : 0);
  const std::string value = format::FRString(text, "%UserName%", target.user);
  return send(session, target, row.setting, value_of_setting(row, value));
}

}  // namespace

bool ApplyTerminalRows(Session& session, std::string_view userName, std::string_view domain,
                       std::string_view shown_name) {
  const Target target{controller_of(session, domain), std::string(userName)};
  return !target.controller.empty() && send_rows(session, target, shown_name);
}

bool ApplyTerminalSetting(Session& session, std::string_view userName, std::string_view domain,
                          std::int16_t number, std::string_view value) {
  const Target target{controller_of(session, domain), std::string(userName)};
  if (target.controller.empty() || number <= 0)
    return false;
  const auto place = static_cast<std::size_t>(number);
  return place <= kTerminalServerRows.size() + 1 && send_one(session, target, place, value);
}

}  // namespace twk::resources
