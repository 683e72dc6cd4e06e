#include "batch/schema_properties.hpp"

#include <array>
#include <span>
#include <vector>

#include "base/errors.hpp"
#include "base/text.hpp"
#include "records/terminal_server_rows.hpp"
#include "session/session.hpp"

namespace twk::batch {
namespace {

using session::Session;

constexpr std::string_view kUserClass = "LDAP://Schema/User";
constexpr std::string_view kOctetString = "OctetString";

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

std::string word_fault(std::string_view value, std::span<const std::string_view> words) {
  std::string list;
  for (const std::string_view word : words) {
    if (base::equals_fold(value, word))
      return {};
    list += (list.empty() ? "" : ", ") + std::string(word);
  }
  return "\"" + std::string(value) + "\" is not one of " + list;
}

}  // namespace

bool PropertySchema::takes_bytes() const {
  return syntax == kOctetString;
}

void read_property_names(Session& session, const std::function<void(std::string name)>& add) {
  for (const std::string_view name : kTerminalServerNames)
    add(std::string(name));
  const platform::ObjectPtr user = session.platform.directory.GetObject(kUserClass);
  for (const std::string_view kind : {"MandatoryProperties", "OptionalProperties"}) {
    for (const platform::Value& name : user->Get(kind).list())
      add(name.text());
  }
}

PropertySchema look_up_property(Session& session, std::string_view name) {
  if (terminal_server_number(name)) {
    const bool time = base::find_fold(name, "Timeout") != base::npos;
    return {std::string(name), time ? "Never,1 min,5 mins,10 mins..." : "String", false};
  }
  platform::DirectoryService& directory = session.platform.directory;
  const platform::ObjectPtr attribute =
      directory.GetObject(directory.GetObject(kUserClass)->Parent())->GetObject("Property", name);
  return {std::string(name), attribute->Syntax(), attribute->MultiValued()};
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

std::string value_fault(std::string_view property, std::string_view value) {
  const auto number = terminal_server_number(property);
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

}  // namespace twk::batch
