#include "batch/change_property.hpp"

#include "base/errors.hpp"
#include "base/text.hpp"
#include "batch/schema_properties.hpp"
#include "directory/operations.hpp"
#include "format/variables.hpp"
#include "platform/ldap_text.hpp"
#include "resources/WTS.hpp"
#include "session/session.hpp"

namespace twk::batch {
namespace {

using session::ADProperties;
using session::Session;

/// Control code of `PutEx`.
constexpr int ADS_PROPERTY_APPEND = 3;

/// One user and what it is to get.
struct Step {
  Session& session;
  platform::ObjectPtr user;
  std::string property;
  std::string logon_name;
  std::string display_name;  ///< the user's name in its container
  std::string NewValue;
};

std::string property_of(const Session& session) {
  return std::string(base::trim(session.ad_properties.AD_Properties.text.get()));
}

/// "1,2,255" as three bytes.
base::Bytes parse_bytes(std::string_view text) {
  constexpr std::int32_t kGreatest = 255;
  base::Bytes bytes;
  for (const std::string& part : base::split(text, ',')) {
    const auto number = base::to_number(part);
    if (!number || *number < 0 || *number > kGreatest) {
      base::raise(base::error::kTypeMismatch,
                  "\"" + part + "\" is no byte: bytes are numbers from 0 to 255 with commas between");
    }
    bytes.push_back(static_cast<std::uint8_t>(*number));
  }
  return bytes;
}

/// "Jo Smith" of "CN=Jo Smith".
std::string name_of(const platform::DirectoryObject& user) {
  constexpr std::size_t kType = 3;
  const std::string name = user.Name();
  return platform::unescape_dn_value(std::string_view(name).substr(std::min(kType, name.size())));
}

void set_terminal_server(const Step& step, std::int16_t number) {
  Session& session = step.session;
  if (!resources::ApplyTerminalSettings(session, step.logon_name, directory::winnt_domain(session), true,
                                        number))
    base::raise(platform::ads_error::kUnwilling, "The terminal-server setting was refused");
}

void set_attribute(const Step& step) {
  const ADProperties& tab = step.session.ad_properties;
  const platform::Value value = takes_bytes(step.session) ? platform::Value(parse_bytes(step.NewValue))
                                                          : platform::Value(step.NewValue);
  if (tab.AD_Append.value && tab.AD_Replace.enabled)
    step.user->PutEx(ADS_PROPERTY_APPEND, step.property, platform::ValueList{value});
  else
    step.user->Put(step.property, value);
  step.user->SetInfo();
}

void change(Step& step, std::string_view value) {
  const auto number = terminal_server_number(step.property);
  step.display_name = name_of(*step.user);
  step.NewValue = value;
  step.logon_name = step.user->Get("samAccountName").text();
  step.NewValue = format::FRString(value, "%UserName%", number ? step.logon_name : step.display_name);
  if (number)
    set_terminal_server(step, *number);
  else
    set_attribute(step);
}

void tell(Session& session, const std::string& text) {
  session.multi_user.Label3.caption = text;
  session.log.line(text);
}

void tell_outcome(const Step& step, Reached reached, const base::Trap& trap) {
  Session& session = step.session;
  const bool changed = trap.number() == 0;
  const std::string words = step.property + "' to '" + step.NewValue + "' for " + step.display_name;
  if (changed) {
    tell(session, "Change property:'" + words);
  } else {
    tell(session, reached == Reached::kAsMember ? "Error changing property:" + step.property + " to " +
                                                      step.NewValue + " for " + step.display_name
                                                : "Error changing property:'" + words);
    session.ad_properties.reason = trap.description();
    session.log.line("Error Number: " + base::to_text(trap.number()) + " " + trap.description());
  }
  if (session.ad_properties.user_done) {
    session.ad_properties.user_done({.line = session.ad_properties.line,
                                     .user = step.logon_name.empty() ? step.display_name : step.logon_name,
                                     .value = step.NewValue,
                                     .changed = changed,
                                     .reason = trap.description()});
  }
}

/// Raises what binding and reading raise.
void change_those_of(Session& session, const controls::ListRow& row, const std::string& value) {
  if (row.icon == "W2KGRP") {
    for (const platform::ObjectPtr& member : session.platform.directory.GetObject(row.key)->Members()) {
      if (base::equals_fold(member->Class(), "user"))
        Change_AD_One(session, member, value, Reached::kAsMember);
    }
  } else if (row.icon == "USER") {
    Change_AD_One(session, session.platform.directory.GetObject(row.key), value);
  } else if (row.icon == "OU") {
    const auto rows = directory::run_query(session, "<LDAP://" + session.DnsServerName + "/" + row.key +
                                                        ">;(objectClass=User);ADsPath,Name;onelevel");
    for (; !rows->at_eof(); rows->MoveNext())
      Change_AD_One(session, session.platform.directory.GetObject(rows->field(0).text()), value);
  }
}

}  // namespace

bool Change_AD_One(Session& session, const platform::ObjectPtr& user, std::string_view value,
                   Reached reached) {
  ADProperties& tab = session.ad_properties;
  Step step{session, user, property_of(session), {}, {}, {}};
  base::Trap trap;
  const bool changed = trap([&] { change(step, value); });
  ++(changed ? tab.users : tab.errors);
  tell_outcome(step, reached, trap);
  return changed;
}

void change_row(Session& session, const controls::ListRow& row) {
  const std::string value = session.multi_user.AD_CHANGE.text;
  base::Trap trap;
  if (trap([&] { change_those_of(session, row, value); }))
    return;
  if (trap.number() == platform::ads_error::kServerDown)
    base::raise(trap.number(), trap.description());
  Step step{session, nullptr, property_of(session), {}, row.text, value};
  ++session.ad_properties.errors;
  tell_outcome(step, Reached::kByItself, trap);
}

}  // namespace twk::batch
