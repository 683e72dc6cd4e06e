#include "batch/schema_properties.hpp"

#include <algorithm>
#include <array>
#include <span>
#include <vector>

#include "base/errors.hpp"
#include "base/text.hpp"
#include "records/terminal_server_rows.hpp"
#include "session/ad_properties.hpp"
#include "session/multi_user.hpp"
#include "session/session.hpp"

namespace twk::batch {
namespace {

using session::ADProperties;
using session::Session;

constexpr std::string_view kUserClass = "LDAP://Schema/User";
constexpr std::string_view kOctetString = "OctetString";
constexpr std::string_view kMultiValue = ":- Multi value";

/// In the order of the table of settings, where the names of the three times are longer.
constexpr std::array<std::string_view, records::kTerminalServerRows.size()> kTerminalServerNames = {
    "WTSTerminalServerProfilePath",
    "WTSTerminalServerHomeDir",
    "WTSTerminalServerHomeDirDrive",
    "WTSAllowLogonTerminalServer",
    "WTSInheritInitialProgram",
    "WTSInitialProgram",
    "WTSWorkingDirectory",
    "WTSDeviceClientDrives",
    "WTSDeviceClientPrinters",
    "WTSDeviceClientDefaultPrinter",
    "WTSTimeoutConnections",
    "WTSTimeoutDisconnections",
    "WTSTimeoutIdle"};

void show(ADProperties& tab, std::string syntax, bool multi_valued) {
  tab.Syntax.caption = multi_valued ? syntax + std::string(kMultiValue) : std::move(syntax);
  tab.multi_value = multi_valued;
  tab.AD_Append.enabled = multi_valued;
  tab.AD_Replace.enabled = multi_valued;
}

std::string word_fault(std::string_view value, std::span<const std::string_view> words) {
  std::string list;
  for (const std::string_view word : words) {
    if (base::equals_fold(value, word))
      return {};
    list += (list.empty() ? "" : ", ") + std::string(word);
  }
  return "\"" + std::string(value) + "\" is not one of " + list;
}

std::string chosen(const Session& session) {
  return std::string(base::trim(session.ad_properties.AD_Properties.text.get()));
}

}  // namespace

void prepare_properties(Session& session) {
  ADProperties& tab = session.ad_properties;
  if (!session::is_active_directory(session)) {
    tab.AD_Properties.clear();
    tab.filled_for.clear();
    return;
  }
  if (tab.filled_for == session.DomainName)
    return;
  base::Trap trap;
  if (trap([&] { fill_properties(session); })) {
    tab.filled_for = session.DomainName;
    return;
  }
  session.platform.dialogs.MsgBox("Error Setting AD Properties in mutliuser form", platform::Buttons::kOk,
                                  platform::Icon::kExclamation, "");
}

void fill_properties(Session& session) {
  ADProperties& tab = session.ad_properties;
  controls::ComboBox& box = tab.AD_Properties;
  box.clear();
  controls::choose(tab.AD_Append, tab.AD_Replace, true);
  AD_Properties_Click(session);
  for (const std::string_view name : kTerminalServerNames)
    box.add_item(std::string(name));
  const platform::ObjectPtr user = session.platform.directory.GetObject(kUserClass);
  for (const std::string_view kind : {"MandatoryProperties", "OptionalProperties"}) {
    for (const platform::Value& name : user->Get(kind).list())
      box.add_item(name.text());
  }
}

void AD_Properties_Click(Session& session) {
  ADProperties& tab = session.ad_properties;
  const std::string property = chosen(session);
  tab.looked_up = property;
  if (property.empty())
    return show(tab, {}, false);
  if (terminal_server_number(property)) {
    const bool time = base::find_fold(property, "Timeout") != base::npos;
    return show(tab, time ? "Never,1 min,5 mins,10 mins..." : "String", false);
  }
  base::Trap trap;
  trap([&] {
    const platform::ObjectPtr schema =
        session.platform.directory.GetObject(session.platform.directory.GetObject(kUserClass)->Parent());
    const platform::ObjectPtr attribute = schema->GetObject("Property", property);
    show(tab, attribute->Syntax(), attribute->MultiValued());
  });
  if (trap.number() == 0)
    return;
  show(tab, {}, false);
  session.multi_user.Label3.caption = "\"" + property + "\" is not a property: " + trap.description();
}

void AD_Properties_Change(Session& session) {
  ADProperties& tab = session.ad_properties;
  const std::vector<std::string>& names = tab.AD_Properties.items();
  const std::string property = chosen(session);
  if (std::any_of(names.begin(), names.end(),
                  [&](const std::string& name) { return base::equals_fold(name, property); }))
    return AD_Properties_Click(session);
  tab.looked_up.clear();
  show(tab, {}, false);
}

void AD_Properties_Leave(Session& session) {
  if (session.ad_properties.looked_up != chosen(session))
    AD_Properties_Click(session);
}

std::optional<std::int16_t> terminal_server_number(std::string_view property) {
  const std::string_view name = base::trim(property);
  for (std::size_t i = 0; i < kTerminalServerNames.size(); ++i) {
    if (base::equals_fold(name, kTerminalServerNames.at(i)) ||
        base::equals_fold(name, records::kTerminalServerRows.at(i).name))
      return static_cast<std::int16_t>(i + 1);
  }
  return std::nullopt;
}

std::string value_fault(const Session& session, std::string_view value) {
  const auto number = terminal_server_number(chosen(session));
  if (!number)
    return {};
  const records::TerminalServerRow& row =
      records::kTerminalServerRows.at(static_cast<std::size_t>(*number) - 1);
  if (row.is_time()) {
    std::vector<std::string_view> words;
    words.reserve(std::size(records::kTimeWords));
    for (const records::TimeWord& time : records::kTimeWords)
      words.push_back(time.word);
    return word_fault(value, words);
  }
  constexpr std::array<std::string_view, 4> kSwitches = {"Yes", "No", "True", "False"};
  return row.is_number() ? word_fault(value, kSwitches) : std::string();
}

bool takes_bytes(const Session& session) {
  const std::string& syntax = session.ad_properties.Syntax.caption;
  return syntax == kOctetString || syntax == std::string(kOctetString) + std::string(kMultiValue);
}

}  // namespace twk::batch
