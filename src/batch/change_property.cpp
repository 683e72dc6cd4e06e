#include "batch/change_property.hpp"

#include "base/error_words.hpp"
#include "base/errors.hpp"
#include "base/text.hpp"
#include "batch/property_run.hpp"
#include "batch/schema_properties.hpp"
#include "directory/operations.hpp"
#include "format/replace.hpp"
#include "platform/ldap_text.hpp"
#include "resources/WTS.hpp"
#include "session/ad_properties.hpp"
#include "session/loaded_domain.hpp"
#include "session/multi_user.hpp"
#include "session/session.hpp"

namespace twk::batch {
namespace {

using session::ADProperties;
using session::Session;

/// Control code of `PutEx`.
constexpr int ADS_PROPERTY_APPEND = 3;

/// One user and the new value.
struct Step {
  Session& session;
  const SelectedUser& user;
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
                  "\"" + part + "\" is not a byte: bytes are numbers from 0 to 255, separated by commas");
    }
    bytes.push_back(static_cast<std::uint8_t>(*number));
  }
  return bytes;
}

void set_terminal_server(const Step& step, std::int16_t number) {
  Session& session = step.session;
  session.Error_Log_Text.clear();
  if (!resources::ApplyTerminalSettings(session, step.logon_name, directory::winnt_domain(session), true,
                                        number)) {
    base::raise(platform::ads_error::kUnwilling,
                "The terminal-server setting was refused. " + session.Error_Log_Text);
  }
}

void set_attribute(const Step& step) {
  const ADProperties& tab = step.session.ad_properties;
  const platform::Value value = takes_bytes(step.session) ? platform::Value(parse_bytes(step.NewValue))
                                                          : platform::Value(step.NewValue);
  if (tab.AD_Append.value && tab.multi_value)
    step.user.object->PutEx(ADS_PROPERTY_APPEND, step.property, platform::ValueList{value});
  else
    step.user.object->Put(step.property, value);
  step.user.object->SetInfo();
}

void change(Step& step, std::string_view value) {
  const auto number = terminal_server_number(step.property);
  step.display_name = platform::plain_name(step.user.object->Name());
  step.NewValue = value;
  step.logon_name = step.user.object->Get("samAccountName").text();
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

/// `number` is 0 for a user who was changed.
void tell_outcome(const Step& step, std::uint32_t number, const std::string& description) {
  const std::string reason = number == 0 ? std::string() : base::in_words(number, description);
  Session& session = step.session;
  ADProperties& tab = session.ad_properties;
  const std::string words = step.property + "' to '" + step.NewValue + "' for " + step.display_name;
  if (number == 0)
    tell(session, "Change property:'" + words);
  else if (step.user.as_member)
    tell(session,
         "Error changing property:" + step.property + " to " + step.NewValue + " for " + step.display_name);
  else
    tell(session, "Error changing property:'" + words);
  const std::string failure = "Error Number: " + base::to_text(number) + " " + reason;
  // When thousands fail the same way, the first is enough for the light's reason.
  if (number != 0 && tab.errors == 1)
    session.log.reason(failure);
  else if (number != 0)
    session.log.line(failure);
  tab.reason = reason;
  if (tab.user_done) {
    tab.user_done({.line = tab.line,
                   .user = step.display_name,
                   .path = step.user.path,
                   .value = step.NewValue,
                   .changed = number == 0,
                   .reason = reason});
  }
}

/// A row or a member that could not be read. Raises when no server answers.
bool tell_unread(Session& session, const std::string& what, const base::RuntimeError& failure) {
  if (failure.number() == platform::ads_error::kServerDown)
    return false;
  const SelectedUser nobody;
  Step step{session, nobody, property_of(session), {}, what, session.multi_user.AD_CHANGE.text};
  ++session.ad_properties.errors;
  tell_outcome(step, failure.number(), failure.description());
  return true;
}

}  // namespace

bool Change_AD_One(Session& session, const SelectedUser& user, std::string_view value) {
  ADProperties& tab = session.ad_properties;
  Step step{session, user, property_of(session), {}, {}, {}};
  base::Trap trap;
  const bool changed = trap([&] { change(step, value); });
  ++(changed ? tab.users : tab.errors);
  tell_outcome(step, trap.number(), trap.description());
  return changed;
}

void change_selection(Session& session) {
  // The field may change while the run lets events in.
  const std::string value = session.multi_user.AD_CHANGE.text;
  WalkRules rules;
  rules.goes_on = [&session] { return !is_cancelled(session); };
  rules.failed = [&session](const std::string& what, const base::RuntimeError& failure) {
    return tell_unread(session, what, failure);
  };
  const std::size_t all = session.domain.selection.size();
  walk_selection(session, rules, [&](SelectedUser& user) {
    if (user.row != nullptr && !user.as_member)
      show_progress(session, session.domain.selection.place_of(*user.row), all);
    Change_AD_One(session, user, value);
  });
}

void change_user_at(Session& session, const std::string& path, const std::string& name) {
  try {
    Change_AD_One(session, {path, name, nullptr, session.platform.directory.GetObject(path)},
                  session.multi_user.AD_CHANGE.text.get());
  } catch (const base::RuntimeError& failure) {
    if (!tell_unread(session, name, failure))
      throw;
  }
}

void CHANGE_AD_Click(Session& session) {
  if (session.ad_properties.CHANGE_AD.caption == std::string(session::kCancelCaption)) {
    session.import.ImportStopped = true;
    return;
  }
  if (session::is_running(session.multi_user) || session.domain.selection.empty() || !begin_run(session))
    return;
  const PropertyRun running(session);
  in_change_block(session, [&] { change_selection(session); });
}

}  // namespace twk::batch
