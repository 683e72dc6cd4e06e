#include "batch/property_run.hpp"

#include <algorithm>

#include "base/error_words.hpp"
#include "base/errors.hpp"
#include "base/text.hpp"
#include "batch/attribute_values.hpp"
#include "batch/run_controls.hpp"
#include "directory/operations.hpp"
#include "format/replace.hpp"
#include "platform/adsi.hpp"
#include "platform/ldap_text.hpp"
#include "resources/WTS.hpp"
#include "session/log_tab.hpp"
#include "session/session.hpp"

namespace twk::batch {
namespace {

using session::Session;

/// Control code of `PutEx`.
constexpr int ADS_PROPERTY_APPEND = 3;

/// One user and the new value.
struct Step {
  PropertyRun& run;
  const SelectedUser& user;
  std::string logon_name = {};
  std::string display_name = {};  ///< the user's name in its container
  std::string NewValue = {};
};

void set_terminal_server(const Step& step, std::int16_t number) {
  Session& session = step.run.session;
  session.Error_Log_Text.clear();
  if (!resources::ApplyTerminalSetting(session, step.logon_name, directory::winnt_domain(session), number,
                                       step.NewValue)) {
    base::raise(platform::ads_error::kUnwilling,
                "The terminal-server setting was refused. " + session.Error_Log_Text);
  }
}

void set_attribute(const Step& step) {
  const PropertyOrder& order = step.run.order;
  const platform::Value value = order.property.takes_bytes() ? platform::Value(parse_bytes(step.NewValue))
                                                             : platform::Value(step.NewValue);
  if (order.append && order.property.multi_valued)
    step.user.object->PutEx(ADS_PROPERTY_APPEND, order.property.name, platform::ValueList{value});
  else
    step.user.object->Put(order.property.name, value);
  step.user.object->SetInfo();
}

/// Sets it and tells what was really changed. What cannot be read, as a terminal-server setting or a
/// password, has no values then.
void set_recorded(const Step& step, std::optional<std::int16_t> terminal_server) {
  const PropertyOrder& order = step.run.order;
  const bool is_read = order.changed && !terminal_server;
  const platform::ObjectPtr& user = step.user.object;
  AccountChange change{AccountChange::Kind::kSet, {}, order.property.name};
  if (is_read)
    change.before = read_values(user, order.property.name);
  if (terminal_server)
    set_terminal_server(step, *terminal_server);
  else
    set_attribute(step);
  if (!order.changed)
    return;
  if (is_read)
    change.after = read_values(user, order.property.name);
  const bool is_hidden = change.after.empty() && !step.NewValue.empty();
  if (change.before == change.after && !is_hidden)
    return;
  change.sid = platform::readable_sid(user);
  order.changed(change);
}

void change(Step& step, std::string_view value) {
  const auto number = terminal_server_number(step.run.order.property.name);
  step.display_name = platform::plain_name(step.user.object->Name());
  step.NewValue = value;
  step.logon_name = step.user.object->Get("samAccountName").text();
  step.NewValue = format::FRString(value, "%UserName%", number ? step.logon_name : step.display_name);
  set_recorded(step, number);
}

void tell(PropertyRun& run, const std::string& text) {
  run.view.step(text);
  run.session.log.line(text);
}

/// `number` is 0 for a user who was changed.
void tell_outcome(const Step& step, std::uint32_t number, const std::string& description) {
  PropertyRun& run = step.run;
  const std::string& property = run.order.property.name;
  run.reason = number == 0 ? std::string() : base::in_words(number, description);
  const std::string words = property + "' to '" + step.NewValue + "' for " + step.display_name;
  if (number == 0)
    tell(run, "Change property:'" + words);
  else if (step.user.as_member)
    tell(run, "Error changing property:" + property + " to " + step.NewValue + " for " + step.display_name);
  else
    tell(run, "Error changing property:'" + words);
  const std::string failure = "Error Number: " + base::to_text(number) + " " + run.reason;
  // When thousands fail the same way, the first is enough for the light's reason.
  if (number != 0 && run.counts.errors == 1)
    run.session.log.reason(failure);
  else if (number != 0)
    run.session.log.line(failure);
  if (run.order.user_done) {
    run.order.user_done({.line = run.line,
                         .user = step.display_name,
                         .path = step.user.path,
                         .value = step.NewValue,
                         .changed = number == 0,
                         .reason = run.reason});
  }
}

/// A terminal-server setting needs a controller; without this check each user's routine would report its
/// absence in a box.
void require_controller(PropertyRun& run) {
  if (terminal_server_number(run.order.property.name))
    static_cast<void>(run.session.platform.network.NetGetDCName("", directory::winnt_domain(run.session)));
}

void begin_log(PropertyRun& run, const std::string& value) {
  run.session.log.begin_block();
  if (!session::is_debug(run.session))
    return;
  run.session.log.line("AD_property = " + run.order.property.name);
  run.session.log.line("Change Text = " + value);
}

void tell_end(PropertyRun& run) {
  Session& session = run.session;
  const std::string users = base::to_text(run.counts.users);
  if (run.counts.errors > 0) {
    session::LOG_TAB(session, session::kYellow, " AD Property changed for " + users + " users. - had errors");
    run.view.step("Properties changed for " + users + " users. - errors detected check log file.");
  } else if (run.counts.stopped) {
    session::LOG_TAB(session, session::kYellow, " AD Property changed for " + users + " users. - canceled");
    run.view.step("Change Canceled. Properties changed for " + users + " users.");
  } else {
    session::LOG_TAB(session, session::kGreen, " AD Property changed for " + users + " users.");
    run.view.step("Properties changed for " + users + " users.");
  }
}

}  // namespace

void show_progress(PropertyRun& run, std::size_t done, std::size_t all) {
  constexpr std::size_t kWhole = 100;
  run.view.progress(static_cast<int>(done * kWhole / std::max<std::size_t>(all, 1)));
}

bool is_cancelled(PropertyRun& run) {
  run.counts.stopped = !run.session.run.goes_on();
  return run.counts.stopped;
}

void change_one(PropertyRun& run, const SelectedUser& user, const std::string& value) {
  Step step{run, user};
  base::Trap trap;
  const bool changed = trap([&] { change(step, value); });
  ++(changed ? run.counts.users : run.counts.errors);
  tell_outcome(step, trap.number(), trap.description());
}

bool tell_unread(PropertyRun& run, const std::string& what, const std::string& value,
                 const base::RuntimeError& failure) {
  if (failure.number() == platform::ads_error::kServerDown)
    return false;
  const SelectedUser nobody;
  const Step step{run, nobody, {}, what, value};
  ++run.counts.errors;
  tell_outcome(step, failure.number(), failure.description());
  return true;
}

void change_user_at(PropertyRun& run, const std::string& path, const std::string& name,
                    const std::string& value) {
  try {
    change_one(run, {path, name, nullptr, run.session.platform.directory.GetObject(path)}, value);
  } catch (const base::RuntimeError& failure) {
    if (!tell_unread(run, name, value, failure))
      throw;
  }
}

bool in_change_block(PropertyRun& run, const std::string& value, const std::function<void()>& changes) {
  run.counts.users = run.counts.errors = 0;
  begin_log(run, value);
  try {
    require_controller(run);
    changes();
  } catch (const base::RuntimeError& failure) {
    run.counts.failure = failure.description();
    tell_run_failure(run.session, "Error Retrieving Domain Info.", failure);
    return false;
  }
  run.session.log.close();
  tell_end(run);
  return true;
}

}  // namespace twk::batch
