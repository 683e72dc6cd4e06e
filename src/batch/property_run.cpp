#include "batch/property_run.hpp"

#include <algorithm>

#include "base/errors.hpp"
#include "base/text.hpp"
#include "batch/schema_properties.hpp"
#include "directory/operations.hpp"
#include "session/ad_properties.hpp"
#include "session/log_tab.hpp"
#include "session/multi_user.hpp"
#include "session/session.hpp"

namespace twk::batch {
namespace {

using session::ADProperties;
using session::Session;

/// A terminal-server setting needs a controller; without this check each user's routine would report its
/// absence in a box.
void require_controller(Session& session) {
  if (!terminal_server_number(session.ad_properties.AD_Properties.text.get()))
    return;
  static_cast<void>(session.platform.network.NetGetDCName("", directory::winnt_domain(session)));
}

void begin_log(Session& session) {
  session.log.begin_block();
  if (!session::is_debug(session))
    return;
  session.log.line("AD_property = " + session.ad_properties.AD_Properties.text.get());
  session.log.line("Change Text = " + session.multi_user.AD_CHANGE.text.get());
}

void tell_end(Session& session) {
  const ADProperties& tab = session.ad_properties;
  const std::string users = base::to_text(tab.users);
  controls::Label& status = session.multi_user.Label3;
  if (tab.errors > 0) {
    session::LOG_TAB(session, session::kYellow, " AD Property changed for " + users + " users. - had errors");
    status.caption = "Properties changed for " + users + " users. - errors detected check log file.";
  } else if (tab.stopped) {
    session::LOG_TAB(session, session::kYellow, " AD Property changed for " + users + " users. - canceled");
    status.caption = "Change Canceled. Properties changed for " + users + " users.";
  } else {
    session::LOG_TAB(session, session::kGreen, " AD Property changed for " + users + " users.");
    status.caption = "Properties changed for " + users + " users.";
  }
}

bool refuse(Session& session, const std::string& reason) {
  session.ad_properties.failure = reason;
  session.multi_user.Label3.caption = reason;
  return false;
}

}  // namespace

bool begin_run(Session& session) {
  ADProperties& tab = session.ad_properties;
  tab.users = tab.errors = tab.skipped = 0;
  tab.stopped = false;
  tab.failure.clear();
  const std::string property(base::trim(tab.AD_Properties.text.get()));
  if (property.empty())
    return refuse(session, "Select the property to change first.");
  if (tab.looked_up != property)
    AD_Properties_Click(session);
  if (tab.Syntax.caption.get().empty())
    return refuse(session, session.multi_user.Label3.caption);
  session.import.ImportStopped = false;
  return true;
}

PropertyRun::PropertyRun(Session& session)
    : window_(session, session.ad_properties.CHANGE_AD,
              {&session.multi_user.Command7.enabled, &session.multi_user.DELIMPORT.enabled,
               &session.multi_user.Command1.enabled, &session.multi_user.Command2.enabled,
               &session.multi_user.AD_CHANGE.enabled, &session.ad_properties.AD_Properties.enabled,
               &session.ad_properties.AD_Append.enabled, &session.ad_properties.AD_Replace.enabled}),
      bar_(session.ad_properties.progress_visible) {
  session.ad_properties.progress.value = 0;
  bar_ = true;
}

PropertyRun::~PropertyRun() {
  bar_ = false;
}

void show_progress(Session& session, std::size_t done, std::size_t all) {
  constexpr std::size_t kWhole = 100;
  session.ad_properties.progress.value = static_cast<int>(done * kWhole / std::max<std::size_t>(all, 1));
}

bool is_cancelled(Session& session) {
  session.platform.dialogs.DoEvents();
  session.ad_properties.stopped = session.import.ImportStopped;
  return session.ad_properties.stopped;
}

bool in_change_block(Session& session, const std::function<void()>& changes) {
  ADProperties& tab = session.ad_properties;
  tab.users = tab.errors = 0;
  begin_log(session);
  try {
    require_controller(session);
    changes();
  } catch (const base::RuntimeError& failure) {
    tab.failure = failure.description();
    tell_run_failure(session, "Error Retrieving Domain Info.", failure);
    return false;
  }
  session.log.close();
  tell_end(session);
  return true;
}

}  // namespace twk::batch
